// Whether the characters of a text spell a pattern.
//
// A pattern is packed characters in mapped form: characters of the text are
// mapped before they are compared, the pattern is not. An open position takes
// any one character. Reading skips stray continuation bytes, so a match may be
// longer than the pattern's own bytes.
#pragma once

#include "blocks/base.h"
#include "utf8/characters.h"

namespace quill {

struct CharPattern {
  const std::int32_t* elements;
  std::int32_t count;
  const unsigned char* flags;  // one byte an element, 1: fixed; null: all are

  bool is_fixed(Offset index) const {
    return flags == nullptr || flags[index] == 1;
  }
};

struct Comparison {
  Offset next;  // how far reading came; undefined for an empty pattern
  bool equal;
};

// Compares the characters from `position` on, each of them passed through
// `mask.map`.
template <class AnyMask>
Comparison compare_characters(const Byte* text, Offset position, Offset end,
                              const CharPattern& pattern, AnyMask& mask) {
  for (Offset i = 0; i < pattern.count; ++i) {
    std::int32_t packed = 0;
    if (position < end && text != nullptr && text[position] < 0x80) {
      packed = text[position++];
    } else {
      const Character read = read_next(text, position, end);
      position = read.next;
      if (!read.found) return {position, false};
      packed = read.packed;
    }
    if (pattern.is_fixed(i) && mask.map(packed) != pattern.elements[i]) {
      return {position, false};
    }
  }
  return {position, true};
}

}  // namespace quill
