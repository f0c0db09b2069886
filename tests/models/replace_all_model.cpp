#include "tests/models/naive.h"
#include "tests/support/blocks.h"

namespace quill::naive {
namespace {

// What a search for all matches writes.
struct Matches {
  test::HeldBlock list;
  Long long_count = 0;
  Long stop = 0;
};

struct Insertion {
  const char* string;
  Long length;
  const unsigned char* flags;
  bool keeps_block;  // also under an overlay
};

// Returns InsertStr's result. Both offsets move with the end of the text; an
// edit that would move `position` out of 32 bits is not made.
Long insert(QuillBlock* text, const Matches& matches,
            const Insertion& insertion, Long* to, Long* position) {
  const QuillBlock copy = test::block_of(test::bytes_of(*text));
  test::HeldBlock edited(copy);
  if (naive::InsertStr(&edited.block, matches.list.block, insertion.string,
                       insertion.length, insertion.flags) == 0) {
    return 0;
  }
  const std::int64_t difference =
      std::int64_t{GetBlockSize(edited.block)} - GetBlockSize(*text);
  const std::int64_t moved = *position + difference;
  if (moved != static_cast<Long>(moved)) return 0;
  if (insertion.keeps_block || edited.block == copy) {
    test::set_bytes(*text, edited.bytes());
  } else {
    std::swap(*text, edited.block);
  }
  *to += static_cast<Long>(difference);
  *position = static_cast<Long>(moved);
  return 1;
}

// Whether there is a text, and it reaches to `to`. Where it is too short,
// `position` becomes `to`.
bool is_searchable(QuillBlock text, Long to, Long* position) {
  if (text == nullptr) return false;
  UnlockBlock(text);
  if (to <= GetBlockSize(text)) return true;
  *position = to;
  return false;
}

}  // namespace

Long ReplaceStrAll(QuillBlock text, Long from, Long* to, const char* pattern,
                   Long pattern_length, Long, const char* string,
                   Long string_length, const unsigned char* insert_flags, Long,
                   Long, Long, Long, Long* position, Long reference,
                   QuillYield yield) {
  if (!is_searchable(text, *to, position)) return 0;
  Matches matches;
  if (FindStrAll(*text, from, *to, pattern, pattern_length, 0, 0, 0, 0,
                 &matches.list.block, &matches.long_count, &matches.stop,
                 reference, yield) == 0) {
    *position = *to;
    return 0;
  }
  return insert(&text, matches, {string, string_length, insert_flags, true}, to,
                position);
}

Long utf8_ReplaceStrAll(QuillBlock* text, Long from, Long* to,
                        const Long* pattern, Long pattern_count,
                        const unsigned char* search_flags, const char* string,
                        Long string_length, const unsigned char* insert_flags,
                        const Long* mask_keys, const Long* mask_values,
                        Long mask_count, const Long* break_characters,
                        Long break_count, unsigned char edge_flag,
                        unsigned char invert_flag, Long* position,
                        Long reference, QuillYield yield) {
  if (!is_searchable(*text, *to, position)) return 0;
  Matches matches;
  naive::utf8_FindStrAll(**text, from, *to, pattern, pattern_count,
                         search_flags, mask_keys, mask_values, mask_count,
                         break_characters, break_count, edge_flag, invert_flag,
                         &matches.list.block, &matches.long_count,
                         &matches.stop, reference, yield);
  if (matches.long_count == 0) return 1;
  return insert(text, matches, {string, string_length, insert_flags, false}, to,
                position);
}

Long utf8_ReplacePatternAll(QuillBlock* text, Long from, Long* to,
                            const QuillRangePart* const* parts, Long part_count,
                            const char* string, Long string_length,
                            const unsigned char* insert_flags, Long* new_end,
                            Long reference, QuillYield yield) {
  if (!is_searchable(*text, *to, new_end)) return 0;
  Matches matches;
  naive::utf8_FindPatternAll(**text, from, *to, parts, part_count,
                             &matches.list.block, &matches.long_count,
                             &matches.stop, reference, yield);
  Long no_position = 0;
  const Long result =
      matches.long_count == 0
          ? 1
          : insert(text, matches, {string, string_length, insert_flags, false},
                   to, &no_position);
  *new_end = *to;
  return result;
}

}  // namespace quill::naive
