// The three replace-alls: one search over the whole range, one edit of all
// that it found, and the host's offsets moved by the change in length.
//
// They differ in the search, in whether the host's Block may be exchanged for
// another, and in what they do when nothing was found.
#include <algorithm>

#include "blocks/block_lock.h"
#include "edit/insert.h"
#include "quillcore.h"

namespace quill {
namespace {

// The list of matches that a search hands over, for as long as it is needed.
class Matches {
 public:
  Matches() = default;
  ~Matches() { DisposeHandle(list); }
  Matches(const Matches&) = delete;
  Matches& operator=(const Matches&) = delete;

  QuillBlock list = nullptr;
  std::int32_t long_count = 0;
  std::int32_t stop = 0;
};

// How what was found is replaced.
struct Replacement {
  Insertion insertion;
  Handover handover;
  bool even_if_none;  // an empty list goes through the insertion too
};

struct Replaced {
  bool searched;  // false: nothing else has happened
  bool edited;
  Offset change;  // in the text's length
};

// Runs the search, `search(contents, matches)`, over the locked text. A range
// that ends beyond the text is refused like a search that fails.
template <class Search>
bool find_matches(QuillBlock text, std::int32_t to, const Search& search,
                  Matches& matches) {
  const BlockLock lock(text);
  return to <= lock.size() && search(lock.contents(), matches) != 0;
}

// The sizes of a text of `size` bytes after an edit whose change in length the
// host's position, null for none, can be moved by. A position that is `to` as
// well is moved twice.
SizeLimits limits_by(const std::int32_t* position, const std::int32_t* to,
                     Offset size) {
  if (position == nullptr) return {};
  const Offset times = position == to ? 2 : 1;
  const Offset most_back = (Offset{*position} - kMinLong) / times;
  const Offset most_forward = (kMaxLong - *position) / times;
  return {size - most_back, std::min(kMaxLong, size + most_forward)};
}

// Replaces what the search finds in the text up to `to`. A change in length
// that doesn't fit when it is added to `position` fails; null adds to none.
template <class Search>
Replaced replace_matches(QuillBlock& text, const std::int32_t* to,
                         const std::int32_t* position, const Search& search,
                         const Replacement& replacement) {
  const Offset old_size = GetHandleSize(text);
  Matches matches;
  if (!find_matches(text, *to, search, matches)) return {false, false, 0};
  if (matches.long_count <= 0 && !replacement.even_if_none) {
    return {true, true, 0};
  }
  const bool edited = insert_at_selections(
      &text, matches.list, replacement.insertion, replacement.handover,
      limits_by(position, to, old_size));
  return {true, edited, GetHandleSize(text) - old_size};
}

void add(std::int32_t& offset, Offset change) {
  offset = to_long(offset + change);
}

}  // namespace
}  // namespace quill

using namespace quill;

std::int32_t ReplaceStrAll(QuillBlock text, std::int32_t from, std::int32_t* to,
                           const char* pattern, std::int32_t pattern_length,
                           std::int32_t reserved1, const char* string,
                           std::int32_t string_length,
                           const unsigned char* insert_flags,
                           std::int32_t reserved2, std::int32_t reserved3,
                           std::int32_t reserved4, std::int32_t /*ignored*/,
                           std::int32_t* position, std::int32_t reference,
                           QuillYield yield) {
  if (text == nullptr) return 0;
  const auto search = [&](const char* contents, Matches& found) {
    return FindStrAll(contents, from, *to, pattern, pattern_length, reserved1,
                      reserved2, reserved3, reserved4, &found.list,
                      &found.long_count, &found.stop, reference, yield);
  };
  // The host has no variable here that a new Block could be stored in.
  const Replaced done = replace_matches(
      text, to, position, search,
      {{string, string_length, insert_flags}, Handover::kSameBlock, true});
  if (!done.searched) {
    *position = *to;
    return 0;
  }
  add(*to, done.change);
  add(*position, done.change);
  return done.edited ? 1 : 0;
}

std::int32_t utf8_ReplaceStrAll(
    QuillBlock* text, std::int32_t from, std::int32_t* to,
    const std::int32_t* pattern, std::int32_t pattern_count,
    const unsigned char* search_flags, const char* string,
    std::int32_t string_length, const unsigned char* insert_flags,
    const std::int32_t* mask_keys, const std::int32_t* mask_values,
    std::int32_t mask_count, const std::int32_t* break_characters,
    std::int32_t break_count, unsigned char edge_flag,
    unsigned char invert_flag, std::int32_t* position, std::int32_t reference,
    QuillYield yield) {
  QuillBlock block = *text;
  if (block == nullptr) return 0;
  const auto search = [&](const char* contents, Matches& found) {
    return utf8_FindStrAll(contents, from, *to, pattern, pattern_count,
                           search_flags, mask_keys, mask_values, mask_count,
                           break_characters, break_count, edge_flag,
                           invert_flag, &found.list, &found.long_count,
                           &found.stop, reference, yield);
  };
  const Replaced done = replace_matches(
      block, to, position, search,
      {{string, string_length, insert_flags}, Handover::kNewBlock, false});
  if (!done.searched) {
    *position = *to;
    return 0;
  }
  add(*to, done.change);
  add(*position, done.change);
  *text = block;
  return done.edited ? 1 : 0;
}

std::int32_t utf8_ReplacePatternAll(QuillBlock* text, std::int32_t from,
                                    std::int32_t* to,
                                    const QuillRangePart* const* parts,
                                    std::int32_t part_count, const char* string,
                                    std::int32_t string_length,
                                    const unsigned char* insert_flags,
                                    std::int32_t* new_end,
                                    std::int32_t reference, QuillYield yield) {
  QuillBlock block = *text;
  if (block == nullptr) return 0;
  const auto search = [&](const char* contents, Matches& found) {
    return utf8_FindPatternAll(contents, from, *to, parts, part_count,
                               &found.list, &found.long_count, &found.stop,
                               reference, yield);
  };
  const Replaced done = replace_matches(
      block, to, nullptr, search,
      {{string, string_length, insert_flags}, Handover::kNewBlock, false});
  add(*to, done.change);
  *new_end = *to;
  if (!done.searched) return 0;
  *text = block;
  return done.edited ? 1 : 0;
}
