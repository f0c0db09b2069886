// The members of a set that take more than one byte.
//
// Those of two bytes, and in long ranges those of three, stand in tables of
// bits; the others, and what malformed text makes of characters, are left to
// bisection. A stretch of text is covered by groups of members; those behind
// lead bytes for which there are not enough groups are looked up one by one.
#pragma once

#include "blocks/base.h"
#include "blocks/byte_scan.h"
#include "blocks/byte_set.h"
#include "blocks/scratch.h"
#include "pattern/member_groups.h"
#include "pattern/range_pattern.h"

namespace quill {

class WideMembers {
 public:
  WideMembers(const QuillRangePart& part, Offset range_length);

  // Whether the character at `at`, of two bytes or more, is a member.
  bool contains(const Byte* at, const Character& character) const {
    const Offset length = character.length();
    if (length == 2 && is_continuation(at[1])) {
      return (pairs_[at[0] & 0x1F] >> (at[1] & 63) & 1) != 0;
    }
    if (length == 3 && is_continuation(at[1]) && is_continuation(at[2])) {
      if (!has_triples_) return false;
      if (triples_.size() != 0) {
        return (triples_[page_of(at[0], at[1])] >> (at[2] & 63) & 1) != 0;
      }
    }
    return find_long(part_.characters, part_.character_count, character.packed)
        .found;
  }

  // The lead bytes of members.
  const ByteSet& leads() const { return leads_; }

  // Sets, in the words of a range in order, the bits of all bytes of members.
  void cover(const Byte* first, const Byte* last, std::uint64_t* words) const;

 private:
  static Offset page_of(Byte lead, Byte second) {
    return (lead & 0x0F) << 6 | (second & 63);
  }

  void fill();
  void form_groups();
  bool group_pages(Byte lead);
  void look_up(Byte lead);
  void cover_loose(const Byte* first, const Byte* last,
                   std::uint64_t* words) const;

  const QuillRangePart& part_;
  std::uint64_t pairs_[32] = {};
  Scratch<std::uint64_t> triples_;  // none: bisection answers
  bool has_triples_ = false;
  ByteSet leads_;
  ByteSet loose_leads_;  // not in a group
  bool has_loose_leads_ = false;
  MemberGroups groups_;
};

}  // namespace quill
