// The place of the ASCII keys in a mask, as the bisection of an array in any
// order sees it: what it finds for these characters depends on the steps that
// it takes for 0 and for 128, and otherwise on the keys between their ends
// alone. So the other keys, which may be thousands, need no look.
#pragma once

#include "utf8/mask.h"

namespace quill {

// Of a mask that isn't the identity. Branches are predicted well where one mask
// is used again and again.
struct AsciiKeys {
  explicit AsciiKeys(const Mask& mask) {
    // Both go the same way as long as the key in the middle is no ASCII.
    Offset low = 0;
    Offset high = mask.count - 1;
    while (low < high) {
      const Offset middle = (low + high) / 2;
      const std::int32_t key = mask.keys[middle];
      if (key >= 0 && key < 128) break;
      if (key < 0) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    first = lower_bound(mask.keys, low, high, 0);
    limit = lower_bound(mask.keys, low, high, 128);
  }

  // Whether the keys there ascend, so that what stands beside a key, or beside
  // the first of equal ones, is what it maps to.
  bool are_ascending(const Mask& mask) const {
    unsigned descents = 0;
    for (Offset i = first + 1; i < limit; ++i) {
      descents |= static_cast<unsigned>(mask.keys[i - 1] > mask.keys[i]);
    }
    return descents == 0;
  }

  Offset first;
  Offset limit;

 private:
  static Offset lower_bound(const std::int32_t* keys, Offset low, Offset high,
                            std::int32_t key) {
    while (low < high) {
      const Offset middle = (low + high) / 2;
      if (key > keys[middle]) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    return low + (key > keys[low] ? 1 : 0);
  }
};

}  // namespace quill
