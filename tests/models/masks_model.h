// Sorting masks and rewriting text through them, step by step.
#pragma once

#include "quillcore.h"

namespace quill::naive {

decltype(::utf8_SortMask) utf8_SortMask;
decltype(::utf8_StringToLongArray) utf8_StringToLongArray;
decltype(::utf8_MaskString) utf8_MaskString;
decltype(::utf8_MaskStringSelection) utf8_MaskStringSelection;

}  // namespace quill::naive
