// Putting a string in place of every selection, the step that every
// replace-all ends with.
//
// Three ways lead there: nothing to put in deletes, an open position overlays,
// and everything else is edited in place.
#pragma once

#include "edit/overlay.h"

namespace quill {

// The string and its flags as the host passes them, unchecked.
struct Insertion {
  const char* string;
  std::int32_t length;
  const unsigned char* flags;  // null: every position is fixed
};

// Edits the text in `variable`. False, and nothing is changed, when it can't
// be done, or when the result's size would be outside the limits.
bool insert_at_selections(QuillBlock* variable, QuillBlock selections,
                          const Insertion& insertion, Handover handover,
                          const SizeLimits& limits);

}  // namespace quill
