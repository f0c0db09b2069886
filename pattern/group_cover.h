// Covering the members of all groups of lead and second bytes in one pass.
#pragma once

#include <array>

#include "blocks/base.h"
#include "blocks/instructions.h"

namespace quill {

// For each lead byte from 0xC0 on, and each second and third byte, by their low
// six bits, the groups that it belongs to: a character is a member when all its
// bytes belong to one group. Behind a pair every byte does.
struct GroupRows {
  static constexpr int kMostGroups = 8;

  void add(int group, std::uint64_t lead_bits, std::uint64_t second_bits,
           std::uint64_t third_bits) {
    for (std::size_t i = 0; i < 64; ++i) {
      leads[i] = static_cast<Byte>(leads[i] | (lead_bits >> i & 1) << group);
      seconds[i] =
          static_cast<Byte>(seconds[i] | (second_bits >> i & 1) << group);
      thirds[i] = static_cast<Byte>(thirds[i] | (third_bits >> i & 1) << group);
    }
  }

  std::array<Byte, 64> leads{};
  std::array<Byte, 64> seconds{};
  std::array<Byte, 64> thirds{};
};

// Whether there is a kernel: elsewhere the groups are covered one by one.
inline bool covers_groups_at_once() {
  return instructions() == Instructions::kAvx512;
}

// Sets, in the words of a range in order, the bits of all bytes of members,
// which have two bytes, or three after a lead byte from 0xE0 on.
void cover_groups(const GroupRows& rows, const Byte* first, const Byte* last,
                  std::uint64_t* words);

}  // namespace quill
