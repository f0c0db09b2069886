// Cutting text every so many characters, whole blocks at a time.
#pragma once

#include "blocks/base.h"
#include "blocks/instructions.h"

namespace quill {

struct Cuts {
  Offset reached;     // how far the characters have been gone over
  Offset characters;  // since the last cut
  Offset cuts;
};

// Whether there is a kernel: where there is none, others are as fast.
inline bool cuts_in_blocks() { return instructions() == Instructions::kAvx512; }

// Goes over characters in order from `position` on, not always all of them, and
// stores behind every `every` a pair of equal longs, at most `most` pairs.
Cuts cut_every(const Byte* text, Offset position, Offset end, Offset every,
               Offset most, std::int32_t* pairs);

}  // namespace quill
