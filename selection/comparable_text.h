// Texts whose order by code point is their order by bytes, so that a sort can
// compare eight bytes at a time.
//
// A text is comparable when each of its characters has exactly the bytes that
// UTF-8 has for its code point. Then all of these hold: byte order is code
// point order, no read ever fails or leaves the text, reading the character
// that contains a position is reading the next one, and of two texts one of
// which begins the other, that one has fewer bytes. Under a mask a text is
// comparable when that is true of it both before and after mapping, each
// character keeping its length.
#pragma once

#include "blocks/base.h"
#include "utf8/mask_table.h"

namespace quill {

bool is_comparable(const Byte* text, Offset length);

// Writes the text's characters as the mask maps them to `out`, `length` bytes.
// False when it is not comparable; what lies in `out` is then undefined.
bool map_comparable(const Byte* text, Offset length, MaskTable& mask,
                    Byte* out);

}  // namespace quill
