// The searches for byte strings, one offset at a time.
#pragma once

#include "quillcore.h"

namespace quill::naive {

decltype(::FindStr) FindStr;
decltype(::FindStrAll) FindStrAll;
decltype(::FindByte) FindByte;
decltype(::BytePatternSwap) BytePatternSwap;

}  // namespace quill::naive
