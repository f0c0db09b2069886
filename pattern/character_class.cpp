#include "pattern/character_class.h"

#include <algorithm>
#include <limits>

namespace quill {

CharacterClass::CharacterClass(const QuillRangePart& part, Offset range_length)
    : includes_(part.include != 0) {
  // What has just been stored in pieces is slow to load: the words grow in
  // registers, and both sets member by member.
  std::uint64_t low = 0;
  std::uint64_t high = 0;
  bool has_wide = false;
  std::int32_t before = std::numeric_limits<std::int32_t>::min();
  for (std::int32_t i = 0; i < part.character_count; ++i) {
    const std::int32_t member = part.characters[i];
    ascends_ = ascends_ && before <= member;
    before = member;
    if (member >= 0 && member < 0x80) {
      const std::uint64_t bit = std::uint64_t{1} << (member & 63);
      (member < 64 ? low : high) |= bit;
      accepted_bytes_.add(static_cast<Byte>(member));
    } else if (byte_of(member, 0) >= 0xC0) {
      has_wide = true;  // what begins with other bytes is never read
    }
  }
  lists_ascii_ = (low | high) != 0;
  if (!includes_) accepted_bytes_.invert();
  ascii_[0] = includes_ ? low : ~low;
  ascii_[1] = includes_ ? high : ~high;
  if (has_wide && ascends_) wide_.emplace(part, range_length);
}

ByteSet CharacterClass::first_bytes() const {
  ByteSet bytes = accepted_bytes_;
  if (wide_.has_value() && includes_) bytes.add_all(wide_->leads());
  return bytes;
}

void CharacterClass::cover(const Byte* first, const Byte* last, bool ascii,
                           std::uint64_t* words) const {
  if (ascii || !wide_.has_value()) {
    mark_members(first, last, accepted_bytes_, words);
    return;
  }
  const Offset length = last - first;
  if (lists_ascii_) {
    ByteSet listed = accepted_bytes_;
    if (!includes_) listed.invert();
    mark_members(first, last, listed, words);
  } else {
    std::fill_n(words, (length + 63) / 64, 0);
  }
  wide_->cover(first, last, words);
  if (includes_) return;
  // Each byte belongs to one character: what is not listed is accepted.
  for (Offset i = 0; i < (length + 63) / 64; ++i) words[i] = ~words[i];
  if (length % 64 != 0) {
    words[length / 64] &= (std::uint64_t{1} << (length % 64)) - 1;
  }
}

}  // namespace quill
