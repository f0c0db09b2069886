#include "selection/comparable_text.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "selection/compare.h"
#include "utf8/characters.h"

namespace quill {
namespace {

constexpr std::uint64_t kHighBits = 0x8080808080808080;

bool next_eight_are_ascii(const Byte* text) {
  std::uint64_t bytes;
  std::memcpy(&bytes, text, sizeof bytes);
  return (bytes & kHighBits) == 0;
}

std::uint64_t sixteen_bytes(const Byte* text) {
  std::array<std::uint64_t, 2> bytes;
  std::memcpy(bytes.data(), text, sizeof bytes);
  return bytes[0] | bytes[1];
}

// Whether a text is known to be ASCII. One of up to 64 bytes takes the same
// steps whatever its length, which can't be foreseen.
bool is_plainly_ascii(const Byte* text, Offset length) {
  const Offset last = length - 16;
  if (last < 0) return false;
  std::uint64_t bits = 0;
  for (Offset i = 0; i < length && (bits & kHighBits) == 0; i += 64) {
    bits = sixteen_bytes(text + std::min(i, last)) |
           sixteen_bytes(text + std::min(i + 16, last)) |
           sixteen_bytes(text + std::min(i + 32, last)) |
           sixteen_bytes(text + std::min(i + 48, last));
  }
  return (bits & kHighBits) == 0;
}

// Bytes that UTF-8 has for a code point.
Offset encoded_length(std::int32_t code_point) {
  if (code_point < 0x80) return 1;
  if (code_point < 0x800) return 2;
  return code_point < 0x10000 ? 3 : 4;
}

// The length of the character at the text's first byte, of `left`. 0 when it is
// not the one that UTF-8 has for its code point.
inline Offset comparable_character(const Byte* text, Offset left) {
  const Offset length = length_from_lead(*text);
  if (is_continuation(*text) || *text >= 0xF8 || length > left) return 0;
  for (Offset i = 1; i < length; ++i) {
    if (!is_continuation(text[i])) return 0;
  }
  const std::int32_t value = code_point(pack(text, length), length);
  return encoded_length(value) == length ? length : 0;
}

bool are_all_comparable(const Byte* text, Offset length) {
  Offset i = 0;
  while (i < length) {
    if (i + 8 <= length && next_eight_are_ascii(text + i)) {
      i += 8;
      continue;
    }
    const Offset character = comparable_character(text + i, length - i);
    if (character == 0) return false;
    i += character;
  }
  return true;
}

void encode(std::int32_t code_point, Offset length, Byte* out) {
  constexpr std::uint32_t kLead[] = {0, 0, 0xC0, 0xE0, 0xF0};
  auto bits = static_cast<std::uint32_t>(code_point);
  for (Offset i = length - 1; i > 0; --i) {
    out[i] = static_cast<Byte>(0x80 | (bits & 0x3F));
    bits >>= 6;
  }
  out[0] = static_cast<Byte>(kLead[length] | bits);
}

// Writes the character that `mapped` reads as, if it keeps the length.
bool write_mapped(std::int32_t mapped, Offset length, Byte* out) {
  const ComparedCharacter read = read_mapped(mapped, 0);
  if (!read.found || encoded_length(read.code_point) != length) return false;
  encode(read.code_point, length, out);
  return true;
}

// Maps the ASCII bytes up to the first other one and returns how many it did.
// A byte that maps to anything but ASCII ends it too.
Offset map_ascii(const Byte* text, Offset length, const std::int32_t* table,
                 Byte* out) {
  Offset i = 0;
  for (; i < length && text[i] < 0x80; ++i) {
    const auto mapped = static_cast<std::uint32_t>(table[text[i]]);
    if (mapped >= 0x80) break;
    out[i] = static_cast<Byte>(mapped);
  }
  return i;
}

}  // namespace

bool is_comparable(const Byte* text, Offset length) {
  return is_plainly_ascii(text, length) || are_all_comparable(text, length);
}

bool map_comparable(const Byte* text, Offset length, MaskTable& mask,
                    Byte* out) {
  const std::int32_t* const ascii = mask.ascii();
  Offset i = 0;
  while (i < length) {
    if (ascii != nullptr) i += map_ascii(text + i, length - i, ascii, out + i);
    if (i == length) break;
    const Offset character = comparable_character(text + i, length - i);
    if (character == 0) return false;
    const std::int32_t packed = pack(text + i, character);
    const std::int32_t mapped = mask.map(packed);
    if (mapped == packed) {
      std::memcpy(out + i, text + i, static_cast<std::size_t>(character));
    } else if (!write_mapped(mapped, character, out + i)) {
      return false;
    }
    i += character;
  }
  return true;
}

}  // namespace quill
