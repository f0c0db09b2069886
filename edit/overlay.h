// Laying a template of characters over every selection.
//
// At a fixed position the template's character is written, at an open one the
// character that the selected text has there, if it has that many. Nothing but
// the selections changes, so the edit is a splice like any other; the host
// sees a new Block because it is promised one.
#pragma once

#include <span>

#include "edit/size_limits.h"
#include "quillcore.h"

namespace quill {

struct Template {
  std::span<const std::int32_t> characters;  // packed
  const unsigned char* flags;  // one a character; 1 is fixed, all else open
};

// In which Block the host finds the text after an overlay.
enum class Handover {
  kNewBlock,   // a new one, in its variable; the old one is disposed of
  kSameBlock,  // its own
};

// Overlays the text in `variable`. A template of no character deletes. False,
// and nothing is changed, for a list that is not canonical, when memory is
// short, and when the result's size would be outside the limits.
bool overlay(QuillBlock* variable, QuillBlock selections, const Template& form,
             Handover handover, const SizeLimits& limits);

}  // namespace quill
