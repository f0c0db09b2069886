// Scans over plain byte ranges, as fast as the machine allows.
//
// A scan reads only the bytes that it is given, allocates nothing, and knows
// neither Blocks nor the yield callback, and of characters only the classes of
// their bytes. The portable kernels define every answer; the vector kernels,
// chosen once at run time, agree with them byte for byte.
//
// Ranges are [first, last), and a search that finds nothing answers `last`.
#pragma once

#include <span>

#include "blocks/base.h"
#include "blocks/byte_set.h"

namespace quill {

// The first (or last) `wanted` in the range.
const Byte* find_byte(const Byte* first, const Byte* last, Byte wanted);
const Byte* find_byte_backward(const Byte* first, const Byte* last,
                               Byte wanted);

// The first position in [first, last) with `near` there and `far` `distance`
// bytes after it. Reads up to last + distance.
const Byte* find_pair(const Byte* first, const Byte* last, Byte near, Byte far,
                      Offset distance);

// The first (or last) byte that belongs to `set`. For those that don't, invert
// the set.
const Byte* find_member(const Byte* first, const Byte* last,
                        const ByteSet& set);
const Byte* find_member_backward(const Byte* first, const Byte* last,
                                 const ByteSet& set);

// The first byte of 0x80 or above.
const Byte* find_non_ascii(const Byte* first, const Byte* last);

// The first long that equals `wanted`.
const std::int32_t* find_value(const std::int32_t* first,
                               const std::int32_t* last, std::int32_t wanted);

// What one look at longs that are read two by two tells.
struct PairSurvey {
  bool ascends;         // no long is below the one before it
  bool exceeds;         // in some pair the second is more than `limit` above
  std::uint32_t total;  // by how much the seconds are above the firsts
};

// Differences are taken and added up in 32 bits, and wrap. A lone last long is
// in no pair. `limit` is not negative.
PairSurvey survey_pairs(const std::int32_t* first, const std::int32_t* last,
                        std::int32_t limit);

// What must stand `offset` bytes after (below 0: before) a position.
struct Anchor {
  Anchor() = default;
  Anchor(Byte wanted, Offset from_position);
  Anchor(const ByteSet& wanted, Offset from_position);

  ByteSet set;
  Offset offset = 0;

  // Sets such as one byte, a letter in both cases or all continuation bytes are
  // tested in one step: is_plain says that the members are the bytes which give
  // `value` once the bits `ignored` are set in them.
  bool is_plain = false;
  Byte ignored = 0;
  Byte value = 0;
};
inline constexpr int kMostAnchors = 3;

// The first (or last) position in [first, last) where all anchors, 1 to 3 of
// them, hold. Reads what lies at the anchors' offsets from every position,
// which may be outside [first, last): the caller vouches for it.
const Byte* find_anchored(const Byte* first, const Byte* last,
                          std::span<const Anchor> anchors);
const Byte* find_anchored_backward(const Byte* first, const Byte* last,
                                   std::span<const Anchor> anchors);

// The same tests for many positions at once: bit i mod 64 of words[i / 64] says
// whether the test holds for position first + i. Writes (last - first + 63) /
// 64 words; the bits beyond the range are 0. For matches that lie close
// together: the caller walks the bits instead of calling once for each.
void mark_members(const Byte* first, const Byte* last, const ByteSet& set,
                  std::uint64_t* words);
void mark_anchored(const Byte* first, const Byte* last,
                   std::span<const Anchor> anchors, std::uint64_t* words);

// What stands at three places of plain ASCII, one after the other or the same:
// bytes that give the value once the bits ignored are set in them. Those of the
// first place are lowest.
struct Opening {
  std::uint32_t ignored = 0;
  std::uint32_t value = 0;
  std::int32_t last = 0;  // the places: 0, 1 if there is one so far, and this

  Offset second() const { return last < 1 ? last : 1; }
};

// Marks the positions in a range of ASCII where all three hold, the last place
// within the range, in words that are 0 before. False, with no marks made,
// where there is no fast way.
bool mark_opening(const Byte* first, const Byte* last, const Opening& opening,
                  std::uint64_t* words);

// Writes the numbers of the bits that are set in `word_count` words, at most
// 1024 of them, in ascending order and returns how many they are. Beyond those
// up to kListSlack elements more may be written to.
inline constexpr Offset kListSlack = 64;
Offset list_marks(const std::uint64_t* words, Offset word_count,
                  std::uint16_t* numbers);

// Marks the bytes that are not continuation bytes.
void mark_leads(const Byte* first, const Byte* last, std::uint64_t* words);

// How many bytes are not continuation bytes (0x80 to 0xBF).
Offset count_leads(const Byte* first, const Byte* last);

// The byte numbered `index` (from 0) among those that are not continuation
// bytes.
const Byte* nth_lead(const Byte* first, const Byte* last, Offset index);

struct Walk {
  const Byte* next;   // where the walk ended
  Offset characters;  // how many it went over
};

// Goes from `first` over at most `most` characters that are in order: a lead
// byte, then exactly the continuation bytes that its class announces, all
// inside the range. Ends before the first that is not: at a stray continuation
// byte, or at a lead byte that lacks some of its continuation bytes.
Walk walk_characters(const Byte* first, const Byte* last, Offset most);

// Whether the range consists of characters in order.
inline bool is_in_order(const Byte* first, const Byte* last) {
  return walk_characters(first, last, last - first).next == last;
}

}  // namespace quill
