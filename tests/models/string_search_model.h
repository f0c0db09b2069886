// The searches for strings of characters, told as plainly as possible: one
// byte, one unit and one comparison at a time.
#pragma once

#include <cstdint>

#include "quillcore.h"

namespace quill::naive {

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

std::int32_t find(const StringCall& c, std::int32_t* found_start,
                  std::int32_t* found_end, std::int32_t reference,
                  QuillYield yield);
std::int32_t find_previous(const StringCall& c, std::int32_t* found_start,
                           std::int32_t* found_end, std::int32_t reference,
                           QuillYield yield);
std::int32_t find_nth(const StringCall& c, std::int32_t* occurrence,
                      std::int32_t* found_start, std::int32_t* found_end,
                      std::int32_t reference, QuillYield yield);
std::int32_t count_all(const StringCall& c, std::int32_t* match_count,
                       std::int32_t* stop, std::int32_t reference,
                       QuillYield yield);
std::int32_t find_all(const StringCall& c, QuillBlock* list,
                      std::int32_t* long_count, std::int32_t* stop,
                      std::int32_t reference, QuillYield yield);

// Such a function with the thirteen spread out, as an export has them.
template <auto function>
struct Spread;
template <class... Rest, std::int32_t (*function)(const StringCall&, Rest...)>
struct Spread<function> {
  static std::int32_t call(const char* text, std::int32_t start,
                           std::int32_t end, const std::int32_t* pattern,
                           std::int32_t pattern_count,
                           const unsigned char* flags,
                           const std::int32_t* mask_keys,
                           const std::int32_t* mask_values,
                           std::int32_t mask_count, const std::int32_t* breaks,
                           std::int32_t break_count, unsigned char edge,
                           unsigned char invert, Rest... rest) {
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
