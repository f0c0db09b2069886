// Deleting every selection: also what an insertion of nothing comes to.
#pragma once

#include "quillcore.h"

namespace quill {

// True with nothing touched for an empty text or list; false with nothing
// changed for a list that is not canonical. The list is only read.
bool delete_selections(QuillBlock text, QuillBlock selections);

}  // namespace quill
