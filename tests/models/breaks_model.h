// Breaks, step by step.
#pragma once

#include "quillcore.h"

namespace quill::naive {

decltype(::utf8_FindBreaks) utf8_FindBreaks;
decltype(::utf8_ComputeBreaks) utf8_ComputeBreaks;
decltype(::utf8_ComputeSpaceBreaks) utf8_ComputeSpaceBreaks;

}  // namespace quill::naive
