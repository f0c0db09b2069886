// The kernels for every AArch64: 16 bytes at a time.
#include "blocks/byte_kernels.h"

#if defined(__aarch64__)

#include <arm_neon.h>

namespace quill {
namespace {

struct Isa {
  using Wide = uint8x16_t;
  using Narrow = uint8x16_t;
  static constexpr bool kLooksUp = true;

  static Wide load(const Byte* at) { return vld1q_u8(at); }
  static Narrow load_narrow(const Byte* at) { return load(at); }
  static Narrow from_words(std::uint64_t low, std::uint64_t high) {
    return vreinterpretq_u8_u64(
        vcombine_u64(vcreate_u64(low), vcreate_u64(high)));
  }
  static Wide fill(Byte byte) { return vdupq_n_u8(byte); }
  static Wide repeat(const Byte* sixteen) { return load(sixteen); }
  static Narrow narrow(Wide wide) { return wide; }

  static Wide fill_longs(std::int32_t value) {
    return vreinterpretq_u8_s32(vdupq_n_s32(value));
  }
  static Wide equal_longs(Wide a, Wide b) {
    return vreinterpretq_u8_u32(vceqq_s32(longs(a), longs(b)));
  }
  static Wide greater_longs(Wide a, Wide b) {
    return vreinterpretq_u8_u32(vcgtq_s32(longs(a), longs(b)));
  }
  static Wide add_longs(Wide a, Wide b) {
    return vreinterpretq_u8_s32(vaddq_s32(longs(a), longs(b)));
  }
  static Wide subtract_longs(Wide a, Wide b) {
    return vreinterpretq_u8_s32(vsubq_s32(longs(a), longs(b)));
  }

  static Wide equal(Wide a, Wide b) { return vceqq_u8(a, b); }
  static Wide either(Wide a, Wide b) { return vorrq_u8(a, b); }
  static Wide both(Wide a, Wide b) { return vandq_u8(a, b); }
  static Wide differ(Wide a, Wide b) { return veorq_u8(a, b); }
  static Wide add(Wide a, Wide b) { return vaddq_u8(a, b); }
  static Wide subtract(Wide a, Wide b) { return vsubq_u8(a, b); }
  static Wide subtract_to_zero(Wide a, Wide b) { return vqsubq_u8(a, b); }

  static Wide greater(Wide a, Wide b) {
    return vcgtq_s8(vreinterpretq_s8_u8(a), vreinterpretq_s8_u8(b));
  }

  // 0x80 to 0xBF are the lowest signed values.
  static Wide is_lead(Wide bytes) { return greater(bytes, fill(0xBF)); }

  // The lookup gives 0 for indices from 16 on, so each half of the set answers
  // for its own half of the bytes.
  static Wide belongs(Wide bytes, Wide lower, Wide upper) {
    const Wide index = both(bytes, fill(0x8F));
    const Wide entry = either(vqtbl1q_u8(lower, index),
                              vqtbl1q_u8(upper, differ(index, fill(0x80))));
    const Wide high = both(vshrq_n_u8(bytes, 4), fill(0x07));
    return vtstq_u8(entry, vshlq_u8(fill(1), vreinterpretq_s8_u8(high)));
  }

  // Only the highest bit of a lane counts, as in bits().
  static bool any(Wide lanes) { return vmaxvq_u8(lanes) >= 0x80; }

  // Each lane keeps the bit of its place among eight, and neighbours are added
  // until eight lanes are one.
  static std::uint64_t bits(Wide lanes) {
    const Wide places = vreinterpretq_u8_u64(vdupq_n_u64(0x8040201008040201));
    const Wide all_ones =
        vreinterpretq_u8_s8(vshrq_n_s8(vreinterpretq_s8_u8(lanes), 7));
    const Wide kept = both(all_ones, places);
    const Wide pairs = vpaddq_u8(kept, kept);
    const Wide fours = vpaddq_u8(pairs, pairs);
    const Wide eights = vpaddq_u8(fours, fours);
    return vgetq_lane_u16(vreinterpretq_u16_u8(eights), 0);
  }

  // The sum of all lanes as unsigned bytes.
  static Offset sum(Wide lanes) { return vaddlvq_u8(lanes); }

  static Offset count_bits(std::uint64_t word) {
    return __builtin_popcountll(word);
  }
  static Offset nth_bit(std::uint64_t word, Offset index) {
    for (; index > 0; --index) word &= word - 1;
    return __builtin_ctzll(word);
  }

 private:
  static int32x4_t longs(Wide lanes) { return vreinterpretq_s32_u8(lanes); }
};

}  // namespace
}  // namespace quill

#include "blocks/byte_kernels_vector.h"

namespace quill {

const ByteKernels kNeonKernels = vector_kernels("NEON", Instructions::kPlain);

}  // namespace quill

#endif  // __aarch64__
