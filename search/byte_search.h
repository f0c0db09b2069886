// The byte search that other searches start with.
#pragma once

#include "blocks/base.h"
#include "blocks/byte_scan.h"
#include "blocks/yield_meter.h"

namespace quill {

struct TextRange {
  const Byte* text;
  Offset start;
  Offset end;
};

// scan_for_byte once [start, reached) is known to hold none: the host may be
// due at the last offset of it.
Offset scan_on_for_byte(const TextRange& range, Offset reached, Byte wanted,
                        YieldMeter& meter);

// The first `wanted` in the range, or -1. Every offset passed is a unit; the
// host hears the position about to be examined, and after a stop that position
// is still looked at. Inline, since hits may lie close together.
inline Offset scan_for_byte(const TextRange& range, Byte wanted,
                            YieldMeter& meter) {
  if (range.start >= range.end) return -1;
  const Offset stretch = meter.stretch_end(range.start, range.end);
  const Byte* const last = range.text + stretch;
  const Byte* const found = find_byte(range.text + range.start, last, wanted);
  return found != last ? found - range.text
                       : scan_on_for_byte(range, stretch, wanted, meter);
}

}  // namespace quill
