// The kernels for x86-64 with AVX2 and BMI2: 32 bytes at a time.
#include "blocks/byte_kernels.h"

#if defined(__x86_64__)

#include <immintrin.h>

#include <cstring>

// From here on functions may use the instructions; those above are the same in
// every file. To the end of the file, so that templates are covered, too.
#if defined(__clang__)
#pragma clang attribute push(                              \
    __attribute__((target("avx2,bmi,bmi2,lzcnt,popcnt"))), \
    apply_to = function)
#else
#pragma GCC target("avx2,bmi,bmi2,lzcnt,popcnt")
#endif

namespace quill {
namespace {

struct Isa {
  using Wide = __m256i;
  using Narrow = __m128i;
  static constexpr bool kLooksUp = true;

  static Wide load(const Byte* at) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i_u*>(at));
  }
  static Narrow load_narrow(const Byte* at) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i_u*>(at));
  }
  static Narrow from_words(std::uint64_t low, std::uint64_t high) {
    return _mm_set_epi64x(static_cast<long long>(high),
                          static_cast<long long>(low));
  }
  static Wide fill(Byte byte) {
    return _mm256_set1_epi8(static_cast<char>(byte));
  }
  static Wide repeat(const Byte* sixteen) {
    return _mm256_broadcastsi128_si256(load_narrow(sixteen));
  }
  static Narrow narrow(Wide wide) { return _mm256_castsi256_si128(wide); }

  static Wide fill_longs(std::int32_t value) {
    return _mm256_set1_epi32(value);
  }
  static Wide equal_longs(Wide a, Wide b) { return _mm256_cmpeq_epi32(a, b); }
  static Wide greater_longs(Wide a, Wide b) { return _mm256_cmpgt_epi32(a, b); }
  static Wide add_longs(Wide a, Wide b) { return _mm256_add_epi32(a, b); }
  static Wide subtract_longs(Wide a, Wide b) { return _mm256_sub_epi32(a, b); }

  static Wide equal(Wide a, Wide b) { return _mm256_cmpeq_epi8(a, b); }
  static Narrow equal(Narrow a, Narrow b) { return _mm_cmpeq_epi8(a, b); }
  static Wide either(Wide a, Wide b) { return _mm256_or_si256(a, b); }
  static Narrow either(Narrow a, Narrow b) { return _mm_or_si128(a, b); }
  static Wide both(Wide a, Wide b) { return _mm256_and_si256(a, b); }
  static Narrow both(Narrow a, Narrow b) { return _mm_and_si128(a, b); }
  static Wide differ(Wide a, Wide b) { return _mm256_xor_si256(a, b); }
  static Wide add(Wide a, Wide b) { return _mm256_add_epi8(a, b); }
  static Narrow add(Narrow a, Narrow b) { return _mm_add_epi8(a, b); }
  static Wide subtract(Wide a, Wide b) { return _mm256_sub_epi8(a, b); }
  static Wide subtract_to_zero(Wide a, Wide b) {
    return _mm256_subs_epu8(a, b);
  }

  static Wide greater(Wide a, Wide b) { return _mm256_cmpgt_epi8(a, b); }

  // 0x80 to 0xBF are the lowest signed values.
  static Wide is_lead(Wide bytes) {
    return _mm256_cmpgt_epi8(bytes, _mm256_set1_epi8(-65));
  }
  static Narrow is_lead(Narrow bytes) {
    return _mm_cmpgt_epi8(bytes, _mm_set1_epi8(-65));
  }

  // The lookup gives 0 for indices from 0x80 on, so each half of the set
  // answers for its own half of the bytes.
  static Wide belongs(Wide bytes, Wide lower, Wide upper) {
    const Wide top = _mm256_set1_epi8(-128);
    const Wide entry =
        either(_mm256_shuffle_epi8(lower, bytes),
               _mm256_shuffle_epi8(upper, _mm256_xor_si256(bytes, top)));
    const Wide high = both(_mm256_srli_epi16(bytes, 4), fill(0x07));
    const Wide bit = _mm256_shuffle_epi8(
        _mm256_set1_epi64x(static_cast<long long>(0x8040201008040201)), high);
    return equal(both(entry, bit), bit);
  }
  static Narrow belongs(Narrow bytes, Narrow lower, Narrow upper) {
    const Narrow top = _mm_set1_epi8(-128);
    const Narrow entry =
        either(_mm_shuffle_epi8(lower, bytes),
               _mm_shuffle_epi8(upper, _mm_xor_si128(bytes, top)));
    const Narrow high = both(_mm_srli_epi16(bytes, 4), _mm_set1_epi8(0x07));
    const Narrow bit = _mm_shuffle_epi8(
        _mm_set1_epi64x(static_cast<long long>(0x8040201008040201)), high);
    return equal(both(entry, bit), bit);
  }

  // Only the highest bit of a lane counts, as in bits().
  static bool any(Wide lanes) { return _mm256_movemask_epi8(lanes) != 0; }
  static std::uint64_t bits(Wide lanes) {
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(lanes));
  }
  static std::uint64_t bits(Narrow lanes) {
    return static_cast<std::uint32_t>(_mm_movemask_epi8(lanes));
  }

  // The sum of all lanes as unsigned bytes.
  static Offset sum(Wide lanes) {
    const Wide quarters = _mm256_sad_epu8(lanes, _mm256_setzero_si256());
    const Narrow halves =
        _mm_add_epi64(narrow(quarters), _mm256_extracti128_si256(quarters, 1));
    return _mm_cvtsi128_si64(halves) +
           _mm_cvtsi128_si64(_mm_unpackhi_epi64(halves, halves));
  }

  static Offset count_bits(std::uint64_t word) {
    return static_cast<Offset>(_mm_popcnt_u64(word));
  }
  static Offset nth_bit(std::uint64_t word, Offset index) {
    return static_cast<Offset>(
        _tzcnt_u64(_pdep_u64(std::uint64_t{1} << index, word)));
  }
};

}  // namespace
}  // namespace quill

#include "blocks/byte_kernels_vector.h"

namespace quill {

const ByteKernels kAvx2Kernels = vector_kernels("AVX2", Instructions::kAvx2);

}  // namespace quill

#if defined(__clang__)
#pragma clang attribute pop
#endif

#endif  // __x86_64__
