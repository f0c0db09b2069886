// Break characters on both sides of a match, and the word test made of them.
//
// A side at the start of the text or at the end of the range answers with the
// host's edge byte, whatever that is; other sides answer 1 when the character
// there, mapped, belongs to the break set, else 0. A side that can't be read
// is no break.
#pragma once

#include "blocks/base.h"
#include "utf8/characters.h"

namespace quill {

struct BreakSet {
  const std::int32_t* characters;
  std::int32_t count;  // below 0: a set that contains nothing

  bool is_given() const { return characters != nullptr && count != 0; }

  // In the host's order, which puts the frequent ones first.
  bool contains(std::int32_t mapped) const {
    for (Offset i = 0; i < count; ++i) {
      if (characters[i] == mapped) return true;
    }
    return false;
  }
};

struct Sides {
  unsigned char before;
  unsigned char after;
};

// Tests the sides of the match [start, match_end) in a text searched up to
// `end`. The side before may lie outside the range searched.
template <class AnySet, class AnyMask>
Sides test_sides(const Byte* text, Offset end, Offset start, Offset match_end,
                 AnyMask& mask, AnySet& set, unsigned char edge) {
  const auto is_break = [&](const Character& read) -> unsigned char {
    return read.found && set.contains(mask.map(read.packed)) ? 1 : 0;
  };
  return {start == 0 ? edge : is_break(read_previous(text, start, end)),
          match_end == end ? edge : is_break(read_next(text, match_end, end))};
}

// What a search asks of the sides of a match.
struct WordTest {
  BreakSet set;
  unsigned char edge;
  unsigned char invert;

  // Inverting asks for sides that are no breaks. It counts whenever the set
  // has a positive count, be it null.
  bool inverts() const { return invert == 1 && set.count > 0; }

  bool accepts(Sides sides) const {
    const int flip = inverts() ? 1 : 0;
    return (sides.before ^ flip) == 1 && (sides.after ^ flip) == 1;
  }
};

}  // namespace quill
