// The sizes that a text may have after an edit. The one that it has already is
// always among them.
#pragma once

#include "blocks/base.h"

namespace quill {

struct SizeLimits {
  Offset least = 0;
  Offset most = kMaxLong;

  bool allow(Offset size) const { return least <= size && size <= most; }
};

}  // namespace quill
