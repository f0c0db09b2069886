// Bit sets: bit n is bit n mod 8, least significant first, of byte n div 8.
#pragma once

#include "blocks/base.h"

namespace quill {

inline Byte bit_in_byte(Offset bit) {
  return static_cast<Byte>(1u << (bit & 7));
}

inline bool test_bit(const Byte* bits, Offset bit) {
  return (bits[bit >> 3] & bit_in_byte(bit)) != 0;
}

}  // namespace quill
