// The only code that knows what a character is.
//
// A character is a lead byte and the bytes that its class announces, whatever
// those bytes are; nothing is validated beyond that. Malformed text therefore
// reads in one definite way, which every search and edit relies on:
//   - a read skips continuation bytes until it meets a lead byte;
//   - a character that would cross the end of the range is no character.
#pragma once

#include <cstring>

#include "blocks/base.h"

namespace quill {

inline bool is_continuation(Byte byte) { return (byte & 0xC0) == 0x80; }

// Bytes in the character that `lead` begins: 1 to 4. A continuation byte
// begins none and gives 1.
inline Offset length_from_lead(Byte lead) {
  if (lead < 0xC0) return 1;
  if (lead < 0xE0) return 2;
  return lead < 0xF0 ? 3 : 4;
}

// The character's bytes in text order, the lead byte least significant, as the
// signed long in which masks, sets and patterns hold it.
inline std::int32_t pack(const Byte* bytes, Offset length) {
  std::uint32_t packed = bytes[0];
  if (length > 1) packed |= std::uint32_t{bytes[1]} << 8;
  if (length > 2) packed |= std::uint32_t{bytes[2]} << 16;
  if (length > 3) packed |= std::uint32_t{bytes[3]} << 24;
  return static_cast<std::int32_t>(packed);
}

inline Byte byte_of(std::int32_t packed, int index) {
  return static_cast<Byte>(static_cast<std::uint32_t>(packed) >> (8 * index));
}

// Writes a packed character as text: its lowest byte, then each higher byte
// that is not zero. Returns the number of bytes, at most 4.
inline Offset unpack(std::int32_t packed, char* out) {
  Offset length = 0;
  out[length++] = static_cast<char>(byte_of(packed, 0));
  for (int i = 1; i < 4; ++i) {
    const Byte byte = byte_of(packed, i);
    if (byte != 0) out[length++] = static_cast<char>(byte);
  }
  return length;
}

struct Character {
  Offset start;         // of the lead byte
  Offset next;          // just past the character; `end` when there was none
  std::int32_t packed;  // undefined when there was none
  bool found;

  Offset length() const { return next - start; }
};

// The first character whose lead byte lies at or after `position`.
inline Character read_next(const Byte* text, Offset position, Offset end) {
  const Character none{position, end, 0, false};
  if (position >= end || text == nullptr) return none;
  while (is_continuation(text[position])) {
    if (++position == end) return none;
  }
  const Offset length = length_from_lead(text[position]);
  if (position + length > end) return none;
  return {position, position + length, pack(text + position, length), true};
}

// The nearest byte before `position` that is no continuation byte, or -1.
inline Offset lead_before(const Byte* text, Offset position) {
  do {
    --position;
  } while (position >= 0 && is_continuation(text[position]));
  return position;
}

// The character that contains `position`; where nothing but continuation bytes
// lies before it, the next one.
inline Character read_containing(const Byte* text, Offset position,
                                 Offset end) {
  if (position < 0 || position >= end || text == nullptr) {
    return {position, end, 0, false};
  }
  if (is_continuation(text[position])) {
    const Offset lead = lead_before(text, position);
    if (lead >= 0) position = lead;
  }
  return read_next(text, position, end);
}

// The character that the nearest lead byte before `position` begins.
inline Character read_previous(const Byte* text, Offset position, Offset end) {
  const Character none{position, end, 0, false};
  if (position > end || position < 1 || text == nullptr) return none;
  const Offset lead = lead_before(text, position);
  return lead < 0 ? none : read_containing(text, lead, end);
}

// The scalar value that the bytes of a packed character spell, unchecked.
// `length` is that of the character.
inline std::int32_t code_point(std::int32_t packed, Offset length) {
  const auto bits = [packed](int index, int mask) {
    return byte_of(packed, index) & mask;
  };
  switch (length) {
    case 1:
      return bits(0, 0xFF);
    case 2:
      return bits(0, 0x1F) << 6 | bits(1, 0x3F);
    case 3:
      return bits(0, 0x0F) << 12 | bits(1, 0x3F) << 6 | bits(2, 0x3F);
    default:
      return bits(0, 0x07) << 18 | bits(1, 0x3F) << 12 | bits(2, 0x3F) << 6 |
             bits(3, 0x3F);
  }
}

}  // namespace quill
