// Putting a string in place of a single selection, which is what an editor asks
// for at every key: what follows it moves once, and needs no plan.
#pragma once

#include <string_view>

#include "blocks/block_lock.h"
#include "edit/size_limits.h"
#include "selection/selection_list.h"

namespace quill {

// False, and nothing is changed, when the selection does not lie in the text,
// or when the result's size is outside the limits or can't be had.
[[nodiscard]] bool replace_one(BlockLock& text, Selection place,
                               std::string_view string,
                               const SizeLimits& limits);

}  // namespace quill
