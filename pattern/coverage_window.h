// A stretch of the text whose characters are in order, with the bytes of all
// characters that a match can begin with covered.
//
// Windows follow each other through a search. They start small, so that an
// early match costs little, and are empty where the text is not in order.
#pragma once

#include <algorithm>
#include <bit>

#include "blocks/base.h"
#include "blocks/byte_scan.h"
#include "pattern/prepared_pattern.h"

namespace quill {

class CoverageWindow {
 public:
  Offset base() const { return base_; }
  Offset limit() const { return limit_; }
  Offset characters() const { return characters_; }

  // Whether each character is a single byte.
  bool is_ascii() const { return characters_ == limit_ - base_; }

  // Whether `position` lies inside, in a search that ends at `to`.
  bool holds(Offset position, Offset to) const {
    return base_ <= position && position < limit_ && to_ == to;
  }

  // Puts the window at `position`, where an attempt is due.
  void move_to(Offset position, const Byte* text, Offset to,
               const PreparedPattern& pattern) {
    const Offset most = std::min(to - position, size_);
    const Walk walk =
        walk_characters(text + position, text + position + most, most);
    base_ = position;
    limit_ = walk.next - text;
    characters_ = walk.characters;
    to_ = to;
    size_ = std::min(size_ * 4, CharacterClass::kMostCovered);
    if (limit_ > base_) cover(text, pattern);
  }

  // The first byte from `position` on that is covered, or that is not; or
  // `limit`.
  Offset next_covered(Offset position) const { return next<false>(position); }
  Offset next_bare(Offset position) const { return next<true>(position); }

 private:
  void cover(const Byte* text, const PreparedPattern& pattern) {
    pattern.accepted_by(0).cover(text + base_, text + limit_, is_ascii(),
                                 words_);
    for (int i = 1; i < pattern.starters(); ++i) {
      std::uint64_t more[kWords];
      pattern.accepted_by(i).cover(text + base_, text + limit_, is_ascii(),
                                   more);
      for (Offset w = 0; w < (limit_ - base_ + 63) / 64; ++w) {
        words_[w] |= more[w];
      }
    }
  }

  template <bool kInverted>
  Offset next(Offset position) const {
    const Offset length = limit_ - base_;
    Offset index = (position - base_) / 64;
    const auto word = [&] {
      return kInverted ? ~words_[index] : words_[index];
    };
    std::uint64_t bits = word() & ~std::uint64_t{0}
                                      << ((position - base_) % 64);
    while (bits == 0) {
      if (++index * 64 >= length) return limit_;
      bits = word();
    }
    return std::min(base_ + index * 64 + std::countr_zero(bits), limit_);
  }

  static constexpr Offset kWords = CharacterClass::kMostCovered / 64;

  Offset base_ = 0;
  Offset limit_ = 0;
  Offset to_ = -1;
  Offset characters_ = 0;
  Offset size_ = 128;
  std::uint64_t words_[kWords];  // undefined until covered
};

}  // namespace quill
