#include "edit/insert.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string_view>

#include "blocks/block_lock.h"
#include "blocks/scratch.h"
#include "edit/byte_string.h"
#include "edit/delete.h"
#include "edit/one_place.h"
#include "edit/one_string.h"
#include "edit/splice.h"
#include "utf8/characters.h"

namespace quill {
namespace {

// Whether a flag of the string's characters is 0. They are counted as the
// character counters count them: by lead bytes alone, and a stray continuation
// byte is one.
bool has_open_position(std::string_view string, const unsigned char* flags) {
  if (flags == nullptr) return false;
  const Byte* const bytes = as_bytes(string.data());
  const Offset length = std::ssize(string);
  for (Offset i = 0; i < length; i += length_from_lead(bytes[i])) {
    if (*flags++ == 0) return true;
  }
  return false;
}

// Writes the string's characters to `out`, up to one that can't be read, and
// returns their number.
std::size_t decode(std::string_view string, std::int32_t* out) {
  std::size_t count = 0;
  Offset position = 0;
  while (true) {
    const Character next =
        read_next(as_bytes(string.data()), position, std::ssize(string));
    if (!next.found) return count;
    out[count++] = next.packed;
    position = next.next;
  }
}

bool overlay_string(QuillBlock* variable, QuillBlock selections,
                    std::string_view string, const unsigned char* flags,
                    Handover handover, const SizeLimits& limits) {
  // Most templates are a few characters; those need no heap.
  std::array<std::int32_t, 64> few;
  const bool is_long = string.size() > few.size();
  const Scratch<std::int32_t> many(is_long ? std::ssize(string) : 0);
  if (many.refused()) return false;
  std::int32_t* const characters = is_long ? many.data() : few.data();
  const std::size_t count = decode(string, characters);
  return overlay(variable, selections, {{characters, count}, flags}, handover,
                 limits);
}

using Selections = std::span<const Selection>;

// For strings of sizeof(Piece) to twice as many bytes.
template <class Piece>
void put_pieces_at_each(char* text, Selections selections,
                        std::string_view string) {
  const Offset behind = std::ssize(string) - Offset{sizeof(Piece)};
  const auto first = load<Piece>(string.data());
  const auto last = load<Piece>(string.data() + behind);
  visit_each(text, selections, [=](char* to, Offset) {
    store(to, first);
    store(to + behind, last);
    return true;
  });
}

// Puts the string over selections that are all as long as it is.
void write_over(char* text, Selections selections, std::string_view string) {
  switch (std::bit_width(string.size())) {
    case 1:
      return put_pieces_at_each<char>(text, selections, string);
    case 2:
      return put_pieces_at_each<std::uint16_t>(text, selections, string);
    case 3:
      return put_pieces_at_each<std::uint32_t>(text, selections, string);
    case 4:
      return put_pieces_at_each<std::uint64_t>(text, selections, string);
    case 5:
      return put_pieces_at_each<Bytes16>(text, selections, string);
    default:
      visit_each(text, selections, [=](char* to, Offset) {
        move_bytes(to, string.data(), std::ssize(string));
        return true;
      });
  }
}

bool replace_selections(QuillBlock text, QuillBlock selections,
                        std::string_view string, const SizeLimits& limits) {
  if (GetHandleSize(selections) < 4) return false;
  const BlockLock list_lock(selections);
  if (text == nullptr || text == selections) return false;
  BlockLock text_lock(text);
  const std::span<std::int32_t> longs = list_lock.longs();
  const std::span<Selection> places = selections_of(longs);
  if (longs.size() == 2) {
    if (!replace_one(text_lock, places[0], string, limits)) return false;
    note(places[0], 0, std::ssize(string));
    return true;
  }
  const ListSurvey list(longs, text_lock.size(), std::ssize(string));
  if (!list.is_canonical) return false;
  const RepeatedString repeated(string, std::ssize(places));
  if (list.shrinks) {
    const OneString<true> edits(places, repeated);
    return splice(text_lock, edits, list.growth, limits);
  }
  // Every place is noted already.
  if (list.growth == 0) {
    write_over(text_lock.contents(), places, string);
    return true;
  }
  return splice_string(text_lock, OneString<false>(places, repeated),
                       list.growth, limits);
}

}  // namespace

bool insert_at_selections(QuillBlock* variable, QuillBlock selections,
                          const Insertion& insertion, Handover handover,
                          const SizeLimits& limits) {
  if (!is_byte_string(insertion.string, insertion.length)) return false;
  if (insertion.length == 0) {
    return delete_selections(*variable, selections, limits);
  }
  const std::string_view string =
      byte_string(insertion.string, insertion.length);
  if (has_open_position(string, insertion.flags)) {
    return overlay_string(variable, selections, string, insertion.flags,
                          handover, limits);
  }
  return replace_selections(*variable, selections, string, limits);
}

}  // namespace quill

std::int32_t InsertStr(QuillBlock* text, QuillBlock selections,
                       const char* string, std::int32_t string_length,
                       const unsigned char* position_flags) {
  using namespace quill;
  return insert_at_selections(text, selections,
                              {string, string_length, position_flags},
                              Handover::kNewBlock, {})
             ? 1
             : 0;
}
