#include <algorithm>
#include <string>

#include "tests/models/naive.h"
#include "tests/support/blocks.h"

namespace quill::naive {
namespace {

bool is_valid(const char* text, Long start, Long end, const char* pattern,
              Long length) {
  return text != nullptr && start >= 0 && start <= end && end >= 1 &&
         pattern != nullptr && length >= 1 && length <= end - start;
}

bool matches_at(const char* text, Long position, Long end, const char* pattern,
                Long length) {
  for (Long i = 0; i < length; ++i) {
    if (position + i >= end || text[position + i] != pattern[i]) return false;
  }
  return true;
}

}  // namespace

Long FindStr(const char* text, Long start, Long end, const char* pattern,
             Long pattern_length, Long, Long, Long, Long, Long* found_start,
             Long* found_end, Long reference, QuillYield yield) {
  if (!is_valid(text, start, end, pattern, pattern_length)) return 0;
  *found_start = 0;
  *found_end = end;
  Meter meter(reference, yield);
  Long position = start;
  for (;;) {
    if (position >= end || !meter.go_on) {
      *found_end = position;
      return 0;
    }
    if (matches_at(text, position, end, pattern, pattern_length)) {
      *found_start = position;
      *found_end = position + pattern_length;
      return 1;
    }
    meter.tick(position);
    ++position;
  }
}

Long FindStrAll(const char* text, Long start, Long end, const char* pattern,
                Long pattern_length, Long, Long, Long, Long, QuillBlock* list,
                Long* long_count, Long* stop, Long reference,
                QuillYield yield) {
  if (!is_valid(text, start, end, pattern, pattern_length)) return 0;
  test::Longs found;
  Meter meter(reference, yield);
  Long position = start;
  while (position < end && meter.go_on) {
    if (matches_at(text, position, end, pattern, pattern_length)) {
      meter.tick(position + pattern_length);
      found.push_back(position);
      found.push_back(position + pattern_length);
      position += pattern_length;
    } else {
      meter.tick(position);
      ++position;
    }
  }
  *list = test::block_of(found);
  *long_count = test::length_of(found);
  *stop = position;
  return 1;
}

Long FindByte(char* text, Long start, Long end, char byte, Long reference,
              QuillYield yield) {
  Meter meter(reference, yield);
  Long position = start;
  while (position < end) {
    if (text[position] == byte) return position;
    if (!meter.go_on) return -1;
    ++position;
    meter.tick(position);
  }
  return -1;
}

Long BytePatternSwap(char* buffer, Long start, Long end, const char* pattern,
                     const char* replacement, Long length, Long reference,
                     QuillYield yield) {
  if (start >= end || end < 0 || length < 1) return 1;
  Meter meter(reference, yield);
  Long position = std::max(start, 0);
  while (position < end && meter.go_on) {
    Long progress = position;
    if (matches_at(buffer, position, end, pattern, length)) {
      // Both strings may lie in the buffer itself.
      const std::string copy(replacement, static_cast<std::size_t>(length));
      std::copy(copy.begin(), copy.end(), buffer + position);
      progress = position + length - 1;
    }
    meter.tick(progress);
    position = progress + 1;
  }
  return 1;
}

}  // namespace quill::naive
