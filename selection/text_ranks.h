// Giving texts their ranks: equal texts the same, a greater text a greater one.
//
// Texts are comparable byte by byte. Each item caches eight bytes of its text,
// and items are sorted by these alone; those that agree in them go on with the
// next eight. What many texts have in common is so read once for each of them,
// not once for each comparison.
#pragma once

#include <cstdint>
#include <span>

#include "blocks/base.h"

namespace quill {

struct RankedText {
  std::uint64_t key;    // bytes at the depth reached; in the end the rank
  std::uint32_t start;  // of the text
  std::uint32_t length;
  std::uint32_t index;  // of the element whose text it is
};

// Up to eight bytes as a word in the same order; bytes that aren't there count
// as 0.
std::uint64_t load_key(const Byte* bytes, Offset count);

struct Ranks {
  std::uint32_t different;   // ranks go from 0 to this, exclusive
  std::uint32_t most_equal;  // texts of one rank
};

// Sorts the items, whose keys hold the first bytes of their texts, and puts
// the ranks in the place of the keys.
Ranks rank_texts(const Byte* text, std::span<RankedText> items);

}  // namespace quill
