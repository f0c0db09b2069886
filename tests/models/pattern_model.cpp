#include <limits>

#include "tests/models/naive.h"
#include "tests/support/blocks.h"

namespace quill::naive {
namespace {

using Parts = const QuillRangePart* const*;

bool accepts(const QuillRangePart& part, Long character) {
  Long place = 0;
  const bool is_member =
      BinarySearchLongs(part.characters, part.character_count, character,
                        &place) == 1;
  return is_member == (part.include != 0);
}

bool is_refused(const char* text, Long from, Long to, Long part_count) {
  return text == nullptr || from < 0 || from > to || to < 1 || part_count < 1;
}

// Searches again and again, and hands each match to `take`. Returns where the
// next search would begin.
template <class Take>
Long walk_matches(const char* text, Long from, Long to, Parts parts,
                  Long part_count, Long reference, QuillYield yield,
                  Take take) {
  Meter meter(reference, yield);
  Long position = from;
  while (position < to && meter.go_on) {
    Long start = 0;
    Long end = 0;
    if (naive::utf8_FindPattern(text, position, to, parts, part_count, &start,
                                &end, &position, reference, yield) == 1) {
      take(start, end);
      if (start == end) position = next_character(text, end, to).next;
    }
    meter.tick(position);
  }
  return position;
}

void hand_over(const test::Longs& found, QuillBlock* list, Long* long_count) {
  *list = found.empty() ? nullptr : test::block_of(found);
  *long_count = test::length_of(found);
}

}  // namespace

Long utf8_CompareRangePart(const QuillRangePart* part, const char* text,
                           Long position, Long end, Long* next) {
  const Long most =
      part->maximum == 0 ? std::numeric_limits<Long>::max() : part->maximum;
  Long count = 0;
  while (position < end && count < most) {
    const Character read = next_character(text, position, end);
    if (!read.was_read) return 0;
    if (!accepts(*part, read.packed)) break;
    position = read.next;
    ++count;
  }
  *next = position;
  return part->minimum <= count && count <= most ? 1 : 0;
}

Long utf8_CompareRangePattern(const char* text, Long position, Long end,
                              Parts parts, Long part_count, Long* next) {
  Long reached = position;
  for (Long i = 0; i < part_count; ++i) {
    if (naive::utf8_CompareRangePart(parts[i], text, reached, end, &reached) ==
        0) {
      *next = next_character(text, position, end).next;
      return 0;
    }
  }
  *next = reached;
  return 1;
}

Long utf8_FindPattern(const char* text, Long from, Long to, Parts parts,
                      Long part_count, Long* start, Long* end, Long* next,
                      Long reference, QuillYield yield) {
  *next = to;
  if (is_refused(text, from, to, part_count)) return 0;
  Long position = from;
  const QuillRangePart& first = *parts[0];
  if (first.character_count == 1 && first.minimum >= 1 && first.include == 1) {
    position = FindByte(const_cast<char*>(text), from, to,
                        static_cast<char>(first.characters[0] & 0xFF),
                        reference, yield);
    if (position == -1) return 0;
  }
  Meter meter(reference, yield);
  while (position < to) {
    const bool matched = naive::utf8_CompareRangePattern(
                             text, position, to, parts, part_count, end) == 1;
    if (matched) {
      *start = position;
      *next = *end;
    }
    position = *end;
    meter.tick(position);
    if (matched) return 1;
    if (!meter.go_on) return 0;
  }
  return 0;
}

Long utf8_FindPatternPrev(const char* text, Long from, Long to, Parts parts,
                          Long part_count, Long* start, Long* end, Long* next,
                          Long reference, QuillYield yield) {
  *next = from;
  if (is_refused(text, from, to, part_count)) return 0;
  Meter meter(reference, yield);
  for (Long position = to - 1; position >= from;) {
    const bool matched = naive::utf8_CompareRangePattern(
                             text, position, to, parts, part_count, end) == 1;
    if (matched) *start = *next = position;
    --position;
    meter.tick(position);
    if (matched) return 1;
    if (!meter.go_on) return 0;
  }
  return 0;
}

Long utf8_CountPatternAll(const char* text, Long from, Long to, Parts parts,
                          Long part_count, Long* number, Long* stop,
                          Long reference, QuillYield yield) {
  Long count = 0;
  *stop = walk_matches(text, from, to, parts, part_count, reference, yield,
                       [&](Long, Long) { ++count; });
  *number = count;
  return 1;
}

Long utf8_FindPatternAll(const char* text, Long from, Long to, Parts parts,
                         Long part_count, QuillBlock* list, Long* long_count,
                         Long* stop, Long reference, QuillYield yield) {
  test::Longs found;
  *stop = walk_matches(text, from, to, parts, part_count, reference, yield,
                       [&](Long start, Long end) {
                         found.insert(found.end(), {start, end});
                       });
  hand_over(found, list, long_count);
  return 1;
}

Long utf8_FindKeyPatternAll(const char* text, Long from, Long to,
                            Parts outer_parts, Long outer_part_count,
                            Parts key_parts, Long key_part_count,
                            QuillBlock* list, Long* long_count, Long* stop,
                            Long reference, QuillYield yield) {
  test::Longs found;
  *stop = walk_matches(
      text, from, to, outer_parts, outer_part_count, reference, yield,
      [&](Long start, Long end) {
        Long key_start = 0;
        Long key_end = 0;
        Long next = 0;
        if (naive::utf8_FindPattern(text, start, end, key_parts, key_part_count,
                                    &key_start, &key_end, &next, reference,
                                    yield) == 1) {
          found.insert(found.end(), {key_start, key_end, start, end});
        }
      });
  hand_over(found, list, long_count);
  return 1;
}

Long utf8_SortPattern(QuillBlock* text, Long from, Long to, Parts parts,
                      Long part_count, Long* stop, Long reference,
                      QuillYield yield) {
  if (from < 0 || from >= to || part_count == 0 || *text == nullptr) return 1;
  if (GetBlockSize(*text) < 1) return 1;
  if (to <= GetBlockSize(*text)) {
    test::HeldBlock list;
    Long long_count = 0;
    naive::utf8_FindPatternAll(**text, from, to, parts, part_count, &list.block,
                               &long_count, stop, reference, yield);
  }
  UnlockBlock(*text);
  return 1;
}

}  // namespace quill::naive
