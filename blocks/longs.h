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
// They are taken without a branch on the comparison. `span` is high - low: half
// of it stays when the key is not greater, else what is left above the middle.
// So the outcomes change the number of steps by one at most, and that last step
// is taken apart.
inline LongPlace find_long(const std::int32_t* array, std::int32_t count,
                           std::int32_t key) {
  if (count <= 0) return {0, false};
  const std::int32_t* low = array;
  std::uint64_t span = static_cast<std::uint32_t>(count) - 1;
  std::uint64_t half = span / 2;
  const auto halve = [&] {
    const std::uint64_t above = low[half] < key;
    const std::int32_t* const behind = low + half + 1;
    low = above != 0 ? behind : low;
    span -= above;
    half = span / 4;
    span /= 2;
  };
  int steps = 31 - std::countl_zero(static_cast<std::uint32_t>(count));
  // In an array too large for the caches both places that the next step may
  // look at are on their way while this one waits for its own.
  constexpr std::int32_t kFar = 1 << 15;
  for (; count > kFar && steps > 4; --steps) {
    __builtin_prefetch(low + span / 4);
    __builtin_prefetch(low + span / 2 + span / 4);
    halve();
  }
  for (; steps > 0; --steps) halve();
  low += static_cast<std::uint64_t>(*low < key) & span;
  const auto index = static_cast<std::int32_t>(low - array);
  return {index + (*low < key ? 1 : 0), *low == key};
}

}  // namespace quill
