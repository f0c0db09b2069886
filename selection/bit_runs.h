// Runs of bits in a bit set, set and found word by word.
//
// Bits are numbered as in every bit set here: bit n is bit n mod 8, least
// significant first, of byte n div 8. Only the bytes that the caller names are
// read or written, whatever their alignment.
#pragma once

#include <algorithm>
#include <bit>
#include <cstring>

#include "blocks/base.h"

namespace quill {

static_assert(std::endian::native == std::endian::little,
              "words of a bit set are read as they lie in memory");

inline std::uint64_t load_word(const Byte* bits, Offset word) {
  std::uint64_t value;
  std::memcpy(&value, bits + word * 8, sizeof value);
  return value;
}

inline void set_in_word(Byte* bits, Offset word, std::uint64_t value) {
  value |= load_word(bits, word);
  std::memcpy(bits + word * 8, &value, sizeof value);
}

// Sets the bits from `first` to `last`, both included, in a set of which
// `byte_count` bytes may be touched. `last` lies in one of them.
inline void set_run(Byte* bits, Offset byte_count, Offset first, Offset last) {
  const Offset last_word = last >> 6;
  if ((last_word + 1) * 8 > byte_count) {
    // The last bytes are less than a word.
    const Offset in_tail = last_word * 64;
    if (first < in_tail) set_run(bits, byte_count, first, in_tail - 1);
    for (Offset bit = std::max(first, in_tail); bit <= last; ++bit) {
      Byte& byte = bits[bit >> 3];
      byte = static_cast<Byte>(byte | 1u << (bit & 7));
    }
    return;
  }
  const Offset first_word = first >> 6;
  const std::uint64_t from_first = ~std::uint64_t{0} << (first & 63);
  const std::uint64_t to_last = ~std::uint64_t{0} >> (63 - (last & 63));
  // Whether a short run lies in one word or two can't be foreseen: both words
  // are written, without a branch, and may be the same one.
  const std::uint64_t other = std::uint64_t{first_word == last_word} - 1;
  set_in_word(bits, first_word, from_first & (to_last | other));
  set_in_word(bits, last_word, to_last & (from_first | other));
  if (last_word - first_word > 1) {
    std::memset(bits + (first_word + 1) * 8, 0xFF,
                static_cast<std::size_t>(last_word - first_word - 1) * 8);
  }
}

// The word at bit `base`; bits from `bit_count` on count as clear.
inline std::uint64_t load_bits(const Byte* bits, Offset base,
                               Offset bit_count) {
  const Offset left = bit_count - base;
  if (left >= 64) return load_word(bits, base >> 6);
  std::uint64_t word = 0;
  std::memcpy(&word, bits + (base >> 3),
              static_cast<std::size_t>(left + 7) / 8);
  return word & ((std::uint64_t{1} << left) - 1);
}

// Calls `take(first, past)` for every run of set bits among the first
// `bit_count`, ascending; `past` is the bit after the run's last one. Ends
// early when `take` answers false.
template <class Take>
void for_each_run(const Byte* bits, Offset bit_count, Take take) {
  std::uint64_t before = 0;  // the last bit of the word before
  Offset first = 0;
  bool inside = false;
  for (Offset base = 0; base < bit_count; base += 64) {
    const std::uint64_t word = load_bits(bits, base, bit_count);
    std::uint64_t edges = word ^ (word << 1 | before);
    before = word >> 63;
    for (; edges != 0; edges &= edges - 1) {
      const Offset edge = base + std::countr_zero(edges);
      if (inside && !take(first, edge)) return;
      first = edge;
      inside = !inside;
    }
  }
  if (inside) take(first, bit_count);
}

}  // namespace quill
