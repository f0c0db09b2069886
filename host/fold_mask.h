// The mask that folds case: every character whose simple case folding is
// another character, and what it folds to.
//
// A mask maps one character to one character, so folds that expand to several
// ("ß" to "ss") are not in it.
#pragma once

#include <cstdint>
#include <vector>

namespace quill::tool {

struct FoldMask {
  std::vector<std::int32_t> keys;  // ascending
  std::vector<std::int32_t> values;

  std::int32_t count() const { return static_cast<std::int32_t>(keys.size()); }
};

// The folding mask, or an empty one when case matters.
FoldMask fold_mask(bool ignore_case);

}  // namespace quill::tool
