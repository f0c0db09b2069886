// The replace-alls: the search for all matches, then the insertion.
#pragma once

#include "quillcore.h"

namespace quill::naive {

decltype(::ReplaceStrAll) ReplaceStrAll;
decltype(::utf8_ReplaceStrAll) utf8_ReplaceStrAll;
decltype(::utf8_ReplacePatternAll) utf8_ReplacePatternAll;

}  // namespace quill::naive
