// With AVX-512 a lookup by the low six bits of each byte tells the groups of
// 64 lead bytes, or 64 second bytes, at a time.
#include "pattern/group_cover.h"

#if defined(__x86_64__)

#include "blocks/avx512_block.h"

namespace quill {
void cover_groups(const GroupRows& rows, const Byte* first, const Byte* last,
                  std::uint64_t* words) {
  const __m512i leads = load(rows.leads.data());
  const __m512i seconds = load(rows.seconds.data());
  const __m512i thirds = load(rows.thirds.data());
  Bits pairs_before = 0;  // members that began in the block before
  Bits triples_before = 0;
  for (const Byte* at = first; at < last; at += kBlock, ++words) {
    const Offset left = last - at;
    const auto behind = [=](Offset offset) {
      if (left >= kBlock + offset) return load(at + offset);
      return load(at + offset, low_bits(left > offset ? left - offset : 0));
    };
    const __m512i bytes = behind(0);
    // The three in one step, all bits that are set in each of them.
    const __m512i groups = _mm512_ternarylogic_epi64(
        _mm512_permutexvar_epi8(bytes, leads),
        _mm512_permutexvar_epi8(behind(1), seconds),
        _mm512_permutexvar_epi8(behind(2), thirds), 0x80);
    const Bits members =
        _mm512_test_epi8_mask(groups, groups) & at_least(bytes, 0xC0);
    const Bits triples = members & at_least(bytes, 0xE0);
    *words |= members | members << 1 | triples << 2 | pairs_before >> 63 |
              triples_before >> 62;
    pairs_before = members;
    triples_before = triples;
  }
}

}  // namespace quill

#include "blocks/avx512_end.h"

#else

namespace quill {

void cover_groups(const GroupRows&, const Byte*, const Byte*, std::uint64_t*) {}

}  // namespace quill

#endif  // __x86_64__
