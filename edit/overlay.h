// Laying a template of characters over every selection.
//
// At a fixed position the template's character is written, at an open one the
// character that the selected text has there, if it has that many. The result
// is a new Block; the text and the list are only read.
#pragma once

#include <span>

#include "blocks/base.h"
#include "quillcore.h"

namespace quill {

struct Template {
  std::span<const std::int32_t> characters;  // packed
  const unsigned char* flags;  // one a character; 1 is fixed, all else open
};

// The text with the template laid over it, a Block that is the caller's. Null
// when the list is not canonical, memory is short, or the result would be
// longer than `longest`. `text` is a Block.
QuillBlock overlaid_text(QuillBlock text, QuillBlock selections,
                         const Template& form, Offset longest);

// What becomes of the host's Block after an overlay.
enum class Handover {
  kNewBlock,   // it is disposed of; the variable gets the new one
  kSameBlock,  // it gets the new contents
};

// Overlays the text in `variable`. False, and nothing is changed, where there
// is no result or the host's own Block can't hold it.
bool overlay(QuillBlock* variable, QuillBlock selections, const Template& form,
             Handover handover, Offset longest);

}  // namespace quill
