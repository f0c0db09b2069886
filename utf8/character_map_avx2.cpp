// Mapping characters with AVX2: ASCII in vectors, a row of 16 characters at a
// time, and other text by the plain code.
#include "utf8/character_map_kernels.h"

#if defined(__x86_64__)

#include <immintrin.h>

#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), \
                             apply_to = function)
#else
#pragma GCC target("avx2")
#endif

namespace quill {
namespace {

constexpr Offset kWide = 32;
constexpr Offset kBlock = 64;  // handed to the plain code at once

// The rows of ASCII that are changed, each as what is to be added to its
// characters.
class Rows {
 public:
  explicit Rows(const CharacterMap& map) {
    const __m128i column =
        _mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    for (Offset row = 0; row < 8; ++row) {
      if ((map.changed_rows >> row & 1) == 0) continue;
      const __m128i mapped = _mm_loadu_si128(
          reinterpret_cast<const __m128i_u*>(map.ascii.data() + row * 16));
      const __m128i itself =
          _mm_add_epi8(column, _mm_set1_epi8(static_cast<char>(row * 16)));
      changes_[count_] =
          _mm256_broadcastsi128_si256(_mm_sub_epi8(mapped, itself));
      firsts_[count_] = _mm256_set1_epi8(static_cast<char>(row * 16));
      ++count_;
    }
  }

  // A lookup gives 0 for indices from 0x80 on: those of other rows, once the
  // row's first character is taken away and 0x70 added.
  __m256i map(__m256i bytes) const {
    const __m256i beyond = _mm256_set1_epi8(0x70);
    __m256i mapped = bytes;
    for (int i = 0; i < count_; ++i) {
      const __m256i index =
          _mm256_adds_epu8(_mm256_sub_epi8(bytes, firsts_[i]), beyond);
      mapped = _mm256_add_epi8(mapped, _mm256_shuffle_epi8(changes_[i], index));
    }
    return mapped;
  }

 private:
  int count_ = 0;
  __m256i changes_[8];
  __m256i firsts_[8];
};

}  // namespace

MappedRun map_characters_avx2(const CharacterMap& map, const Byte* from,
                              Offset size, char* to, Offset most) {
  const Rows rows(map);
  MappedRun run{0, 0};
  for (;;) {
    const Offset left = size - run.bytes;
    const Offset wanted = most - run.characters;
    const Offset single = left < wanted ? left : wanted;
    const Offset start = run.bytes;
    while (!map.has_ascii_stops && run.bytes - start + kWide <= single) {
      const __m256i bytes = _mm256_loadu_si256(
          reinterpret_cast<const __m256i_u*>(from + run.bytes));
      if (_mm256_movemask_epi8(bytes) != 0) break;
      _mm256_storeu_si256(reinterpret_cast<__m256i_u*>(to + run.bytes),
                          rows.map(bytes));
      run.bytes += kWide;
    }
    run.characters += run.bytes - start;
    const Offset rest = size - run.bytes;
    const MappedRun part = map_characters_plainly(
        map, from + run.bytes, rest < kBlock ? rest : kBlock, to + run.bytes,
        most - run.characters);
    run.bytes += part.bytes;
    run.characters += part.characters;
    if (part.bytes == 0) return run;
  }
}

}  // namespace quill

#if defined(__clang__)
#pragma clang attribute pop
#endif

#endif  // __x86_64__
