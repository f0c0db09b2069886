// The edits at selections, composed piece by piece.
#pragma once

#include "quillcore.h"

namespace quill::naive {

decltype(::DelSel) DelSel;
decltype(::InsertDualStr) InsertDualStr;
decltype(::InsertStr) InsertStr;
decltype(::InsertMaskedStr) InsertMaskedStr;
decltype(::InsertMultiple) InsertMultiple;

}  // namespace quill::naive
