// Going over a number of characters at once.
#pragma once

#include "blocks/base.h"

namespace quill {

struct Stepped {
  Offset offset;      // reached; `end` when a character could not be read
  Offset characters;  // stepped over
  bool failed;        // no character could be read where the steps had come to
  bool stuck;         // the last step did not move, nor would any after it
};

// Takes up to `most` steps from `start`, each to the end of the character that
// contains the offset, and stops at `end`. Where stray continuation bytes make
// steps stay in place, the steps that are left are not taken one by one.
Stepped step_characters(const Byte* text, Offset start, Offset end,
                        Offset most);

}  // namespace quill
