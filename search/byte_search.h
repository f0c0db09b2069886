// The byte search that other searches start with.
#pragma once

#include "blocks/base.h"
#include "blocks/yield_meter.h"

namespace quill {

struct TextRange {
  const Byte* text;
  Offset start;
  Offset end;
};

// The first `wanted` in the range, or -1. Every offset passed is a unit; the
// host hears the position about to be examined, and after a stop that position
// is still looked at.
Offset scan_for_byte(const TextRange& range, Byte wanted, YieldMeter& meter);

}  // namespace quill
