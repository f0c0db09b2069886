// Sorted arrays of longs: the lookup under every mask and every character set.
#pragma once

#include <bit>

#include "blocks/base.h"

namespace quill {

struct LongPlace {
  std::int32_t index;  // of the first equal element, else where it would go
  bool found;
};

// Bisection with signed comparison. On an array that isn't ascending the
// answer is whatever these very steps give, since hosts see it:
//
//   low = 0, high = count - 1; while low < high:
//     middle = (low + high) / 2
//     if key > array[middle]: low = middle + 1, else high = middle
//
// They are taken without a branch on the comparison. `span` is high - low. How
// many steps there are depends on the outcomes, but by one at most: all but
// the last one are certain to be taken.
inline LongPlace find_long(const std::int32_t* array, std::int32_t count,
                           std::int32_t key) {
  if (count <= 0) return {0, false};
  std::uint32_t low = 0;
  std::uint32_t span = static_cast<std::uint32_t>(count) - 1;
  const auto step = [&](std::uint32_t may_be_less) {
    const std::uint32_t half = span / 2;
    const std::uint32_t less =
        static_cast<std::uint32_t>(key > array[low + half]) & may_be_less;
    low += (half + 1) & (0 - less);
    span = half - (less & ~span & 1);
  };
  for (auto steps = static_cast<int>(std::bit_width(span + 1)) - 1; steps > 0;
       --steps) {
    step(1);
  }
  step(span != 0 ? 1 : 0);
  const std::int32_t at = array[low];
  return {static_cast<std::int32_t>(low) + (at < key ? 1 : 0), at == key};
}

}  // namespace quill
