// Sorting longs into ascending order, in place and without allocation.
#pragma once

#include <span>

#include "blocks/base.h"

namespace quill {

void sort_longs(std::span<std::int32_t> longs);

}  // namespace quill
