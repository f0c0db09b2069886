// A stretch of the text whose characters are in order, with the bytes of all
// characters that a match can begin with covered; and, once they are asked
// for, those of the characters that a later part accepts.
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
    marked_ = 1;
    if (limit_ > base_) cover(text, pattern);
  }

  // Where a run of the characters of a part, from the second to the one
  // numbered kMostParts - 1, ends: the first byte from `position` on that is
  // of another, or `limit`.
  static constexpr int kMostParts = PreparedPattern::kMostDemandedParts;
  Offset run_end(int part, Offset position, const Byte* text,
                 const PreparedPattern& pattern) {
    mark_part(part, text, pattern);
    return next<true>(words_[part], position);
  }

  // Writes where runs of covered bytes start and end, from `position` on, where
  // one that holds it starts anew, and returns how many edges those are, at
  // most kMostEdges. The end of a run that may go on behind the window is left
  // out: their number is odd then.
  static constexpr Offset kMostEdges = CharacterClass::kMostCovered + 2;
  Offset edges_from(Offset position, std::int32_t* edges) const {
    const Offset length = limit_ - base_;
    Offset index = (position - base_) / 64;
    std::uint64_t word = words_[0][index] & kAll << ((position - base_) % 64);
    std::uint64_t before = 0;  // the last bit of the word before
    std::int32_t* edge = edges;
    while (true) {
      const Offset first = base_ + index * 64;
      std::uint64_t changes = word ^ (word << 1 | before);
      for (; changes != 0; changes &= changes - 1) {
        *edge++ = to_long(first + std::countr_zero(changes));
      }
      if (++index * 64 >= length) break;
      before = word >> 63;
      word = words_[0][index];
    }
    const Offset count = edge - edges;
    return count % 2 == 0 && count > 0 && edge[-1] == limit_ ? count - 1
                                                             : count;
  }

  // The first byte from `position` on at which a match can begin; or `limit`.
  Offset next_candidate(Offset position) const {
    return next<false>(narrowed_ ? candidates_ : words_[0], position);
  }

  // Whether a candidate has been seen to meet all demands that a pattern makes
  // on so many places.
  bool has_settled(Offset candidate, Offset places) const {
    return narrowed_ && candidate + places <= limit_;
  }

  // The first byte from `position` on that is covered, or `limit`.
  Offset next_covered(Offset position) const {
    return next<false>(words_[0], position);
  }

  // The first byte from `position` on that is not covered, or `limit`.
  Offset next_bare(Offset position) const {
    return next<true>(words_[0], position);
  }

 private:
  void cover(const Byte* text, const PreparedPattern& pattern) {
    pattern.accepted_by(0).cover(text + base_, text + limit_, is_ascii(),
                                 words_[0]);
    for (int i = 1; i < pattern.starters(); ++i) {
      std::uint64_t more[kWords];
      pattern.accepted_by(i).cover(text + base_, text + limit_, is_ascii(),
                                   more);
      for (Offset w = 0; w < (limit_ - base_ + 63) / 64; ++w) {
        words_[0][w] |= more[w];
      }
    }
    narrowed_ = is_ascii() && (pattern.demands().size() > 1 ||
                               pattern.begins_with_followed_run());
    if (narrowed_) narrow(text, pattern);
  }

  // Where each character is a byte, all that a match has to have tells where
  // one can begin. What lies behind the window may be anything.
  void narrow(const Byte* text, const PreparedPattern& pattern) {
    const Offset length = limit_ - base_;
    const Offset count = (length + 63) / 64;
    std::copy_n(words_[0], count, candidates_);
    if (pattern.begins_with_followed_run()) keep_followed(text, pattern);
    for (const PreparedPattern::Demand& demand : pattern.demands()) {
      if (demand.place == 0) continue;
      mark_part(demand.part, text, pattern);
      const std::uint64_t* const words = words_[demand.part];
      for (Offset w = 0; w < count; ++w) {
        std::uint64_t after = w + 1 < count ? words[w + 1] : kAll;
        std::uint64_t word = words[w];
        if (w + 1 == count) word |= beyond(length);
        if (w + 2 == count) after |= beyond(length);
        candidates_[w] &= word >> demand.place | after << (64 - demand.place);
      }
    }
  }

  // From wherever in a run an attempt begins, it comes to the same end: only
  // runs stay that the second part goes on behind.
  void keep_followed(const Byte* text, const PreparedPattern& pattern) {
    mark_part(1, text, pattern);
    const Offset length = limit_ - base_;
    std::uint64_t above = 1;  // lowest bit: a run may end below it, or go on
    for (Offset w = (length + 63) / 64; w-- > 0;) {
      const std::uint64_t run = words_[0][w];
      std::uint64_t follows = words_[1][w];
      if ((w + 1) * 64 > length) follows |= beyond(length);
      follows &= ~run;
      const std::uint64_t last = run & (follows >> 1 | above << 63);
      // In reverse a carry goes through the whole of each run that stays.
      const std::uint64_t reversed = in_reverse(run);
      const std::uint64_t carried = reversed + in_reverse(last);
      candidates_[w] = in_reverse(reversed & ~carried);
      above = (follows | candidates_[w]) & 1;
    }
  }

  static std::uint64_t in_reverse(std::uint64_t bits) {
    constexpr std::uint64_t kOdd = 0x5555555555555555;
    constexpr std::uint64_t kPairs = 0x3333333333333333;
    constexpr std::uint64_t kNibbles = 0x0F0F0F0F0F0F0F0F;
    bits = (bits >> 1 & kOdd) | (bits & kOdd) << 1;
    bits = (bits >> 2 & kPairs) | (bits & kPairs) << 2;
    bits = (bits >> 4 & kNibbles) | (bits & kNibbles) << 4;
    return __builtin_bswap64(bits);
  }

  // The bits of the last word that lie beyond the window.
  static std::uint64_t beyond(Offset length) {
    return length % 64 == 0 ? 0 : kAll << (length % 64);
  }

  void mark_part(int part, const Byte* text, const PreparedPattern& pattern) {
    if ((marked_ >> part & 1) != 0) return;
    marked_ |= 1u << part;
    pattern.accepted_by(part).cover(text + base_, text + limit_, is_ascii(),
                                    words_[part]);
  }

  template <bool kInverted>
  Offset next(const std::uint64_t* words, Offset position) const {
    const Offset length = limit_ - base_;
    Offset index = (position - base_) / 64;
    const auto word = [&] { return kInverted ? ~words[index] : words[index]; };
    std::uint64_t bits = word() & kAll << ((position - base_) % 64);
    while (bits == 0) {
      if (++index * 64 >= length) return limit_;
      bits = word();
    }
    return std::min(base_ + index * 64 + std::countr_zero(bits), limit_);
  }

  static constexpr std::uint64_t kAll = ~std::uint64_t{0};
  static constexpr Offset kWords = CharacterClass::kMostCovered / 64;

  Offset base_ = 0;
  Offset limit_ = 0;
  Offset to_ = -1;
  Offset characters_ = 0;
  Offset size_ = 128;
  unsigned marked_ = 0;  // bit n: words_[n] is covered for this stretch
  bool narrowed_ = false;
  std::uint64_t words_[kMostParts][kWords];
  std::uint64_t candidates_[kWords];  // when narrowed
};

}  // namespace quill
