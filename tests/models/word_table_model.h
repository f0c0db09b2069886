// Replacing words through a table: each selection compared with each word.
#pragma once

#include "quillcore.h"

namespace quill::naive {

decltype(::WordTable_FillReplaceTable) WordTable_FillReplaceTable;
decltype(::utf8_WordTableReplace) utf8_WordTableReplace;

}  // namespace quill::naive
