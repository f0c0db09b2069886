// Sorted arrays of longs: the lookup under every mask and every character set.
#pragma once

#include "blocks/base.h"

namespace quill {

struct LongPlace {
  std::int32_t index;  // of the first equal element, else where it would go
  bool found;
};

// Bisection with signed comparison. On an array that isn't ascending the
// answer is whatever these very steps give: hosts see it, so they stay.
inline LongPlace find_long(const std::int32_t* array, std::int32_t count,
                           std::int32_t key) {
  if (count <= 0) return {0, false};
  std::int32_t low = 0;
  std::int32_t high = count - 1;
  while (low < high) {
    const std::int32_t middle = low + (high - low) / 2;
    if (key > array[middle]) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  if (array[low] < key) return {low + 1, false};
  return {low, array[low] == key};
}

}  // namespace quill
