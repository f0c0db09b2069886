#include "tests/models/byte_search_model.h"

#include <algorithm>
#include <string>

#include "tests/models/meter.h"
#include "tests/support/blocks.h"

namespace quill::naive {
namespace {

bool is_valid(const char* text, int32_t start, int32_t end, const char* pattern,
              int32_t length) {
  if (text == nullptr) return false;
  if (start < 0) return false;
  if (start > end) return false;
  if (end < 1) return false;
  if (pattern == nullptr) return false;
  if (length < 1) return false;
  return length <= end - start;
}

bool matches_at(const char* text, int32_t position, int32_t end,
                const char* pattern, int32_t length) {
  for (int32_t i = 0; i < length; ++i) {
    if (position + i >= end) return false;
    if (text[position + i] != pattern[i]) return false;
  }
  return true;
}

}  // namespace

int32_t FindStr(const char* text, int32_t start, int32_t end,
                const char* pattern, int32_t pattern_length, int32_t, int32_t,
                int32_t, int32_t, int32_t* found_start, int32_t* found_end,
                int32_t reference, QuillYield yield) {
  if (!is_valid(text, start, end, pattern, pattern_length)) return 0;
  *found_start = 0;
  *found_end = end;
  Meter meter(reference, yield);
  int32_t position = start;
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

int32_t FindStrAll(const char* text, int32_t start, int32_t end,
                   const char* pattern, int32_t pattern_length, int32_t,
                   int32_t, int32_t, int32_t, QuillBlock* list,
                   int32_t* long_count, int32_t* stop, int32_t reference,
                   QuillYield yield) {
  if (!is_valid(text, start, end, pattern, pattern_length)) return 0;
  test::Longs found;
  Meter meter(reference, yield);
  int32_t position = start;
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
  *long_count = static_cast<int32_t>(found.size());
  *stop = position;
  return 1;
}

int32_t FindByte(char* text, int32_t start, int32_t end, char byte,
                 int32_t reference, QuillYield yield) {
  Meter meter(reference, yield);
  int32_t position = start;
  while (position < end) {
    if (text[position] == byte) return position;
    if (!meter.go_on) return -1;
    ++position;
    meter.tick(position);
  }
  return -1;
}

int32_t BytePatternSwap(char* buffer, int32_t start, int32_t end,
                        const char* pattern, const char* replacement,
                        int32_t length, int32_t reference, QuillYield yield) {
  if (start >= end || end < 0 || length < 1) return 1;
  Meter meter(reference, yield);
  int32_t position = std::max(start, 0);
  while (position < end && meter.go_on) {
    int32_t progress = position;
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
