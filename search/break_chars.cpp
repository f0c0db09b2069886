// The exported test of a match's sides.
#include "search/break_chars.h"

#include "quillcore.h"
#include "utf8/mask.h"

using namespace quill;

void utf8_TestBreakChars(const char* text, std::int32_t end,
                         std::int32_t match_start, std::int32_t match_end,
                         const std::int32_t* mask_keys,
                         const std::int32_t* mask_values,
                         std::int32_t mask_count,
                         const std::int32_t* break_characters,
                         std::int32_t break_count, unsigned char edge_flag,
                         unsigned char* before, unsigned char* after) {
  const BreakSet set{break_characters, break_count};
  Sides sides{1, 1};
  if (set.is_given()) {
    const Mask mask{mask_keys, mask_values, mask_count};
    // A match end before the text has nothing after it, as one beyond the end.
    const Offset after_from =
        match_end < 0 && match_end != end ? Offset{end} + 1 : Offset{match_end};
    sides = test_sides(as_bytes(text), end, match_start, after_from, mask, set,
                       edge_flag);
  }
  *before = sides.before;
  *after = sides.after;
}
