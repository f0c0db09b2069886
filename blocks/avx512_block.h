// Blocks of text in AVX-512 registers: a bit for each of up to 64 bytes.
//
// Everything is local to the including file, which it turns the instructions on
// for.
// NOLINTBEGIN(misc-definitions-in-headers)
#pragma once

#include "blocks/base.h"
// Behind all that other files share.
#include "blocks/avx512_begin.h"

namespace quill {
namespace {

using Bits = std::uint64_t;

constexpr Offset kBlock = 64;

// The lowest `count` bits, 0 to 64 of them.
inline Bits low_bits(Offset count) {
  return _bzhi_u64(~Bits{0}, static_cast<unsigned>(count));
}
inline Offset lowest(Bits bits) {
  return static_cast<Offset>(_tzcnt_u64(bits));
}
inline Offset count_of(Bits bits) {
  return static_cast<Offset>(_mm_popcnt_u64(bits));
}
// The place of the bit numbered `index`, or 64.
inline Offset nth(Bits bits, Offset index) {
  return lowest(_pdep_u64(Bits{1} << index, bits));
}

inline __m512i load(const Byte* at) { return _mm512_loadu_si512(at); }
inline __m512i load(const Byte* at, Bits which) {
  return _mm512_maskz_loadu_epi8(which, at);
}
inline __m512i fill(Byte byte) {
  return _mm512_set1_epi8(static_cast<char>(byte));
}
inline Bits at_least(__m512i bytes, Byte least) {
  return _mm512_cmpge_epu8_mask(bytes, fill(least));
}
inline Bits equal_to(__m512i bytes, Byte wanted) {
  return _mm512_cmpeq_epi8_mask(bytes, fill(wanted));
}

// The characters of a block, seen from its first byte.
struct Order {
  Order(__m512i bytes, Bits whole) {
    const Bits wide = _mm512_movepi8_mask(bytes);
    two = at_least(bytes, 0xC0);
    leads = (two | ~wide) & whole;
    if (wide == 0) {
      end = count_of(whole);
      return;
    }
    const Bits three = at_least(bytes, 0xE0);
    const Bits four = at_least(bytes, 0xF0);
    const Bits expected = two << 1 | three << 2 | four << 3;
    const Bits wrong = (expected ^ (wide & ~two)) & whole;
    const Bits right = wrong == 0 ? whole : _blsmsk_u64(wrong) >> 1;
    end = count_of(right);
    const Bits starts = leads & right;
    if (starts == 0) {
      end = 0;
      return;
    }
    // The last character may reach beyond.
    const auto last = static_cast<Offset>(63 - _lzcnt_u64(starts));
    const auto longer =
        (two >> last & 1) + (three >> last & 1) + (four >> last & 1);
    if (last + 1 + static_cast<Offset>(longer) > end) end = last;
  }

  Bits two;    // bytes from 0xC0 on
  Bits leads;  // bytes that are no continuation bytes
  Offset end;  // up to here all characters are in order and whole
};

}  // namespace
}  // namespace quill
// NOLINTEND(misc-definitions-in-headers)
