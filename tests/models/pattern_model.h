// Range patterns and the searches for them, one attempt at a time.
#pragma once

#include "quillcore.h"

namespace quill::naive {

decltype(::utf8_CompareRangePart) utf8_CompareRangePart;
decltype(::utf8_CompareRangePattern) utf8_CompareRangePattern;
decltype(::utf8_FindPattern) utf8_FindPattern;
decltype(::utf8_FindPatternPrev) utf8_FindPatternPrev;
decltype(::utf8_CountPatternAll) utf8_CountPatternAll;
decltype(::utf8_FindPatternAll) utf8_FindPatternAll;
decltype(::utf8_FindKeyPatternAll) utf8_FindKeyPatternAll;
decltype(::utf8_SortPattern) utf8_SortPattern;

}  // namespace quill::naive
