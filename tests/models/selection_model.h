// Operations on selection lists, one byte, one bit and one element at a time.
#pragma once

#include "quillcore.h"

namespace quill::naive {

decltype(::CopySelectionsTo) CopySelectionsTo;
decltype(::CopySuperSelectionsTo) CopySuperSelectionsTo;
decltype(::CompareSelections) CompareSelections;
decltype(::qSortV) qSortV;
decltype(::utf8_SortSelections) utf8_SortSelections;
decltype(::utf8_SortKeySelections) utf8_SortKeySelections;
decltype(::OrderSelections) OrderSelections;
decltype(::SelectionToMap) SelectionToMap;
decltype(::MapToSelection) MapToSelection;
decltype(::InvertSelections) InvertSelections;
decltype(::ExtractSelections) ExtractSelections;

}  // namespace quill::naive
