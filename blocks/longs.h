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
// They are taken without a branch on the comparison. `left` is high - low + 1:
// of 2k elements k are left, of 2k + 1 k or, when the key is not greater,
// k + 1. So the outcomes change the number of steps by one at most, and that
// last step is taken apart.
inline LongPlace find_long(const std::int32_t* array, std::int32_t count,
                           std::int32_t key) {
  if (count <= 0) return {0, false};
  // In an array too large for the caches both places that the next step may
  // look at are on their way while this one waits for its own.
  constexpr std::int32_t kFar = 1 << 15;
  const std::int32_t* low = array;
  std::uint64_t left = static_cast<std::uint32_t>(count);
  const auto halve = [&](std::uint64_t half) {
    const std::uint64_t stays = low[half] >= key;
    low = stays != 0 ? low : low + half + 1;
    left = (left + stays) / 2;
  };
  int steps = 31 - std::countl_zero(static_cast<std::uint32_t>(left));
  for (; count > kFar && steps > 4; --steps) {
    const std::uint64_t half = (left - 1) / 2;
    __builtin_prefetch(low + half / 2);
    __builtin_prefetch(low + half + half / 2);
    halve(half);
  }
  for (; steps > 0; --steps) halve((left - 1) / 2);
  low += static_cast<std::uint64_t>(*low < key) & (left - 1);
  const auto index = static_cast<std::int32_t>(low - array);
  return {index + (*low < key ? 1 : 0), *low == key};
}

}  // namespace quill
