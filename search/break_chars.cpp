#include "search/break_chars.h"

#include <algorithm>

#include "blocks/longs.h"
#include "quillcore.h"
#include "utf8/mask.h"

namespace quill {

bool IndexedBreaks::search(std::int32_t mapped) {
  const std::int32_t* const last = set_.characters + std::max(set_.count, 0);
  const std::int32_t* const found = find_value(set_.characters, last, mapped);
  patience_ -= found - set_.characters;
  if (patience_ < 0) index();
  return found != last;
}

void IndexedBreaks::index() {
  indexed_ = true;
  Offset longer_count = 0;
  for (Offset i = 0; i < set_.count; ++i) {
    const auto bits = static_cast<std::uint32_t>(set_.characters[i]);
    if (bits < 128) {
      ascii_[bits >> 6] |= std::uint64_t{1} << (bits & 63);
    } else {
      ++longer_count;
    }
  }
  longer_.emplace(longer_count);
  if (longer_->refused()) return;
  std::copy_if(set_.characters, set_.characters + set_.count, longer_->data(),
               [](std::int32_t member) { return member < 0 || member >= 128; });
  std::sort(longer_->data(), longer_->data() + longer_count);
}

bool IndexedBreaks::contains_longer(std::int32_t mapped) const {
  if (longer_->refused()) return set_.contains(mapped);
  return find_long(longer_->data(), to_long(longer_->size()), mapped).found;
}

}  // namespace quill

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
