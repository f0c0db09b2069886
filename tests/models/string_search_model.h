// The searches for strings of characters, told as plainly as possible: one
// byte, one unit and one comparison at a time.
#pragma once

#include <cstdint>

#include "quillcore.h"

namespace quill::naive {

// The thirteen leading parameters of a search.
struct StringCall {
  const char* text = nullptr;
  int32_t start = 0;
  int32_t end = 0;
  const int32_t* pattern = nullptr;
  int32_t pattern_count = 0;
  const unsigned char* flags = nullptr;
  const int32_t* mask_keys = nullptr;
  const int32_t* mask_values = nullptr;
  int32_t mask_count = 0;
  const int32_t* breaks = nullptr;
  int32_t break_count = 0;
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

int32_t find(const StringCall& c, int32_t* found_start, int32_t* found_end,
             int32_t reference, QuillYield yield);
int32_t find_previous(const StringCall& c, int32_t* found_start,
                      int32_t* found_end, int32_t reference, QuillYield yield);
int32_t find_nth(const StringCall& c, int32_t* occurrence, int32_t* found_start,
                 int32_t* found_end, int32_t reference, QuillYield yield);
int32_t count_all(const StringCall& c, int32_t* match_count, int32_t* stop,
                  int32_t reference, QuillYield yield);
int32_t find_all(const StringCall& c, QuillBlock* list, int32_t* long_count,
                 int32_t* stop, int32_t reference, QuillYield yield);

// Such a function with the thirteen spread out, as an export has them.
template <auto function>
struct Spread;
template <class... Rest, int32_t (*function)(const StringCall&, Rest...)>
struct Spread<function> {
  static int32_t call(const char* text, int32_t start, int32_t end,
                      const int32_t* pattern, int32_t pattern_count,
                      const unsigned char* flags, const int32_t* mask_keys,
                      const int32_t* mask_values, int32_t mask_count,
                      const int32_t* breaks, int32_t break_count,
                      unsigned char edge, unsigned char invert, Rest... rest) {
    return function(
        {text, start, end, pattern, pattern_count, flags, mask_keys,
         mask_values, mask_count, breaks, break_count, edge, invert},
        rest...);
  }
};

inline constexpr auto* utf8_FindStr = &Spread<find>::call;
inline constexpr auto* utf8_FindStrPrev = &Spread<find_previous>::call;
inline constexpr auto* utf8_FindStrNth = &Spread<find_nth>::call;
inline constexpr auto* utf8_CountStrAll = &Spread<count_all>::call;
inline constexpr auto* utf8_FindStrAll = &Spread<find_all>::call;

decltype(::utf8_CompareSubstring) utf8_CompareSubstring;
decltype(::utf8_TestBreakChars) utf8_TestBreakChars;

}  // namespace quill::naive
