// Break characters on both sides of a match, and the word test made of them.
//
// A side at the start of the text or at the end of the range answers with the
// host's edge byte, whatever that is; other sides answer 1 when the character
// there, mapped, belongs to the break set, else 0. A side that can't be read
// is no break.
#pragma once

#include <algorithm>
#include <optional>

#include "blocks/base.h"
#include "blocks/byte_scan.h"
#include "blocks/scratch.h"
#include "utf8/characters.h"

namespace quill {

struct BreakSet {
  const std::int32_t* characters;
  std::int32_t count;  // below 0: a set that contains nothing

  bool is_given() const { return characters != nullptr && count != 0; }

  // In the host's order, which puts the frequent ones first.
  bool contains(std::int32_t mapped) const {
    const std::int32_t* const last = characters + std::max(count, 0);
    return find_value(characters, last, mapped) != last;
  }
};

// A break set that is asked many times: the same answers, but once searching
// through a long one has cost as much as indexing it, from an index. Where
// there is no memory for that, the set is searched on.
class IndexedBreaks {
 public:
  // The set outlives this.
  explicit IndexedBreaks(const BreakSet& set)
      : set_(set), patience_(Offset{4} * std::max(set.count, 0) + 128) {}

  bool contains(std::int32_t mapped) {
    if (!indexed_) return search(mapped);
    const auto bits = static_cast<std::uint32_t>(mapped);
    if (bits < 128) return (ascii_[bits >> 6] >> (bits & 63) & 1) != 0;
    return contains_longer(mapped);
  }

 private:
  bool search(std::int32_t mapped);
  void index();
  bool contains_longer(std::int32_t mapped) const;

  const BreakSet& set_;
  Offset patience_;  // members that may still be looked at one by one
  bool indexed_ = false;
  std::uint64_t ascii_[2] = {};
  std::optional<Scratch<std::int32_t>> longer_;  // the others, ascending
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
