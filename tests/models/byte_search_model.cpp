#include "tests/models/byte_search_model.h"

#include <algorithm>

namespace quill::test {
namespace {

bool is_valid(const char* text, std::int32_t start, std::int32_t end,
              const char* pattern, std::int32_t length) {
  if (text == nullptr) return false;
  if (start < 0) return false;
  if (start > end) return false;
  if (end < 1) return false;
  if (pattern == nullptr) return false;
  if (length < 1) return false;
  return length <= end - start;
}

bool matches_at(const char* text, std::int32_t position, std::int32_t end,
                const char* pattern, std::int32_t length) {
  for (std::int32_t i = 0; i < length; ++i) {
    if (position + i >= end) return false;
    if (text[position + i] != pattern[i]) return false;
  }
  return true;
}

}  // namespace

std::int32_t model_find_str(const char* text, std::int32_t start,
                            std::int32_t end, const char* pattern,
                            std::int32_t length, std::int32_t* found_start,
                            std::int32_t* found_end, std::int32_t reference,
                            YieldRecorder& host) {
  if (!is_valid(text, start, end, pattern, length)) return 0;
  *found_start = 0;
  *found_end = end;
  NaiveMeter meter{host, reference};
  std::int32_t position = start;
  for (;;) {
    if (position >= end || !meter.go_on) {
      *found_end = position;
      return 0;
    }
    if (matches_at(text, position, end, pattern, length)) {
      *found_start = position;
      *found_end = position + length;
      return 1;
    }
    meter.tick(position);
    ++position;
  }
}

std::int32_t model_find_byte(const char* text, std::int32_t start,
                             std::int32_t end, char byte,
                             std::int32_t reference, YieldRecorder& host) {
  NaiveMeter meter{host, reference};
  std::int32_t position = start;
  while (position < end) {
    if (text[position] == byte) return position;
    if (!meter.go_on) return -1;
    ++position;
    meter.tick(position);
  }
  return -1;
}

std::int32_t model_find_str_all(const char* text, std::int32_t start,
                                std::int32_t end, const char* pattern,
                                std::int32_t length, Longs& list,
                                std::int32_t* long_count, std::int32_t* stop,
                                std::int32_t reference, YieldRecorder& host) {
  if (!is_valid(text, start, end, pattern, length)) return 0;
  NaiveMeter meter{host, reference};
  std::int32_t position = start;
  while (position < end && meter.go_on) {
    if (matches_at(text, position, end, pattern, length)) {
      meter.tick(position + length);
      list.push_back(position);
      list.push_back(position + length);
      position += length;
    } else {
      meter.tick(position);
      ++position;
    }
  }
  *long_count = static_cast<std::int32_t>(list.size());
  *stop = position;
  return 1;
}

std::int32_t model_byte_pattern_swap(char* buffer, std::int32_t start,
                                     std::int32_t end, const char* pattern,
                                     const char* replacement,
                                     std::int32_t length,
                                     std::int32_t reference,
                                     YieldRecorder& host) {
  if (start >= end || end < 0 || length < 1) return 1;
  NaiveMeter meter{host, reference};
  std::int32_t position = std::max(start, 0);
  while (position < end && meter.go_on) {
    std::int32_t progress = position;
    if (matches_at(buffer, position, end, pattern, length)) {
      std::copy(replacement, replacement + length, buffer + position);
      progress = position + length - 1;
    }
    meter.tick(progress);
    position = progress + 1;
  }
  return 1;
}

}  // namespace quill::test
