// Sorting by ranks: the order in which the heap sort of the texts themselves
// would leave them, equal texts included, for a fraction of its reads.
#pragma once

#include <span>

#include "selection/text_ranks.h"
#include "utf8/mask.h"

namespace quill {

// Finds the order of texts, given by start, length and index. In the end the
// `index` of each item is that of the text that belongs at the item's place.
//
// Needs texts that compare byte by byte, and scratch memory (8 bytes an item
// and, under a mask, the texts' bytes). False when either is missing; the items
// are then undefined.
[[nodiscard]] bool order_by_ranks(const Byte* text, std::span<RankedText> items,
                                  const Mask& mask);

}  // namespace quill
