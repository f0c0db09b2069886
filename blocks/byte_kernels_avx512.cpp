// The kernels for x86-64 with AVX-512: 64 bytes at a time.
//
// A comparison of vectors gives a word with a bit a byte, which is what blocks
// of positions are handed over as, and a load can leave bytes out: the ends of
// a range need nothing but a mask. So these kernels share no code with those
// for registers whose comparisons give vectors.
#include "blocks/byte_kernels.h"

#if defined(__x86_64__)

#include "blocks/avx512_begin.h"

namespace quill {
namespace {

using Vector = __m512i;
using Word = std::uint64_t;

constexpr Offset kBlock = 64;  // bytes in a vector, positions in a word

// How far ahead long scans ask for memory, also beyond their range: that
// bridges the gap between the stretches that a long text is scanned in.
constexpr Offset kAhead = 8192;

Offset lowest_bit(Word word) { return static_cast<Offset>(_tzcnt_u64(word)); }
Offset highest_bit(Word word) {
  return 63 - static_cast<Offset>(_lzcnt_u64(word));
}
Offset count_bits(Word word) {
  return static_cast<Offset>(_mm_popcnt_u64(word));
}
Offset nth_bit(Word word, Offset index) {
  return lowest_bit(_pdep_u64(Word{1} << index, word));
}

// The lowest `count` bits, 0 to 64 of them.
Word low_bits(Offset count) {
  return _bzhi_u64(~Word{0}, static_cast<unsigned>(count));
}

Offset offset_in_line(const Byte* position) {
  return static_cast<Offset>(reinterpret_cast<std::uintptr_t>(position) %
                             kBlock);
}

Vector fill(Byte byte) { return _mm512_set1_epi8(static_cast<char>(byte)); }

// Loaders: where a test gets its bytes from. What is left out reads as 0.
struct LoadAll {
  Vector operator()(const Byte* at) const { return _mm512_loadu_si512(at); }
};

struct LoadPart {
  Word wanted;
  Vector operator()(const Byte* at) const {
    return _mm512_maskz_loadu_epi8(wanted, at);
  }
};

// Tests: for which positions of a block do they hold? Each is asked about
// those for which the one before it held.
struct Equals {
  explicit Equals(Byte wanted) : value(fill(wanted)) {}

  template <class Load>
  Word bits(const Byte* position, Load load) const {
    return _mm512_cmpeq_epi8_mask(load(position), value);
  }

  Vector value;
};

struct EqualPair {
  template <class Load>
  Word bits(const Byte* position, Load load) const {
    return _mm512_mask_cmpeq_epi8_mask(near.bits(position, load),
                                       load(position + distance), far.value);
  }

  Equals near;
  Equals far;
  Offset distance;
};

struct Plain {
  explicit Plain(const Anchor& anchor)
      : Plain(anchor.ignored, anchor.value, anchor.offset) {}
  Plain(unsigned bits, unsigned wanted, Offset from_position)
      : ignored(fill(static_cast<Byte>(bits))),
        value(fill(static_cast<Byte>(wanted))),
        offset(from_position) {}

  template <class Load>
  Word bits(Word among, const Byte* position, Load load) const {
    return _mm512_mask_cmpeq_epi8_mask(
        among, _mm512_or_si512(load(position + offset), ignored), value);
  }

  Vector ignored;
  Vector value;
  Offset offset;
};

// Any set: its entry for the low nibble has the bit of the high nibble. The
// lookup gives 0 for indices from 0x80 on, so each half of the set answers for
// its own half of the bytes.
struct Member {
  explicit Member(const ByteSet& set, Offset from_position = 0)
      : lower(repeat(set.lower)),
        upper(repeat(set.upper)),
        offset(from_position) {}
  explicit Member(const Anchor& anchor) : Member(anchor.set, anchor.offset) {}

  template <class Load>
  Word bits(Word among, const Byte* position, Load load) const {
    const Vector bytes = load(position + offset);
    const Vector entry = _mm512_or_si512(
        _mm512_shuffle_epi8(lower, bytes),
        _mm512_shuffle_epi8(upper, _mm512_xor_si512(bytes, fill(0x80))));
    const Vector high =
        _mm512_and_si512(_mm512_srli_epi16(bytes, 4), fill(0x07));
    const Vector bit = _mm512_shuffle_epi8(
        _mm512_set1_epi64(static_cast<long long>(0x8040201008040201)), high);
    return _mm512_mask_test_epi8_mask(among, entry, bit);
  }
  template <class Load>
  Word bits(const Byte* position, Load load) const {
    return bits(~Word{0}, position, load);
  }

  // With a mask for g++ 12, as below.
  static Vector repeat(const Byte* sixteen) {
    return _mm512_maskz_broadcast_i32x4(
        0xFFFF, _mm_load_si128(reinterpret_cast<const __m128i*>(sixteen)));
  }

  Vector lower;
  Vector upper;
  Offset offset;
};

// Up to three anchors, tested one after the other. `kSparse`: the third only in
// blocks where the first two hold somewhere, which are few.
template <class One, int kCount, bool kSparse = false>
struct All {
  // Of fewer anchors the last is tested again.
  explicit All(std::span<const Anchor> anchors)
      : first(anchors[0]),
        second(anchors[anchors.size() > 1 ? 1 : 0]),
        third(anchors.back()) {}

  template <class Load>
  Word bits(const Byte* position, Load load) const {
    Word word = first.bits(~Word{0}, position, load);
    if constexpr (kCount > 1) word = second.bits(word, position, load);
    if constexpr (kCount > 2) {
      if (!kSparse || word != 0) word = third.bits(word, position, load);
    }
    return word;
  }

  One first;
  One second;
  One third;
};

struct NonAscii {
  template <class Load>
  Word bits(const Byte* position, Load load) const {
    return _mm512_movepi8_mask(load(position));
  }
};

// 0x80 to 0xBF are the lowest signed values.
struct Lead {
  template <class Load>
  Word bits(const Byte* position, Load load) const {
    return _mm512_cmpgt_epi8_mask(load(position), fill(0xBF));
  }
};

// The word for 0 to 64 positions.
template <class Test>
Word part_bits(const Byte* position, Offset count, const Test& test) {
  const Word wanted = low_bits(count);
  return test.bits(position, LoadPart{wanted}) & wanted;
}

template <class Test>
[[gnu::always_inline]] inline const Byte* find(const Byte* first,
                                               const Byte* last,
                                               const Test& test) {
  if (last - first <= kBlock) {
    const Word word = part_bits(first, last - first, test);
    return word == 0 ? last : first + lowest_bit(word);
  }
  if (const Word word = test.bits(first, LoadAll{}); word != 0) {
    return first + lowest_bit(word);
  }
  const Byte* position = first + kBlock;
  if (last - position > 4 * kBlock) {
    position -= offset_in_line(position);
    for (; last - position >= 4 * kBlock; position += 4 * kBlock) {
      for (int i = 0; i < 4; ++i) {
        __builtin_prefetch(position + kAhead + i * kBlock);
      }
      const Word a = test.bits(position, LoadAll{});
      const Word b = test.bits(position + kBlock, LoadAll{});
      const Word c = test.bits(position + 2 * kBlock, LoadAll{});
      const Word d = test.bits(position + 3 * kBlock, LoadAll{});
      if ((a | b | c | d) == 0) [[likely]]
        continue;
      if (a != 0) return position + lowest_bit(a);
      if (b != 0) return position + kBlock + lowest_bit(b);
      if (c != 0) return position + 2 * kBlock + lowest_bit(c);
      return position + 3 * kBlock + lowest_bit(d);
    }
  }
  for (;; position += kBlock) {
    if (last - position < kBlock) position = last - kBlock;
    const Word word = test.bits(position, LoadAll{});
    if (word != 0) return position + lowest_bit(word);
    if (position + kBlock == last) return last;
  }
}

template <class Test>
const Byte* find_backward(const Byte* first, const Byte* last,
                          const Test& test) {
  const Byte* position = last;
  for (; position - first >= 2 * kBlock; position -= 2 * kBlock) {
    __builtin_prefetch(position - kAhead);
    __builtin_prefetch(position - kAhead - kBlock);
    const Word near = test.bits(position - kBlock, LoadAll{});
    const Word far = test.bits(position - 2 * kBlock, LoadAll{});
    if ((near | far) == 0) [[likely]]
      continue;
    return near != 0 ? position - kBlock + highest_bit(near)
                     : position - 2 * kBlock + highest_bit(far);
  }
  for (;;) {
    const Offset count = position - first < kBlock ? position - first : kBlock;
    position -= count;
    const Word word = part_bits(position, count, test);
    if (word != 0) return position + highest_bit(word);
    if (position == first) return last;
  }
}

template <class Test>
void mark(const Byte* first, const Byte* last, std::uint64_t* words,
          const Test& test) {
  for (; last - first >= kBlock; first += kBlock) {
    __builtin_prefetch(first + kAhead);
    *words++ = test.bits(first, LoadAll{});
  }
  if (first < last) *words = part_bits(first, last - first, test);
}

bool are_plain(std::span<const Anchor> anchors) {
  for (const Anchor& anchor : anchors) {
    if (!anchor.is_plain) return false;
  }
  return true;
}

// Calls `use` with a test that the anchors amount to, of two for any number of
// them.
template <class Use>
[[gnu::always_inline]] inline auto with_any_anchors(
    std::span<const Anchor> anchors, Use use) {
  return are_plain(anchors) ? use(All<Plain, 3>(anchors))
                            : use(All<Member, 3>(anchors));
}

// The same with tests for each number.
template <class Use>
[[gnu::always_inline]] inline auto with_anchors(std::span<const Anchor> anchors,
                                                Use use) {
  if (anchors.size() == 3) {
    return are_plain(anchors) ? use(All<Plain, 3, true>(anchors))
                              : use(All<Member, 3, true>(anchors));
  }
  if (are_plain(anchors)) return use(All<Plain, 2>(anchors));
  return anchors.size() == 1 ? use(All<Member, 1>(anchors))
                             : use(All<Member, 2>(anchors));
}

const Byte* find_byte_avx512(const Byte* first, const Byte* last, Byte wanted) {
  return find(first, last, Equals(wanted));
}

const Byte* find_byte_backward_avx512(const Byte* first, const Byte* last,
                                      Byte wanted) {
  return find_backward(first, last, Equals(wanted));
}

const Byte* find_pair_avx512(const Byte* first, const Byte* last, Byte near,
                             Byte far, Offset distance) {
  return find(first, last, EqualPair{Equals(near), Equals(far), distance});
}

const Byte* find_member_avx512(const Byte* first, const Byte* last,
                               const ByteSet& set) {
  return find(first, last, Member(set));
}

const Byte* find_member_backward_avx512(const Byte* first, const Byte* last,
                                        const ByteSet& set) {
  return find_backward(first, last, Member(set));
}

const std::int32_t* find_value_avx512(const std::int32_t* first,
                                      const std::int32_t* last,
                                      std::int32_t wanted) {
  constexpr Offset kLongs = kBlock / 4;
  const Vector value = _mm512_set1_epi32(wanted);
  const auto equal = [&](Offset at) {
    return _mm512_cmpeq_epi32_mask(_mm512_loadu_si512(first + at), value);
  };
  for (; last - first >= 4 * kLongs; first += 4 * kLongs) {
    const Word a = equal(0) | Word{equal(kLongs)} << kLongs;
    const Word b = equal(2 * kLongs) | Word{equal(3 * kLongs)} << kLongs;
    const Word word = a | b << 2 * kLongs;
    if (word != 0) return first + lowest_bit(word);
  }
  for (; first < last; first += kLongs) {
    const Offset left = last - first;
    const auto part = static_cast<__mmask16>(low_bits(left < 16 ? left : 16));
    const Word word = _mm512_mask_cmpeq_epi32_mask(
        part, _mm512_maskz_loadu_epi32(part, first), value);
    if (word != 0) return first + lowest_bit(word);
  }
  return last;
}

// Both longs of a pair are loaded at the place of its first, which has an even
// number. The last load leaves out the longs with none behind them.
PairSurvey survey_pairs_avx512(const std::int32_t* first,
                               const std::int32_t* last, std::int32_t limit) {
  constexpr Offset kLongs = kBlock / 4;
  constexpr __mmask16 kAll = 0xFFFF;  // g++ 12 warns of the maximum without it
  constexpr __mmask16 kFirsts = 0x5555;
  Vector totals = _mm512_setzero_si512();
  Vector greatest = totals;
  __mmask16 descends = 0;
  const auto look = [&](__mmask16 part) {
    const Vector longs = _mm512_maskz_loadu_epi32(part, first);
    const Vector next = _mm512_maskz_loadu_epi32(part, first + 1);
    const Vector above = _mm512_maskz_sub_epi32(part & kFirsts, next, longs);
    descends = _kor_mask16(descends, _mm512_cmpgt_epi32_mask(longs, next));
    greatest = _mm512_maskz_max_epi32(kAll, greatest, above);
    totals = _mm512_add_epi32(totals, above);
  };
  for (; last - first > kLongs; first += kLongs) look(kAll);
  if (last - first > 1)
    look(static_cast<__mmask16>(low_bits(last - first - 1)));
  const bool exceeds =
      _mm512_cmpgt_epi32_mask(greatest, _mm512_set1_epi32(limit)) != 0;
  std::uint32_t lanes[kLongs];
  _mm512_storeu_si512(lanes, totals);
  std::uint32_t total = 0;
  for (Offset i = 0; i < kLongs; i += 2) total += lanes[i];
  return {descends == 0, exceeds, total};
}

const Byte* find_non_ascii_avx512(const Byte* first, const Byte* last) {
  return find(first, last, NonAscii());
}

const Byte* find_anchored_avx512(const Byte* first, const Byte* last,
                                 std::span<const Anchor> anchors) {
  return with_anchors(
      anchors, [=](const auto& test) { return find(first, last, test); });
}

const Byte* find_anchored_backward_avx512(const Byte* first, const Byte* last,
                                          std::span<const Anchor> anchors) {
  return with_any_anchors(anchors, [=](const auto& test) {
    return find_backward(first, last, test);
  });
}

void mark_members_avx512(const Byte* first, const Byte* last,
                         const ByteSet& set, std::uint64_t* words) {
  mark(first, last, words, Member(set));
}

void mark_anchored_avx512(const Byte* first, const Byte* last,
                          std::span<const Anchor> anchors,
                          std::uint64_t* words) {
  with_any_anchors(anchors,
                   [=](const auto& test) { mark(first, last, words, test); });
}

bool mark_opening_avx512(const Byte* first, const Byte* last,
                         const Opening& opening, std::uint64_t* words) {
  const Plain a(opening.ignored, opening.value, 0);
  const Plain b(opening.ignored >> 8, opening.value >> 8, opening.second());
  const Plain c(opening.ignored >> 16, opening.value >> 16, opening.last);
  for (last -= opening.last; first < last; first += kBlock) {
    const Offset left = last - first;
    const LoadPart load{low_bits(left < kBlock ? left : kBlock)};
    *words++ = c.bits(b.bits(a.bits(load.wanted, first, load), first, load),
                      first, load);
  }
  return true;
}

void store(std::uint16_t* to, __m256i numbers, Vector plus) {
  _mm512_storeu_si512(to,
                      _mm512_add_epi16(_mm512_cvtepu8_epi16(numbers), plus));
}

// Gathers the numbers of a word's bits at the front of a vector. Extracts with
// a mask, since without one g++ 12 sees an uninitialized register.
Offset list_marks_avx512(const std::uint64_t* words, Offset word_count,
                         std::uint16_t* numbers) {
  const Vector all = _mm512_set_epi8(
      63, 62, 61, 60, 59, 58, 57, 56, 55, 54, 53, 52, 51, 50, 49, 48, 47, 46,
      45, 44, 43, 42, 41, 40, 39, 38, 37, 36, 35, 34, 33, 32, 31, 30, 29, 28,
      27, 26, 25, 24, 23, 22, 21, 20, 19, 18, 17, 16, 15, 14, 13, 12, 11, 10, 9,
      8, 7, 6, 5, 4, 3, 2, 1, 0);
  std::uint16_t* to = numbers;
  Vector before = _mm512_setzero_si512();
  for (Offset i = 0; i < word_count; ++i) {
    const Vector set = _mm512_maskz_compress_epi8(words[i], all);
    const Offset count = count_bits(words[i]);
    store(to, _mm512_maskz_extracti64x4_epi64(0xF, set, 0), before);
    if (count > 32) {
      store(to + 32, _mm512_maskz_extracti64x4_epi64(0xF, set, 1), before);
    }
    to += count;
    before = _mm512_add_epi16(before, _mm512_set1_epi16(kBlock));
  }
  return to - numbers;
}

void mark_leads_avx512(const Byte* first, const Byte* last,
                       std::uint64_t* words) {
  mark(first, last, words, Lead());
}

Offset count_leads_avx512(const Byte* first, const Byte* last) {
  Offset count = 0;
  for (; last - first >= kBlock; first += kBlock) {
    __builtin_prefetch(first + kAhead);
    count += count_bits(Lead().bits(first, LoadAll{}));
  }
  return count + count_bits(part_bits(first, last - first, Lead()));
}

const Byte* nth_lead_avx512(const Byte* first, const Byte* last, Offset index) {
  while (first < last) {
    const Offset part = last - first < kBlock ? last - first : kBlock;
    const Word leads = part_bits(first, part, Lead());
    const Offset count = count_bits(leads);
    if (index < count) return first + nth_bit(leads, index);
    index -= count;
    first += part;
  }
  return last;
}

// Loads part of a block that starts with a character, and of what lies up to 3
// bytes before its bytes: of the block itself, all else reads as 0.
struct LoadBefore {
  const Byte* block;
  Word wanted;
  Vector operator()(const Byte* at) const {
    return _mm512_maskz_loadu_epi8(wanted << (block - at), at);
  }
};

// Which of 64 bytes no byte before says to be a continuation byte.
template <class Load>
Word unannounced(const Byte* at, Load load) {
  Word word = _mm512_cmplt_epu8_mask(load(at - 1), fill(0xC0));
  word = _mm512_mask_cmplt_epu8_mask(word, load(at - 2), fill(0xE0));
  return _mm512_mask_cmplt_epu8_mask(word, load(at - 3), fill(0xF0));
}

// Takes a character off the walk's end that isn't whole there.
void drop_cut(Walk& walk, const Byte* first) {
  for (Offset back = 1; back <= 3 && back <= walk.next - first; ++back) {
    const Byte byte = walk.next[-back];
    if (byte < 0x80) return;
    if (byte < 0xC0) continue;
    const Offset length = byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
    if (length <= back) return;
    walk.next -= back;
    --walk.characters;
    return;
  }
}

constexpr Offset kGroup = 4 * kBlock;

// Goes over groups of blocks while all bytes are ASCII.
void walk_ascii(Walk& walk, const Byte* last, Offset most) {
  const Byte* const first = walk.next;
  const Offset room = most - walk.characters;
  const Byte* const stop = last - first > room ? first + room : last;
  while (stop - walk.next >= kGroup) {
    Vector all = _mm512_setzero_si512();
    for (int i = 0; i < 4; ++i) {
      __builtin_prefetch(walk.next + kAhead + i * kBlock);
      all = _mm512_or_si512(all, _mm512_loadu_si512(walk.next + i * kBlock));
    }
    if (_mm512_movepi8_mask(all) != 0) break;
    walk.next += kGroup;
  }
  walk.characters += walk.next - first;
}

// Goes over groups of blocks while all is in order; true when many in a row
// were ASCII. Goes back for whole lines of memory, but not to the walk's first
// bytes.
bool walk_groups(Walk& walk, const Byte* first, const Byte* last, Offset most) {
  constexpr int kMany = 8;
  const Offset back = offset_in_line(walk.next);
  if (walk.next - back - first < 3) return false;
  Walk on = {walk.next - back, walk.characters};
  on.characters -= count_bits(part_bits(on.next, back, Lead()));
  int ascii = 0;
  while (ascii < kMany && last - on.next >= kGroup) {
    Word wrong = 0;
    Offset characters = 0;
    for (int i = 0; i < 4; ++i) {
      const Byte* const at = on.next + i * kBlock;
      __builtin_prefetch(at + kAhead);
      const Word leads = Lead().bits(at, LoadAll{});
      wrong |= leads ^ unannounced(at, LoadAll{});
      characters += count_bits(leads);
    }
    if (wrong != 0) break;
    if (const Offset room = most - on.characters; characters > room) {
      walk = {nth_lead_avx512(on.next, last, room), most};
      return false;
    }
    on = {on.next + kGroup, on.characters + characters};
    ascii = characters == kGroup ? ascii + 1 : 0;
  }
  if (on.next > walk.next) {
    drop_cut(on, first);
    walk = on;
  }
  return ascii == kMany;
}

// Goes over one block, or less; false where the walk ends in it.
bool walk_block(Walk& walk, const Byte* last, Offset most) {
  const Byte* const first = walk.next;
  const Offset count = last - first < kBlock ? last - first : kBlock;
  const Word part = low_bits(count);
  const Vector bytes = LoadPart{part}(first);
  const Offset room = most - walk.characters;
  if (_mm512_movepi8_mask(bytes) == 0) {
    const Offset walked = count < room ? count : room;
    walk = {first + walked, walk.characters + walked};
    return walked == kBlock;
  }
  const Word leads = Lead().bits(first, LoadPart{part}) & part;
  const Word wrong =
      (leads ^ unannounced(first, LoadBefore{first, part})) & part;
  const Offset right = wrong == 0 ? count : lowest_bit(wrong);
  const Offset characters = count_bits(leads & low_bits(right));
  if (characters > room) {
    walk = {first + nth_bit(leads, room), most};
    return false;
  }
  walk = {first + right, walk.characters + characters};
  drop_cut(walk, first);
  return right == kBlock;
}

Walk walk_characters_avx512(const Byte* first, const Byte* last, Offset most) {
  Walk walk{first, 0};
  do {
    if (last - walk.next < kGroup) continue;
    do {
      walk_ascii(walk, last, most);
    } while (walk_groups(walk, first, last, most));
    if (walk.characters == most) break;
  } while (walk_block(walk, last, most));
  return walk;
}

}  // namespace

const ByteKernels kAvx512Kernels = {
    .name = "AVX-512",
    .level = Instructions::kAvx512,
    .find_byte = find_byte_avx512,
    .find_byte_backward = find_byte_backward_avx512,
    .find_pair = find_pair_avx512,
    .find_member = find_member_avx512,
    .find_member_backward = find_member_backward_avx512,
    .find_value = find_value_avx512,
    .survey_pairs = survey_pairs_avx512,
    .find_non_ascii = find_non_ascii_avx512,
    .find_anchored = find_anchored_avx512,
    .find_anchored_backward = find_anchored_backward_avx512,
    .mark_members = mark_members_avx512,
    .mark_anchored = mark_anchored_avx512,
    .mark_opening = mark_opening_avx512,
    .list_marks = list_marks_avx512,
    .mark_leads = mark_leads_avx512,
    .count_leads = count_leads_avx512,
    .nth_lead = nth_lead_avx512,
    .walk_characters = walk_characters_avx512,
};

}  // namespace quill

#include "blocks/avx512_end.h"

#endif  // __x86_64__
