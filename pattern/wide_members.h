// The members of a set that take more than one byte.
//
// Those of two bytes, and in long ranges those of three, stand in tables of
// bits; the others, and what malformed text makes of characters, are left to
// bisection. Lead bytes behind which the same second bytes make a member form
// a group, which vector kernels can find; the members behind other lead bytes
// are looked up one by one.
#pragma once

#include "blocks/base.h"
#include "blocks/byte_scan.h"
#include "blocks/byte_set.h"
#include "blocks/scratch.h"
#include "pattern/group_cover.h"
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
  // Lead bytes with the second bytes (bit n: 0x80 + n) that make a member,
  // whatever follows.
  struct Group {
    ByteSet leads;
    std::uint64_t seconds;
    Offset length;
    Anchor anchors[2];
  };
  static constexpr int kMostGroups = 4;

  static Offset page_of(Byte lead, Byte second) {
    return (lead & 0x0F) << 6 | (second & 63);
  }

  void fill();
  void form_groups();
  void group(Byte lead, std::uint64_t seconds, Offset length);
  void cover_group(const Group& group, const Byte* first, const Byte* last,
                   std::uint64_t* words) const;
  void cover_loose(const Byte* first, const Byte* last,
                   std::uint64_t* words) const;

  const QuillRangePart& part_;
  std::uint64_t pairs_[32] = {};
  Scratch<std::uint64_t> triples_;  // none: bisection answers
  bool has_triples_ = false;
  ByteSet leads_;
  ByteSet loose_leads_;  // not in a group
  bool has_loose_leads_ = false;
  Group groups_[kMostGroups];
  int group_count_ = 0;
  GroupRows rows_;  // the groups, as bits
};

}  // namespace quill
