// Byte-string search that is linear in the text whatever text and needle are,
// with no memory beyond the object: the fallback where filters keep failing.
//
// The needle is cut at a critical position (Crochemore and Perrin): its right
// part is compared forwards and its left part only when the right one fits. A
// mismatch in the right part lets the window move past it, one in the left
// part by the needle's period, and of a needle that repeats itself the part
// known to fit is remembered. Where nothing is remembered, the last byte of the
// window may let it move further.
#pragma once

#include "blocks/base.h"

namespace quill {

class TwoWay {
 public:
  // Takes time linear in the needle, of at least 2 bytes, which outlives it.
  TwoWay(const Byte* needle, Offset length);

  // The first occurrence that starts in [first, limit), or `limit`. Bytes up
  // to limit + length - 1 are read. Asked with ascending ranges; the work done
  // beyond `limit` for one is not done again for the next.
  const Byte* find(const Byte* first, const Byte* limit);

 private:
  Offset right_mismatch(const Byte* window, Offset remembered) const;
  bool fits_left(const Byte* window, Offset remembered) const;

  const Byte* needle_;
  Offset length_;
  Offset cut_;     // where the right part begins
  Offset period_;  // how far a mismatch in the left part moves the window
  bool repeats_;   // whether the needle has that period throughout
  const Byte* window_ = nullptr;  // no occurrence starts before
  Offset remembered_ = 0;         // bytes at the window's start that fit
  std::int32_t from_end_[256];    // bytes behind the last one of each value
};

}  // namespace quill
