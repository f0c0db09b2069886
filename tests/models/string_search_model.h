// The searches for strings of characters, told as plainly as possible: one
// byte, one unit and one comparison at a time.
#pragma once

#include <cstdint>
#include <vector>

#include "tests/support/yield_recorder.h"

namespace quill::test {

// The thirteen leading parameters of a search.
struct StringCall {
  const char* text = nullptr;
  std::int32_t start = 0;
  std::int32_t end = 0;
  const std::int32_t* pattern = nullptr;
  std::int32_t pattern_count = 0;
  const unsigned char* flags = nullptr;
  const std::int32_t* mask_keys = nullptr;
  const std::int32_t* mask_values = nullptr;
  std::int32_t mask_count = 0;
  const std::int32_t* breaks = nullptr;
  std::int32_t break_count = 0;
  unsigned char edge = 0;
  unsigned char invert = 0;

  // Calls an export: the thirteen, then `rest`.
  template <class Export, class... Rest>
  auto operator()(Export function, Rest... rest) const {
    return function(text, start, end, pattern, pattern_count, flags, mask_keys,
                    mask_values, mask_count, breaks, break_count, edge, invert,
                    rest...);
  }
};

class StringModel {
 public:
  StringModel(const StringCall& call, std::int32_t reference,
              YieldRecorder& host)
      : c_(call), reference_(reference), host_(host) {}

  bool compare(std::int32_t position, std::int32_t* next) const;
  void test_breaks(std::int32_t match_start, std::int32_t match_end,
                   unsigned char* before, unsigned char* after) const;

  bool find(std::int32_t start, std::int32_t* found_start,
            std::int32_t* found_end) const;
  bool find_previous(std::int32_t* found_start, std::int32_t* found_end) const;
  bool find_nth(std::int32_t* occurrence, std::int32_t* found_start,
                std::int32_t* found_end) const;
  bool count_all(std::int32_t* match_count, std::int32_t* stop) const;
  // The longs that were found; an empty list is no Block.
  std::vector<std::int32_t> find_all(std::int32_t* stop) const;

 private:
  bool read(std::int64_t position, std::int32_t* packed,
            std::int32_t* next) const;
  std::int32_t map(std::int32_t character) const;
  bool is_break(std::int32_t character) const;
  bool word_counts(std::int32_t start, std::int32_t end) const;
  bool matches(std::int32_t position, std::int32_t* next) const;
  bool full_scan(std::int32_t p, std::int32_t* found_start,
                 std::int32_t* found_end) const;
  bool first_byte_scan(std::int32_t start, std::int32_t* found_start,
                       std::int32_t* found_end) const;
  unsigned char byte(std::int64_t at) const {
    return static_cast<unsigned char>(c_.text[at]);
  }
  bool is_continuation(std::int64_t at) const {
    return byte(at) >= 0x80 && byte(at) <= 0xBF;
  }

  const StringCall& c_;
  std::int32_t reference_;
  YieldRecorder& host_;
};

}  // namespace quill::test
