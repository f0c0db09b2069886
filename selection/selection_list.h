// The view of a selection list as (start, end) pairs. A leaf: every folder may
// include it.
//
// A list is a Block of longs read two by two; a lone last long belongs to no
// selection. Offsets come from the host, and nothing here trusts them.
#pragma once

#include <cstddef>
#include <span>

#include "blocks/base.h"

namespace quill {

struct Selection {
  std::int32_t start;
  std::int32_t end;

  Offset length() const { return Offset{end} - start; }
};
static_assert(sizeof(Selection) == 8);

// An element of a key selection list: a match and the key found inside it.
struct KeyRecord {
  Selection key;
  Selection super;
};
static_assert(sizeof(KeyRecord) == 16);

// The whole selections of a list of longs.
inline std::span<Selection> selections_of(std::span<std::int32_t> longs) {
  return {reinterpret_cast<Selection*>(longs.data()), longs.size() / 2};
}
inline std::span<const Selection> selections_of(
    std::span<const std::int32_t> longs) {
  return {reinterpret_cast<const Selection*>(longs.data()), longs.size() / 2};
}

// Whether an editing operation may trust the list: ascending, not overlapping,
// inside a text of `text_length` bytes.
inline bool is_canonical(std::span<const Selection> selections,
                         Offset text_length) {
  Offset reached = 0;
  for (const Selection& selection : selections) {
    if (selection.start < reached || selection.end < selection.start) {
      return false;
    }
    reached = selection.end;
  }
  return reached <= text_length;
}

// The same for the list as it lies in its Block, where an odd number of longs
// is wrong too. Looks at all longs, without a branch for each.
inline bool is_canonical(std::span<const std::int32_t> longs,
                         Offset text_length) {
  if (longs.empty()) return true;
  unsigned descents = 0;
  for (std::size_t i = 1; i < longs.size(); ++i) {
    descents |= longs[i] < longs[i - 1] ? 1u : 0u;
  }
  return longs.size() % 2 == 0 && descents == 0 && longs.front() >= 0 &&
         longs.back() <= text_length;
}

}  // namespace quill
