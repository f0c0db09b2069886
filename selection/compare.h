// The order of two selections by the text that they cover: by code point,
// character for character, after a mask where there is one; where one text
// begins the other, the shorter first.
//
// A character that can't be read makes its two selections equal, whatever
// precedes them. On malformed text the order is therefore not transitive.
#pragma once

#include <algorithm>
#include <limits>

#include "selection/selection_list.h"
#include "utf8/characters.h"
#include "utf8/mask.h"

namespace quill {

// A character on its way through a comparison.
struct ComparedCharacter {
  Offset next;
  std::int32_t code_point;
  bool found;
};

// Code points of the characters from a position on, as they stand.
struct PlainReader {
  const Byte* text;

  ComparedCharacter read(Offset position, Offset end) const {
    if (position < 0) return {end, 0, false};
    const Character read = read_next(text, position, end);
    if (!read.found) return {end, 0, false};
    return {read.next, code_point(read.packed, read.length()), true};
  }
};

// The code point that the bytes of a mapped character give when they are read
// as a text: a mask may hold values that begin with no lead byte, or that end
// before their character does.
inline ComparedCharacter read_mapped(std::int32_t mapped, Offset next) {
  const Byte bytes[4] = {byte_of(mapped, 0), byte_of(mapped, 1),
                         byte_of(mapped, 2), byte_of(mapped, 3)};
  const Character read = read_next(bytes, 0, 4);
  if (!read.found) return {next, 0, false};
  return {next, code_point(read.packed, read.length()), true};
}

// Under a mask it is the character that contains the position that is read,
// and `Map` maps it.
template <class Map>
struct MaskedReader {
  const Byte* text;
  Map& map;

  ComparedCharacter read(Offset position, Offset end) const {
    const Character read = read_containing(text, position, end);
    if (!read.found) return {end, 0, false};
    return read_mapped(map.map(read.packed), read.next);
  }
};

// Only lengths of selections outside every text reach the limits.
inline int sign_kept(Offset difference) {
  constexpr Offset kLeast = std::numeric_limits<int>::min();
  constexpr Offset kMost = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(difference, kLeast, kMost));
}

// Negative when `first` comes first, 0 when the two are equal.
//
// Among stray continuation bytes the character that contains a position can
// end at or before it; the position then moves no more. Once that is so on
// both sides nothing new would be read, and the two are equal.
template <class Reader>
int compare_texts(const Selection& first, const Selection& second,
                  const Reader& reader) {
  const int by_length = sign_kept(first.length() - second.length());
  if (first.length() <= 0 || second.length() <= 0) return by_length;
  Offset a = first.start;
  Offset b = second.start;
  while (a < first.end && b < second.end) {
    const ComparedCharacter in_first = reader.read(a, first.end);
    if (!in_first.found) return 0;
    const ComparedCharacter in_second = reader.read(b, second.end);
    if (!in_second.found) return 0;
    if (in_first.code_point != in_second.code_point) {
      return in_first.code_point - in_second.code_point;
    }
    if (in_first.next == a && in_second.next == b) return 0;
    a = in_first.next;
    b = in_second.next;
  }
  return by_length;
}

// A count other than 0 reads as under a mask, also where the mask maps nothing.
inline int compare_selections(const Selection& first, const Selection& second,
                              const Byte* text, const Mask& mask) {
  if (mask.count == 0) return compare_texts(first, second, PlainReader{text});
  return compare_texts(first, second, MaskedReader<const Mask>{text, mask});
}

}  // namespace quill
