// The vector kernels, written once for all instruction sets.
//
// Included by one source file for each set, which first names it: `Isa` has
// the registers and the few operations on them. A test turns the bytes behind
// a position into lanes that are all ones where it holds; whole blocks of 64
// positions become a word with a bit a position, and the ends of a range are
// covered by vectors that overlap, so that nothing outside it is read.
//
// Everything is local to the including file: two sets never share a function,
// so the definitions belong in this header.
// NOLINTBEGIN(misc-definitions-in-headers)
#pragma once

#include <cstring>
#include <span>

#include "blocks/byte_kernels.h"

namespace quill {
namespace {

using Wide = Isa::Wide;
using Narrow = Isa::Narrow;  // 16 bytes

constexpr Offset kWide = sizeof(Wide);
constexpr Offset kBlock = 64;  // positions in a word

// How far ahead long scans ask for memory, also beyond their range: that
// bridges the gap between the stretches that a long text is scanned in.
constexpr Offset kAhead = 8192;

int lowest_bit(std::uint64_t word) { return __builtin_ctzll(word); }
int highest_bit(std::uint64_t word) { return 63 - __builtin_clzll(word); }

// The lowest `count` bits, 0 to 64 of them.
std::uint64_t low_bits(Offset count) {
  return count >= kBlock ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
}

// Loaders: where a test gets its bytes from.
struct LoadWide {
  using Register = Wide;
  Wide operator()(const Byte* at) const { return Isa::load(at); }
};

struct LoadNarrow {
  using Register = Narrow;
  Narrow operator()(const Byte* at) const { return Isa::load_narrow(at); }
};

template <class T>
std::uint64_t number_at(const Byte* at) {
  T number;
  std::memcpy(&number, at, sizeof number);
  return number;
}

// The first `count` bytes, 1 to 15; what the register holds behind them is of
// no meaning.
struct LoadPart {
  using Register = Narrow;
  Offset count;

  Narrow operator()(const Byte* at) const {
    if (count > 8) {
      const std::uint64_t end = number_at<std::uint64_t>(at + count - 8);
      return Isa::from_words(number_at<std::uint64_t>(at),
                             end >> (8 * (16 - count)));
    }
    return Isa::from_words(up_to_eight(at), 0);
  }

 private:
  std::uint64_t up_to_eight(const Byte* at) const {
    if (count >= 4) {
      const std::uint64_t end = number_at<std::uint32_t>(at + count - 4);
      return number_at<std::uint32_t>(at) | end << (8 * (count - 4));
    }
    const Offset middle = count / 2;
    const Offset end = count - 1;
    return std::uint64_t{at[0]} | std::uint64_t{at[middle]} << (8 * middle) |
           std::uint64_t{at[end]} << (8 * end);
  }
};

// A constant in every lane, in the width that a loader asks for.
struct Constant {
  explicit Constant(Byte byte) : wide(Isa::fill(byte)) {}
  explicit Constant(const Byte* sixteen) : wide(Isa::repeat(sixteen)) {}

  template <class Load>
  typename Load::Register as() const {
    if constexpr (sizeof(typename Load::Register) == sizeof(Wide)) {
      return wide;
    } else {
      return Isa::narrow(wide);
    }
  }

  Wide wide;
};

struct Equals {
  explicit Equals(Byte wanted) : value(wanted) {}

  template <class Load>
  auto lanes(const Byte* position, Load load) const {
    return Isa::equal(load(position), value.as<Load>());
  }

  Constant value;
};

struct EqualPair {
  EqualPair(Byte near_byte, Byte far_byte, Offset from_near)
      : near(near_byte), far(far_byte), distance(from_near) {}

  template <class Load>
  auto lanes(const Byte* position, Load load) const {
    return Isa::both(Isa::equal(load(position), near.as<Load>()),
                     Isa::equal(load(position + distance), far.as<Load>()));
  }

  Constant near;
  Constant far;
  Offset distance;
};

struct Plain {
  explicit Plain(const Anchor& anchor)
      : ignored(anchor.ignored), value(anchor.value), offset(anchor.offset) {}

  template <class Load>
  auto lanes(const Byte* position, Load load) const {
    return Isa::equal(Isa::either(load(position + offset), ignored.as<Load>()),
                      value.as<Load>());
  }

  Constant ignored;
  Constant value;
  Offset offset;
};

// Any set: its entry for the low nibble has the bit of the high nibble.
struct Member {
  explicit Member(const ByteSet& set, Offset from_position = 0)
      : lower(set.lower), upper(set.upper), offset(from_position) {}
  explicit Member(const Anchor& anchor) : Member(anchor.set, anchor.offset) {}

  template <class Load>
  auto lanes(const Byte* position, Load load) const {
    return Isa::belongs(load(position + offset), lower.as<Load>(),
                        upper.as<Load>());
  }

  Constant lower;
  Constant upper;
  Offset offset;
};

template <class First, class Second>
struct Both {
  template <class Load>
  auto lanes(const Byte* position, Load load) const {
    return Isa::both(first.lanes(position, load), second.lanes(position, load));
  }

  First first;
  Second second;
};

// Lanes whose highest `Bits` bits are ones: bytes from 0x80, 0xC0, 0xE0, 0xF0.
template <int Bits>
struct Above {
  template <class Load>
  auto lanes(const Byte* position, Load load) const {
    auto shifted = load(position);
    auto all = shifted;
    for (int bit = 1; bit < Bits; ++bit) {
      shifted = Isa::add(shifted, shifted);
      all = Isa::both(all, shifted);
    }
    return all;
  }
};

struct Lead {
  template <class Load>
  auto lanes(const Byte* position, Load load) const {
    return Isa::is_lead(load(position));
  }
};

template <class Test>
std::uint64_t block_bits(const Byte* position, const Test& test) {
  std::uint64_t word = 0;
  for (Offset i = 0; i < kBlock; i += kWide) {
    word |= Isa::bits(test.lanes(position + i, LoadWide{})) << i;
  }
  return word;
}

// The word for `count` positions, fewer than 64. The test goes by value: one
// that fits a register stays there.
template <class Test>
[[gnu::noinline]] std::uint64_t part_bits(const Byte* position, Offset count,
                                          Test test) {
  if (count >= kWide) {
    return Isa::bits(test.lanes(position, LoadWide{})) |
           Isa::bits(test.lanes(position + count - kWide, LoadWide{}))
               << (count - kWide) |
           (kWide == 16 && count > 32
                ? Isa::bits(test.lanes(position + 16, LoadWide{})) << 16
                : 0) |
           (kWide == 16 && count > 48
                ? Isa::bits(test.lanes(position + 32, LoadWide{})) << 32
                : 0);
  }
  if (count >= 16) {
    return Isa::bits(test.lanes(position, LoadNarrow{})) |
           Isa::bits(test.lanes(position + count - 16, LoadNarrow{}))
               << (count - 16);
  }
  if (count == 0) return 0;
  return Isa::bits(test.lanes(position, LoadPart{count})) & low_bits(count);
}

// The word for 1 to 64 positions.
template <class Test>
std::uint64_t bits_of(const Byte* position, Offset count, const Test& test) {
  return count == kBlock ? block_bits(position, test)
                         : part_bits(position, count, test);
}

// The first position that holds in two vectors, given whose lanes do.
const Byte* first_in(const Byte* position, Wide near, Wide far) {
  return position + lowest_bit(Isa::bits(near) | Isa::bits(far) << kWide);
}

template <class Test>
[[gnu::always_inline]] inline const Byte* find(const Byte* first,
                                               const Byte* last,
                                               const Test& test) {
  constexpr Offset kPair = 2 * kWide;
  const Offset count = last - first;
  if (count < kWide) {
    const std::uint64_t word = part_bits(first, count, test);
    return word == 0 ? last : first + lowest_bit(word);
  }
  const auto lanes = [&test](const Byte* at) {
    return test.lanes(at, LoadWide{});
  };
  // Most positions that are found at all are near.
  if (const std::uint64_t word = Isa::bits(lanes(first)); word != 0) {
    return first + lowest_bit(word);
  }
  const Byte* position = first + kWide;
  if (last - position > 2 * kPair) {
    position -= reinterpret_cast<std::uintptr_t>(position) % kWide;
    for (; last - position >= 2 * kPair; position += 2 * kPair) {
      __builtin_prefetch(position + kAhead);
      __builtin_prefetch(position + kAhead + kPair);
      const Wide a = lanes(position);
      const Wide b = lanes(position + kWide);
      const Wide c = lanes(position + kPair);
      const Wide d = lanes(position + kPair + kWide);
      const Wide near = Isa::either(a, b);
      if (!Isa::any(Isa::either(near, Isa::either(c, d)))) [[likely]]
        continue;
      return Isa::any(near) ? first_in(position, a, b)
                            : first_in(position + kPair, c, d);
    }
  }
  // The last vector overlaps the one before.
  for (; position < last; position += kWide) {
    if (last - position < kWide) position = last - kWide;
    const std::uint64_t word = Isa::bits(lanes(position));
    if (word != 0) return position + lowest_bit(word);
  }
  return last;
}

template <class Test>
const Byte* find_backward(const Byte* first, const Byte* last,
                          const Test& test) {
  const Byte* position = last;
  for (; position - first >= kBlock; position -= kBlock) {
    const std::uint64_t word = block_bits(position - kBlock, test);
    if (word != 0) return position - kBlock + highest_bit(word);
  }
  const std::uint64_t word = part_bits(first, position - first, test);
  return word == 0 ? last : first + highest_bit(word);
}

template <class Test>
void mark(const Byte* first, const Byte* last, std::uint64_t* words,
          const Test& test) {
  const Byte* position = first;
  for (; last - position >= kBlock; position += kBlock) {
    __builtin_prefetch(position + kAhead);
    *words++ = block_bits(position, test);
  }
  if (position < last) *words = part_bits(position, last - position, test);
}

// Calls `use` with a test that the anchors amount to, of two for any number of
// them: of fewer than three some are tested again, which costs less than code
// of its own where it isn't the innermost of loops.
template <class Use>
auto with_any_anchors(std::span<const Anchor> anchors, Use use) {
  const Anchor& a = anchors[0];
  const Anchor& b = anchors[anchors.size() > 1 ? 1 : 0];
  const Anchor& c = anchors.back();
  if (Isa::kLooksUp && !(a.is_plain && b.is_plain && c.is_plain)) {
    if constexpr (Isa::kLooksUp) {
      return use(Both<Both<Member, Member>, Member>{{Member(a), Member(b)},
                                                    Member(c)});
    }
  }
  return use(Both<Both<Plain, Plain>, Plain>{{Plain(a), Plain(b)}, Plain(c)});
}

// The same with tests for one and for two.
template <class Use>
auto with_anchors(std::span<const Anchor> anchors, Use use) {
  if (anchors.size() == 3) return with_any_anchors(anchors, use);
  const Anchor& a = anchors[0];
  const Anchor& b = anchors.back();
  if constexpr (Isa::kLooksUp) {
    if (!a.is_plain && !b.is_plain) {
      if (anchors.size() == 1) return use(Member(a));
      return use(Both<Member, Member>{Member(a), Member(b)});
    }
    if (!a.is_plain || !b.is_plain) {
      return use(Both<Plain, Member>{Plain(a.is_plain ? a : b),
                                     Member(a.is_plain ? b : a)});
    }
  }
  return use(Both<Plain, Plain>{Plain(a), Plain(b)});
}

// Without a table lookup in registers, sets are left to the plain code.
bool needs_plain_code(std::span<const Anchor> anchors) {
  if (Isa::kLooksUp) return false;
  for (const Anchor& anchor : anchors) {
    if (!anchor.is_plain) return true;
  }
  return false;
}

const Byte* vector_find_byte(const Byte* first, const Byte* last, Byte wanted) {
  return find(first, last, Equals(wanted));
}

const Byte* vector_find_byte_backward(const Byte* first, const Byte* last,
                                      Byte wanted) {
  return find_backward(first, last, Equals(wanted));
}

const Byte* vector_find_pair(const Byte* first, const Byte* last, Byte near,
                             Byte far, Offset distance) {
  return find(first, last, EqualPair(near, far, distance));
}

const Byte* vector_find_member(const Byte* first, const Byte* last,
                               const ByteSet& set) {
  if constexpr (!Isa::kLooksUp) {
    return kPortableKernels.find_member(first, last, set);
  } else {
    return find(first, last, Member(set));
  }
}

const Byte* vector_find_member_backward(const Byte* first, const Byte* last,
                                        const ByteSet& set) {
  if constexpr (!Isa::kLooksUp) {
    return kPortableKernels.find_member_backward(first, last, set);
  } else {
    return find_backward(first, last, Member(set));
  }
}

const std::int32_t* vector_find_value(const std::int32_t* first,
                                      const std::int32_t* last,
                                      std::int32_t wanted) {
  constexpr Offset kLongs = kWide / 4;
  const Wide value = Isa::fill_longs(wanted);
  for (; last - first >= kLongs; first += kLongs) {
    const Wide longs = Isa::load(reinterpret_cast<const Byte*>(first));
    const std::uint64_t word = Isa::bits(Isa::equal_longs(longs, value));
    if (word != 0) return first + lowest_bit(word) / 4;
  }
  while (first < last && *first != wanted) ++first;
  return first;
}

// Both longs of a pair are loaded at the place of its first, which has an even
// number.
PairSurvey vector_survey_pairs(const std::int32_t* first,
                               const std::int32_t* last, std::int32_t limit) {
  constexpr Offset kLongs = kWide / 4;
  constexpr std::int32_t kFirsts[] = {-1, 0, -1, 0};
  const Wide firsts = Isa::repeat(reinterpret_cast<const Byte*>(kFirsts));
  const Wide most = Isa::fill_longs(limit);
  Wide descends = Isa::fill(0);
  Wide exceeds = descends;
  Wide totals = descends;
  for (; last - first > kLongs; first += kLongs) {
    const Wide longs = Isa::load(reinterpret_cast<const Byte*>(first));
    const Wide next = Isa::load(reinterpret_cast<const Byte*>(first + 1));
    const Wide above = Isa::subtract_longs(next, longs);
    descends = Isa::either(descends, Isa::greater_longs(longs, next));
    exceeds = Isa::either(exceeds, Isa::greater_longs(above, most));
    totals = Isa::add_longs(totals, Isa::both(above, firsts));
  }
  PairSurvey found = kPortableKernels.survey_pairs(first, last, limit);
  found.ascends &= !Isa::any(descends);
  found.exceeds |= Isa::any(Isa::both(exceeds, firsts));
  std::uint32_t lanes[kLongs];
  std::memcpy(lanes, &totals, sizeof lanes);
  for (Offset i = 0; i < kLongs; i += 2) found.total += lanes[i];
  return found;
}

const Byte* vector_find_non_ascii(const Byte* first, const Byte* last) {
  return find(first, last, Above<1>());
}

const Byte* vector_find_anchored(const Byte* first, const Byte* last,
                                 std::span<const Anchor> anchors) {
  if (needs_plain_code(anchors)) {
    return kPortableKernels.find_anchored(first, last, anchors);
  }
  return with_anchors(
      anchors, [=](const auto& test) { return find(first, last, test); });
}

const Byte* vector_find_anchored_backward(const Byte* first, const Byte* last,
                                          std::span<const Anchor> anchors) {
  if (needs_plain_code(anchors)) {
    return kPortableKernels.find_anchored_backward(first, last, anchors);
  }
  return with_any_anchors(anchors, [=](const auto& test) {
    return find_backward(first, last, test);
  });
}

void vector_mark_members(const Byte* first, const Byte* last,
                         const ByteSet& set, std::uint64_t* words) {
  if constexpr (!Isa::kLooksUp) {
    kPortableKernels.mark_members(first, last, set, words);
  } else {
    mark(first, last, words, Member(set));
  }
}

void vector_mark_anchored(const Byte* first, const Byte* last,
                          std::span<const Anchor> anchors,
                          std::uint64_t* words) {
  if (needs_plain_code(anchors)) {
    return kPortableKernels.mark_anchored(first, last, anchors, words);
  }
  with_any_anchors(anchors,
                   [=](const auto& test) { mark(first, last, words, test); });
}

Offset vector_list_marks(const std::uint64_t* words, Offset word_count,
                         std::uint16_t* numbers) {
  std::uint16_t* to = numbers;
  for (Offset i = 0; i < word_count; ++i) {
    for (std::uint64_t word = words[i]; word != 0; word &= word - 1) {
      *to++ = static_cast<std::uint16_t>(i * kBlock + lowest_bit(word));
    }
  }
  return to - numbers;
}

void vector_mark_leads(const Byte* first, const Byte* last,
                       std::uint64_t* words) {
  mark(first, last, words, Lead());
}

// How many lanes hold in `groups` groups of four vectors, at most 63 so that
// the sums of single lanes don't wrap.
Offset count_groups(const Byte* first, Offset groups) {
  Wide sums = Isa::fill(0);
  for (Offset i = 0; i < groups * 4; ++i) {
    sums = Isa::subtract(sums, Isa::is_lead(Isa::load(first + i * kWide)));
  }
  return Isa::sum(sums);
}

Offset vector_count_leads(const Byte* first, const Byte* last) {
  Offset count = 0;
  const Byte* position = first;
  while (last - position >= 4 * kWide) {
    const Offset whole = (last - position) / (4 * kWide);
    const Offset groups = whole < 63 ? whole : 63;
    count += count_groups(position, groups);
    position += groups * 4 * kWide;
  }
  while (position < last) {
    const Offset part = last - position < kBlock ? last - position : kBlock;
    count += Isa::count_bits(bits_of(position, part, Lead()));
    position += part;
  }
  return count;
}

const Byte* vector_nth_lead(const Byte* first, const Byte* last, Offset index) {
  for (const Byte* position = first; position < last; position += kBlock) {
    const Offset part = last - position < kBlock ? last - position : kBlock;
    const std::uint64_t leads = bits_of(position, part, Lead());
    const Offset count = Isa::count_bits(leads);
    if (index < count) return position + Isa::nth_bit(leads, index);
    index -= count;
  }
  return last;
}

Offset announced_length(Byte lead) {
  return lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

// walk_characters within 1 to 64 bytes.
Walk walk_block(const Byte* first, Offset count, Offset most) {
  const std::uint64_t two = bits_of(first, count, Above<2>());
  const std::uint64_t leads = two | ~bits_of(first, count, Above<1>());
  const std::uint64_t expected = two << 1 |
                                 bits_of(first, count, Above<3>()) << 2 |
                                 bits_of(first, count, Above<4>()) << 3;
  const std::uint64_t wrong = ~(expected ^ leads) & low_bits(count);
  Offset stop = wrong == 0 ? count : lowest_bit(wrong);
  if (stop == 0) return {first, 0};
  // What is in order up to there may end in a character that isn't whole.
  const Offset lead = highest_bit(leads & low_bits(stop));
  if (lead + announced_length(first[lead]) > stop) stop = lead;
  const std::uint64_t starts = leads & low_bits(stop);
  const Offset characters = Isa::count_bits(starts);
  if (characters <= most) return {first + stop, characters};
  return {first + Isa::nth_bit(starts, most), most};
}

// Checks, vector by vector, that the continuation bytes are where the bytes
// before say. Reads 3 bytes before each vector.
struct Check {
  // Taken off without a borrow, these leave the highest bit to the bytes from
  // 0xC0, 0xE0 and 0xF0 on: those that expect a continuation byte 1, 2 and 3
  // bytes behind.
  Wide two;
  Wide three;
  Wide four;
  Wide last_continuation;
  Wide in_order;  // the highest bit of every lane, while all is
  Wide sums;      // of lead bytes

  void take(const Byte* at) {
    const Wide expected = Isa::either(
        Isa::either(Isa::subtract_to_zero(Isa::load(at - 1), two),
                    Isa::subtract_to_zero(Isa::load(at - 2), three)),
        Isa::subtract_to_zero(Isa::load(at - 3), four));
    const Wide leads = Isa::greater(Isa::load(at), last_continuation);
    in_order = Isa::both(in_order, Isa::differ(expected, leads));
    sums = Isa::subtract(sums, leads);
  }

  bool fails() const { return Isa::bits(in_order) != low_bits(kWide); }
};

constexpr Offset kGroup = 2 * kWide;
constexpr Offset kMostGroups = 127;  // sums in single lanes don't wrap

// Goes over groups of two vectors while all is in order, at most `groups`.
// `walk.next` is the start of a character with 3 bytes of the range before it,
// and is one again afterwards.
void walk_groups(Walk& walk, Offset groups) {
  Check check{Isa::fill(0x40), Isa::fill(0x60), Isa::fill(0x70),
              Isa::fill(0xBF), Isa::fill(0xFF), Isa::fill(0)};
  const Byte* position = walk.next;
  const Byte* const stop = position + groups * kGroup;
  for (; position < stop; position += kGroup) {
    __builtin_prefetch(position + kAhead);
    const Wide before = check.sums;
    check.take(position);
    check.take(position + kWide);
    if (check.fails()) [[unlikely]] {
      check.sums = before;
      break;
    }
  }
  if (position == walk.next) return;
  walk.next = position;
  walk.characters += Isa::sum(check.sums);
  // A character cut by the last group's end is left for what follows.
  for (Offset back = 1; back <= 3; ++back) {
    if ((position[-back] & 0xC0) == 0x80) continue;
    if (announced_length(position[-back]) > back) {
      walk.next -= back;
      --walk.characters;
    }
    break;
  }
}

Walk vector_walk_characters(const Byte* first, const Byte* last, Offset most) {
  Walk walk{first, 0};
  while (walk.next < last && walk.characters < most) {
    const Offset left = last - walk.next;
    const Walk step = walk_block(walk.next, left < kBlock ? left : kBlock,
                                 most - walk.characters);
    if (step.characters == 0) break;
    walk.next = step.next;
    walk.characters += step.characters;
    if (walk.next - first < 3) continue;
    for (;;) {
      const Offset room = last - walk.next;
      const Offset wanted = most - walk.characters;
      const Offset whole = (room < wanted ? room : wanted) / kGroup;
      const Offset groups = whole < kMostGroups ? whole : kMostGroups;
      if (groups == 0) break;
      const Byte* const before = walk.next;
      walk_groups(walk, groups);
      if (walk.next - before <= (groups - 1) * kGroup) break;
    }
  }
  return walk;
}

constexpr ByteKernels vector_kernels(const char* name, Instructions level) {
  return {
      .name = name,
      .level = level,
      .find_byte = vector_find_byte,
      .find_byte_backward = vector_find_byte_backward,
      .find_pair = vector_find_pair,
      .find_member = vector_find_member,
      .find_member_backward = vector_find_member_backward,
      .find_value = vector_find_value,
      .survey_pairs = vector_survey_pairs,
      .find_non_ascii = vector_find_non_ascii,
      .find_anchored = vector_find_anchored,
      .find_anchored_backward = vector_find_anchored_backward,
      .mark_members = vector_mark_members,
      .mark_anchored = vector_mark_anchored,
      .mark_opening = nullptr,
      .list_marks = vector_list_marks,
      .mark_leads = vector_mark_leads,
      .count_leads = vector_count_leads,
      .nth_lead = vector_nth_lead,
      .walk_characters = vector_walk_characters,
  };
}

}  // namespace
}  // namespace quill
// NOLINTEND(misc-definitions-in-headers)
