// What a match begins with in text that is all ASCII: there the elements meet
// bytes that follow each other, and only the ASCII that maps to them counts.
#pragma once

#include <algorithm>

#include "blocks/base.h"
#include "blocks/byte_scan.h"
#include "search/comparison.h"
#include "utf8/mask_table.h"

namespace quill {

// Of the first two elements and one behind them, as far as there are any. Lets
// other bytes through, too, where two characters that map to an element differ
// in several bits.
inline Opening find_opening(const CharPattern& pattern,
                            const MaskTable::Shift& shift) {
  constexpr std::int32_t kFarthest = 3;
  Opening opening;
  opening.last = std::min(pattern.count - 1, kFarthest);
  const Offset places[] = {0, opening.second(), opening.last};
  for (int i = 0; i < 3; ++i) {
    std::uint32_t value = 0xFF;  // of an element that no ASCII maps to
    std::uint32_t ignored = 0;
    if (!pattern.is_fixed(places[i])) {
      ignored = 0xFF;
    } else {
      const auto element =
          static_cast<std::uint32_t>(pattern.elements[places[i]]);
      const std::uint32_t moved = element - shift.by;
      const bool is_moved = moved - shift.first < shift.count;
      const bool stays = element < 128 && element - shift.first >= shift.count;
      if (stays) value = element;
      if (is_moved) value = stays ? element | moved : moved;
      if (is_moved && stays) ignored = element ^ moved;
    }
    opening.value |= value << (8 * i);
    opening.ignored |= ignored << (8 * i);
  }
  return opening;
}

}  // namespace quill
