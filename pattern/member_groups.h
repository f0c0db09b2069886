// Characters of two or three bytes in groups whose members can be told byte by
// byte, as vector kernels do: the Greek capitals are one, and so are those from
// one end of a page of 64 to the other.
#pragma once

#include "blocks/base.h"
#include "blocks/byte_scan.h"
#include "pattern/group_cover.h"
#include "pattern/slot.h"

namespace quill {

class MemberGroups {
 public:
  // Lead bytes (bit n: 0xC0 + n), with the second and third bytes (bit n: 0x80
  // + n) any of which make a member behind them. Pairs have no third byte, and
  // allow every one.
  struct Group {
    std::uint64_t leads;
    std::uint64_t seconds;
    std::uint64_t thirds;

    bool are_pairs() const { return leads >> 32 == 0; }
  };

  // Adds what these bytes make behind `lead`. False: there is no group left.
  bool add(Byte lead, std::uint64_t seconds, std::uint64_t thirds);

  // Once all have been added.
  void prepare();

  // Sets, in the words of a range in order, the bits of all bytes of members.
  void cover(const Byte* first, const Byte* last, std::uint64_t* words) const;

 private:
  // Those that tell a group's members from other characters.
  struct Tests {
    explicit Tests(const Group& group);

    Anchor anchors[3];
    std::size_t count;
  };

  Group groups_[GroupRows::kMostGroups];
  int count_ = 0;
  GroupRows rows_;
  Slots<Tests, GroupRows::kMostGroups> tests_;  // where rows are of no use
};

}  // namespace quill
