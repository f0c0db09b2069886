// Sorting a mask's entries by key.
#pragma once

#include "blocks/base.h"

namespace quill {

// Sorts the entries [first, limit) into ascending order of their keys, in
// place and without the heap. Equal keys end up where a quicksort with the
// first key as its pivot leaves them.
void sort_mask(std::int32_t* keys, std::int32_t* values, Offset first,
               Offset limit);

}  // namespace quill
