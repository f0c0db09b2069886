// A set of byte values, laid out so that a vector kernel can test many bytes
// at once: the bytes with one low nibble share an entry, in which each high
// nibble has a bit.
#pragma once

#include <bit>

#include "blocks/base.h"

namespace quill {

struct ByteSet {
  // Entry n, bit h: whether the byte with low nibble n and high nibble h (in
  // `upper`: h + 8) belongs to the set.
  alignas(16) Byte lower[16] = {};
  alignas(16) Byte upper[16] = {};

  static constexpr ByteSet of(Byte byte) {
    ByteSet set;
    set.add(byte);
    return set;
  }

  constexpr void add(Byte byte) {
    Byte& entry = (byte < 0x80 ? lower : upper)[byte & 0x0F];
    entry = static_cast<Byte>(entry | bit_of(byte));
  }

  // Both ends included.
  constexpr void add_range(Byte low, Byte high) {
    for (unsigned byte = low; byte <= high; ++byte) {
      add(static_cast<Byte>(byte));
    }
  }

  constexpr void add_all(const ByteSet& other) {
    for (int i = 0; i < 16; ++i) {
      lower[i] = static_cast<Byte>(lower[i] | other.lower[i]);
      upper[i] = static_cast<Byte>(upper[i] | other.upper[i]);
    }
  }

  constexpr void invert() {
    for (int i = 0; i < 16; ++i) {
      lower[i] = static_cast<Byte>(~lower[i]);
      upper[i] = static_cast<Byte>(~upper[i]);
    }
  }

  constexpr bool contains(Byte byte) const {
    const Byte entry = (byte < 0x80 ? lower : upper)[byte & 0x0F];
    return (entry & bit_of(byte)) != 0;
  }

  // Calls `visit` with every member, in no particular order.
  template <class Visit>
  constexpr void visit_members(Visit visit) const {
    for (unsigned column = 0; column < 32; ++column) {
      const unsigned row = column & 15;
      unsigned bits = column < 16 ? lower[row] : upper[row];
      for (; bits != 0; bits &= bits - 1) {
        const auto high = static_cast<unsigned>(std::countr_zero(bits));
        visit(static_cast<Byte>((column & 16) << 3 | high << 4 | row));
      }
    }
  }

 private:
  static constexpr Byte bit_of(Byte byte) {
    return static_cast<Byte>(1u << (byte >> 4 & 7));
  }
};

}  // namespace quill
