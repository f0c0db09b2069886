// Deleting every selection: also what an insertion of nothing comes to.
#pragma once

#include "edit/size_limits.h"
#include "quillcore.h"

namespace quill {

// True with nothing touched for an empty text or list; false with nothing
// changed for a list that is not canonical, or a result outside the limits. The
// list is only read.
bool delete_selections(QuillBlock text, QuillBlock selections,
                       const SizeLimits& limits);

}  // namespace quill
