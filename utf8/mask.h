// A character mask as the host passes it: keys, values and their count.
//
// Looked up by bisection. Keys out of order may be missed, and equal keys give
// the first one's value; a table prepared from the mask must answer the same.
#pragma once

#include "blocks/base.h"
#include "blocks/longs.h"

namespace quill {

struct Mask {
  const std::int32_t* keys = nullptr;
  const std::int32_t* values = nullptr;
  std::int32_t count = 0;

  // Whether every character maps to itself.
  bool is_identity() const {
    return count <= 0 || keys == nullptr || values == nullptr;
  }

  std::int32_t map(std::int32_t character) const {
    if (is_identity()) return character;
    const LongPlace place = find_long(keys, count, character);
    return place.found ? values[place.index] : character;
  }
};

}  // namespace quill
