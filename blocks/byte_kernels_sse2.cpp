// The kernels for every x86-64: 16 bytes at a time.
#include "blocks/byte_kernels.h"

#if defined(__x86_64__)

#include <emmintrin.h>

namespace quill {
namespace {

struct Isa {
  using Wide = __m128i;
  using Narrow = __m128i;
  static constexpr bool kLooksUp = false;

  static Wide load(const Byte* at) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(at));
  }
  static Narrow load_narrow(const Byte* at) { return load(at); }
  static Narrow from_words(std::uint64_t low, std::uint64_t high) {
    return _mm_set_epi64x(static_cast<long long>(high),
                          static_cast<long long>(low));
  }
  static Wide fill(Byte byte) { return _mm_set1_epi8(static_cast<char>(byte)); }
  static Wide repeat(const Byte* sixteen) { return load(sixteen); }
  static Narrow narrow(Wide wide) { return wide; }

  static Wide fill_longs(std::int32_t value) { return _mm_set1_epi32(value); }
  static Wide equal_longs(Wide a, Wide b) { return _mm_cmpeq_epi32(a, b); }
  static Wide greater_longs(Wide a, Wide b) { return _mm_cmpgt_epi32(a, b); }
  static Wide add_longs(Wide a, Wide b) { return _mm_add_epi32(a, b); }
  static Wide subtract_longs(Wide a, Wide b) { return _mm_sub_epi32(a, b); }

  static Wide equal(Wide a, Wide b) { return _mm_cmpeq_epi8(a, b); }
  static Wide either(Wide a, Wide b) { return _mm_or_si128(a, b); }
  static Wide both(Wide a, Wide b) { return _mm_and_si128(a, b); }
  static Wide differ(Wide a, Wide b) { return _mm_xor_si128(a, b); }
  static Wide add(Wide a, Wide b) { return _mm_add_epi8(a, b); }
  static Wide subtract(Wide a, Wide b) { return _mm_sub_epi8(a, b); }
  static Wide subtract_to_zero(Wide a, Wide b) { return _mm_subs_epu8(a, b); }

  static Wide greater(Wide a, Wide b) { return _mm_cmpgt_epi8(a, b); }

  // 0x80 to 0xBF are the lowest signed values.
  static Wide is_lead(Wide bytes) {
    return _mm_cmpgt_epi8(bytes, _mm_set1_epi8(-65));
  }

  // Never called: kLooksUp is false.
  static Wide belongs(Wide bytes, Wide /*lower*/, Wide /*upper*/) {
    return bytes;
  }

  static bool any(Wide lanes) { return _mm_movemask_epi8(lanes) != 0; }
  static std::uint64_t bits(Wide lanes) {
    return static_cast<std::uint32_t>(_mm_movemask_epi8(lanes));
  }

  // The sum of all lanes as unsigned bytes.
  static Offset sum(Wide lanes) {
    const Wide halves = _mm_sad_epu8(lanes, _mm_setzero_si128());
    return _mm_cvtsi128_si64(halves) +
           _mm_cvtsi128_si64(_mm_unpackhi_epi64(halves, halves));
  }

  static Offset count_bits(std::uint64_t word) {
    return __builtin_popcountll(word);
  }
  static Offset nth_bit(std::uint64_t word, Offset index) {
    for (; index > 0; --index) word &= word - 1;
    return __builtin_ctzll(word);
  }
};

}  // namespace
}  // namespace quill

#include "blocks/byte_kernels_vector.h"

namespace quill {

const ByteKernels kSse2Kernels = vector_kernels("SSE2", Instructions::kPlain);

}  // namespace quill

#endif  // __x86_64__
