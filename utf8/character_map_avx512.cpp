// Mapping characters with AVX-512: blocks of 64 bytes, in which every lead byte
// that occurs is looked up once for all its characters.
#include "blocks/short_move.h"
#include "utf8/character_map_kernels.h"

#if defined(__x86_64__)

#include "blocks/avx512_block.h"

namespace quill {
namespace {

using Row = CharacterMap::Row;

// Rows are indexed by the low six bits of a byte.
__m512i look_up(const Row& row, __m512i bytes) {
  return _mm512_permutexvar_epi8(bytes, load(row.data()));
}
Bits with(__m512i bytes, Byte bit) {
  return _mm512_test_epi8_mask(bytes, fill(bit));
}

// Masked stores take long on some machines, above all where the memory is not
// at hand yet.
void store(__m512i bytes, char* to, Offset size) {
  assert(size <= kBlock);
  if (size == kBlock) return _mm512_storeu_si512(to, bytes);
  alignas(64) char block[kBlock];
  _mm512_store_si512(block, bytes);
  move_few_bytes(to, block, size);
}

constexpr auto kNumbers = [] {
  std::array<Byte, 64> numbers{};
  for (Byte i = 0; i < 64; ++i) numbers[i] = i;
  return numbers;
}();
__m512i sixteen_numbers() {
  return _mm512_cvtepu8_epi32(
      _mm_loadu_si128(reinterpret_cast<const __m128i*>(kNumbers.data())));
}

class Mapper {
 public:
  explicit Mapper(const CharacterMap& map)
      : map_(map),
        ascii_low_(load(map.ascii.data())),
        ascii_high_(load(map.ascii.data() + 64)) {}

  // Maps `size` bytes if they are ASCII. In whole blocks: what these hold
  // beyond is copied.
  bool map_some_ascii(const Byte* from, Offset size, char* to) const {
    if (map_.has_ascii_stops) return false;
    for (Offset at = 0; at < size; at += kBlock) {
      const __m512i bytes = load(from + at);
      const Bits which = low_bits(size - at < kBlock ? size - at : kBlock);
      if ((_mm512_movepi8_mask(bytes) & which) != 0) return false;
      _mm512_storeu_si512(
          to + at, _mm512_mask_mov_epi8(bytes, which, mapped_ascii(bytes)));
    }
    return true;
  }

  MappedRun map_run(const Byte* from, Offset size, char* to,
                    Offset most) const {
    MappedRun run{0, 0};
    bool stopped = false;
    while (!stopped && run.bytes < size && run.characters < most) {
      const Offset left = size - run.bytes;
      const Offset wanted = most - run.characters;
      const Offset ascii = map_ascii(from + run.bytes, to + run.bytes,
                                     left < wanted ? left : wanted);
      run.bytes += ascii;
      run.characters += ascii;
      if (run.bytes == size || run.characters == most) break;
      const Offset rest = size - run.bytes;
      const MappedRun part =
          map_block(from + run.bytes, rest < kBlock ? rest : kBlock,
                    to + run.bytes, most - run.characters, stopped);
      if (part.bytes == 0) break;
      run.bytes += part.bytes;
      run.characters += part.characters;
    }
    return run;
  }

 private:
  // Maps whole blocks of ASCII. Returns their bytes, at most `most`.
  Offset map_ascii(const Byte* from, char* to, Offset most) const {
    if (map_.has_ascii_stops) return 0;
    Offset at = 0;
    for (; at + kBlock <= most; at += kBlock) {
      if (!map_ascii_block(from + at, to + at)) return at;
    }
    // The last block overlaps the one before it.
    const Offset last = most - kBlock;
    if (at == 0 || at == most || !map_ascii_block(from + last, to + last)) {
      return at;
    }
    return most;
  }

  // Maps within one block, of 1 to 64 bytes; `stopped` when it ends before its
  // last character.
  MappedRun map_block(const Byte* text, Offset size, char* to, Offset most,
                      bool& stopped) const {
    const Bits whole = low_bits(size);
    Block block{text, whole, load(text, whole), {}, 0};
    const Bits wide = _mm512_movepi8_mask(block.bytes);
    block.result =
        _mm512_mask_mov_epi8(mapped_ascii(block.bytes), wide, block.bytes);
    if (map_.has_ascii_stops) block.stops = ascii_stops(block) & ~wide;
    Offset end = size;
    Bits leads = whole;
    if (wide != 0) {
      const Order order(block.bytes, whole);
      leads = order.leads;
      end = order.end;
      map_wide(block, order.two);
    }
    if (const Offset stop = lowest(block.stops); stop < end) end = stop;
    store(block.result, to, size);
    leads &= low_bits(end);
    const Offset characters = count_of(leads);
    if (characters <= most) {
      stopped = end + 3 < size;
      return {end, characters};
    }
    stopped = true;
    return {nth(leads, most), most};
  }

  struct Block {
    const Byte* text;
    Bits whole;
    __m512i bytes;
    __m512i result;
    Bits stops;  // at the first byte of a character

    // The bytes that stand `distance` places on.
    __m512i ahead(int distance) const {
      return load(text + distance, whole >> distance);
    }
  };

  bool map_ascii_block(const Byte* from, char* to) const {
    const __m512i bytes = load(from);
    if (_mm512_movepi8_mask(bytes) != 0) return false;
    _mm512_storeu_si512(to, mapped_ascii(bytes));
    return true;
  }

  __m512i mapped_ascii(__m512i bytes) const {
    return _mm512_permutex2var_epi8(ascii_low_, bytes, ascii_high_);
  }

  Bits ascii_stops(const Block& block) const {
    const __m512i found =
        _mm512_permutex2var_epi8(load(map_.ascii_stops.data()), block.bytes,
                                 load(map_.ascii_stops.data() + 64));
    return _mm512_movepi8_mask(found) & block.whole;
  }

  void map_wide(Block& block, Bits two) const {
    const __m512i kinds = _mm512_maskz_permutexvar_epi8(
        two, block.bytes, load(map_.kinds.data()));
    block.stops |= with(kinds, CharacterMap::kStop);
    for (Bits left = with(kinds, CharacterMap::kPaired); left != 0;) {
      const Byte lead = block.text[lowest(left)];
      const Bits here = equal_to(block.bytes, lead);
      left &= ~here;
      map_pairs(block, lead, here);
    }
    for (Bits left = with(kinds, CharacterMap::kPaged); left != 0;) {
      const Byte lead = block.text[lowest(left)];
      const Bits here = equal_to(block.bytes, lead);
      left &= ~here;
      map_pages(block, lead, here);
    }
  }

  void map_pairs(Block& block, Byte lead, Bits here) const {
    const __m512i second = look_up(map_.seconds[lead & 31], block.bytes);
    const __m512i first = look_up(map_.leads[lead & 31], block.ahead(1));
    block.stops |= (_mm512_testn_epi8_mask(second, second) & here << 1) >> 1;
    block.result = _mm512_mask_mov_epi8(block.result, here, first);
    block.result = _mm512_mask_mov_epi8(block.result, here << 1, second);
  }

  void map_pages(Block& block, Byte lead, Bits here) const {
    const Row& pages = map_.pages[lead & 31];
    const __m512i numbers = look_up(pages, block.bytes);
    Bits left =
        _mm512_test_epi8_mask(numbers, numbers) & here << 1 & block.whole;
    while (left != 0) {
      const Byte second = block.text[lowest(left)];
      const Bits seconds = equal_to(block.bytes, second) & left;
      left &= ~seconds;
      const Byte number = pages[second & 63];
      if (number == CharacterMap::kStopPage) {
        block.stops |= seconds >> 1;
      } else {
        map_page(block, map_.page[number - 1u], seconds);
      }
    }
  }

  static void map_page(Block& block, const CharacterMap::Page& page,
                       Bits seconds) {
    const __m512i third = look_up(page.third, block.bytes);
    const __m512i second = look_up(page.second, block.ahead(1));
    const __m512i first = look_up(page.first, block.ahead(2));
    block.stops |= (_mm512_testn_epi8_mask(third, third) & seconds << 1) >> 2;
    block.result = _mm512_mask_mov_epi8(block.result, seconds >> 1, first);
    block.result = _mm512_mask_mov_epi8(block.result, seconds, second);
    block.result = _mm512_mask_mov_epi8(block.result, seconds << 1, third);
  }

  const CharacterMap& map_;
  __m512i ascii_low_;
  __m512i ascii_high_;
};

}  // namespace

MappedRun map_characters_avx512(const CharacterMap& map, const Byte* from,
                                Offset size, char* to, Offset most) {
  return Mapper(map).map_run(from, size, to, most);
}

Offset map_selections_avx512(const CharacterMap& map, const Byte* text,
                             Offset position, Offset limit,
                             std::span<const Selection> selections, char* to,
                             Offset& most) {
  const Mapper mapper(map);
  Offset mapped = 0;
  for (const Selection& selection : selections) {
    const Offset start = selection.start;
    const Offset length = selection.end - start;
    if (start < position || selection.end + kBlock > limit || length < 0 ||
        length > most) {
      break;
    }
    if (mapper.map_some_ascii(text + start, length, to + start)) {
      most -= length;
    } else {
      const MappedRun run =
          mapper.map_run(text + start, length, to + start, most);
      if (run.bytes < length) break;
      most -= run.characters;
    }
    position = selection.end;
    ++mapped;
  }
  return mapped;
}

// In whole registers: what is stored in pieces takes long to load at once.
bool map_neighbours_avx512(const std::int32_t* keys, const std::int32_t* values,
                           std::int32_t count, CharacterMap& map) {
  constexpr std::int32_t kMost = 32;
  const std::int32_t key = keys[0];
  if (count > kMost || key < 0 || key > 128 - count) return false;
  const Bits which = low_bits(count);
  const auto low = static_cast<__mmask16>(which);
  const auto high = static_cast<__mmask16>(which >> 16);
  const __m512i expected =
      _mm512_add_epi32(_mm512_set1_epi32(key), sixteen_numbers());
  const __m512i low_values = _mm512_maskz_loadu_epi32(low, values);
  const __m512i high_values = _mm512_maskz_loadu_epi32(high, values + 16);
  const __m512i low_wrong = _mm512_maskz_xor_epi32(
      low, expected, _mm512_maskz_loadu_epi32(low, keys));
  const __m512i high_wrong = _mm512_maskz_xor_epi32(
      high, _mm512_add_epi32(expected, _mm512_set1_epi32(16)),
      _mm512_maskz_loadu_epi32(high, keys + 16));
  const __m512i beyond = _mm512_andnot_si512(
      _mm512_set1_epi32(0xFF), _mm512_or_si512(low_values, high_values));
  const __m512i wrong =
      _mm512_or_si512(_mm512_or_si512(low_wrong, high_wrong), beyond);
  if (_mm512_test_epi32_mask(wrong, wrong) != 0) return false;
  const __m512i bytes = _mm512_castsi256_si512(_mm256_set_m128i(
      _mm512_cvtepi32_epi8(high_values), _mm512_cvtepi32_epi8(low_values)));
  __m512i own = load(kNumbers.data());
  for (Byte* to = map.ascii.data(); to < map.ascii.data() + 128; to += kBlock) {
    const __m512i index = _mm512_sub_epi8(own, fill(static_cast<Byte>(key)));
    const Bits changed =
        _mm512_cmplt_epu8_mask(index, fill(static_cast<Byte>(count)));
    _mm512_store_si512(
        to, _mm512_mask_permutexvar_epi8(own, changed, index, bytes));
    own = _mm512_add_epi8(own, fill(kBlock));
  }
  return true;
}

}  // namespace quill

#include "blocks/avx512_end.h"

#endif  // __x86_64__
