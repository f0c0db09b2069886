// The exported comparison, under its two names.
#include "search/comparison.h"

#include "quillcore.h"
#include "utf8/mask.h"

using namespace quill;

std::int32_t utf8_CompareSubstring(
    const char* text, std::int32_t position, std::int32_t end,
    const std::int32_t* pattern, std::int32_t pattern_count,
    const unsigned char* position_flags, const std::int32_t* mask_keys,
    const std::int32_t* mask_values, std::int32_t mask_count,
    std::int32_t* next) {
  if (pattern_count <= 0) return 1;
  if (position < 0) {  // before every text: nothing to read there
    *next = end;
    return 0;
  }
  const Mask mask{mask_keys, mask_values, mask_count};
  const Comparison compared =
      compare_characters(as_bytes(text), position, end,
                         {pattern, pattern_count, position_flags}, mask);
  *next = to_long(compared.next);
  return compared.equal ? 1 : 0;
}

std::int32_t utf8_CompareSelString(
    const char* text, std::int32_t position, std::int32_t end,
    const std::int32_t* pattern, std::int32_t pattern_count,
    const unsigned char* position_flags, const std::int32_t* mask_keys,
    const std::int32_t* mask_values, std::int32_t mask_count,
    std::int32_t* next) {
  return utf8_CompareSubstring(text, position, end, pattern, pattern_count,
                               position_flags, mask_keys, mask_values,
                               mask_count, next);
}
