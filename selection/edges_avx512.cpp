// Where the bits of a set change, found with AVX-512: the numbers of a word's
// edges are gathered at once, so that no branch waits for how many they are.
#include "selection/edge_kernel.h"

#if defined(__x86_64__)

#include "blocks/avx512_block.h"

namespace quill {
namespace {

// Where so many of eight words have edges, asking which ones costs more than
// it saves.
constexpr Offset kMany = 4;

// Writes eight longs, `base` plus each of the numbers. Fewer bytes seldomer lie
// across two lines of the cache.
void put_eight(__m128i numbers, __m512i base, std::int32_t* to) {
  const __m256i longs = _mm256_cvtepu8_epi32(numbers);
  _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(to),
                      _mm256_add_epi32(longs, _mm512_castsi512_si256(base)));
}

// The same with sixteen.
void put_sixteen(__m128i numbers, __m512i base, std::int32_t* to) {
  _mm512_storeu_si512(to,
                      _mm512_add_epi32(_mm512_cvtepu8_epi32(numbers), base));
}

// Extracts with a mask, since without one g++ 12 sees an uninitialized
// register.
std::int32_t* list_word(Bits edges, std::uint32_t base, __m512i all,
                        std::int32_t* out) {
  const __m512i found = _mm512_maskz_compress_epi8(edges, all);
  const __m512i plus = _mm512_set1_epi32(static_cast<std::int32_t>(base));
  const Offset count = count_of(edges);
  if (count <= 8) [[likely]] {
    put_eight(_mm512_castsi512_si128(found), plus, out);
    return out + count;
  }
  put_sixteen(_mm512_castsi512_si128(found), plus, out);
  if (count > 16) {
    put_sixteen(_mm512_maskz_extracti32x4_epi32(0xF, found, 1), plus, out + 16);
    put_sixteen(_mm512_maskz_extracti32x4_epi32(0xF, found, 2), plus, out + 32);
    put_sixteen(_mm512_maskz_extracti32x4_epi32(0xF, found, 3), plus, out + 48);
  }
  return out + count;
}

}  // namespace

std::int32_t* list_edges_avx512(const Byte* bits, std::uint64_t before,
                                std::int32_t base, std::int32_t* out) {
  alignas(kBlock) Byte numbers[kBlock];
  for (Offset i = 0; i < kBlock; ++i) numbers[i] = static_cast<Byte>(i);
  const __m512i all = load(numbers);
  const Bits carried = before << 63;
  __m512i behind = _mm512_set1_epi64(static_cast<long long>(carried));
  auto at = static_cast<std::uint32_t>(base);
  for (Offset i = 0; i < kWordsAtOnce; i += 8, at += 512) {
    const __m512i words = load(bits + i * 8);
    const __m512i last = _mm512_maskz_alignr_epi64(0xFF, words, behind, 7);
    const __m512i edges =
        _mm512_xor_si512(words, _mm512_shldi_epi64(words, last, 1));
    behind = words;
    alignas(kBlock) Bits of_words[8];
    _mm512_store_si512(of_words, edges);
    Bits changed = _mm512_test_epi64_mask(edges, edges);
    if (count_of(changed) >= kMany) {
      for (std::uint32_t k = 0; k < 8; ++k) {
        out = list_word(of_words[k], at + k * 64, all, out);
      }
      continue;
    }
    for (; changed != 0; changed &= changed - 1) {
      const Offset k = lowest(changed);
      out = list_word(of_words[k], at + static_cast<std::uint32_t>(k) * 64, all,
                      out);
    }
  }
  return out;
}

}  // namespace quill

#include "blocks/avx512_end.h"

#endif  // __x86_64__
