// Covering the members of all groups of lead and second bytes in one pass.
#pragma once

#include <array>

#include "blocks/base.h"
#include "blocks/instructions.h"

namespace quill {

// For each lead byte from 0xC0 on and each second byte, by their low six bits,
// the groups that it belongs to: a character is a member when both its bytes
// belong to one group.
struct GroupRows {
  std::array<Byte, 64> leads{};
  std::array<Byte, 64> seconds{};
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
