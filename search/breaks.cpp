// Widening a selection to the breaks between classes of characters.
#include <algorithm>

#include "blocks/yield_meter.h"
#include "quillcore.h"
#include "utf8/characters.h"

using namespace quill;

namespace {

// The characters that a selection is widened over, as the host gives them: the
// members of a set, or all others.
struct CharacterClass {
  const std::int32_t* members;
  std::int32_t count;
  unsigned char flag;

  bool holds(std::int32_t character) const {
    const std::int32_t* end = members + count;
    return (std::find(members, end, character) != end) == (flag == 1);
  }
};

struct Widening {
  const Byte* text;
  Offset lower_bound;
  Offset end;
  std::int32_t reference;
  QuillYield yield;
};

struct Backward {
  static bool is_at_bound(const Widening& in, Offset position) {
    return position <= in.lower_bound;
  }
  static Offset bound(const Widening& in) { return in.lower_bound; }
  static Character read(const Widening& in, Offset position) {
    return read_previous(in.text, position, in.end);
  }
  static Offset near_edge(const Character& read) { return read.next; }
  static Offset far_edge(const Character& read) { return read.start; }
};

struct Forward {
  static bool is_at_bound(const Widening& in, Offset position) {
    return position >= in.end;
  }
  static Offset bound(const Widening& in) { return in.end; }
  static Character read(const Widening& in, Offset position) {
    if (position < 0) return {position, in.end, 0, false};
    return read_next(in.text, position, in.end);
  }
  static Offset near_edge(const Character& read) { return read.start; }
  static Offset far_edge(const Character& read) { return read.next; }
};

// Moves `side` to the near edge of the first character that is not of the
// class, or to the bound. The host is asked about that character as well, with
// `side` already moved. False when a character can't be read or the host stops
// the search.
template <class Direction>
bool widen(const Widening& in, const CharacterClass& over, std::int32_t* side,
           unsigned char* break_found) {
  YieldMeter meter(in.reference, in.yield);
  Offset position = *side;
  for (bool inside = true; inside;) {
    if (Direction::is_at_bound(in, position)) {
      *side = to_long(Direction::bound(in));
      *break_found = 0;
      return true;
    }
    const Character read = Direction::read(in, position);
    if (!read.found) return false;
    position = Direction::far_edge(read);
    inside = over.holds(read.packed);
    if (!inside) *side = to_long(Direction::near_edge(read));
    meter.tick(in.lower_bound);
    if (!meter.go_on()) return false;
  }
  return true;
}

}  // namespace

std::int32_t utf8_FindBreaks(
    const char* text, std::int32_t lower_bound, std::int32_t end,
    const std::int32_t* backward_class, std::int32_t backward_count,
    unsigned char backward_flag, const std::int32_t* forward_class,
    std::int32_t forward_count, unsigned char forward_flag,
    std::int32_t* selection_start, std::int32_t* selection_end,
    unsigned char* break_found, std::int32_t reference, QuillYield yield) {
  *break_found = 1;
  const Widening in{as_bytes(text), lower_bound, end, reference, yield};
  const CharacterClass before{backward_class, backward_count, backward_flag};
  const CharacterClass after{forward_class, forward_count, forward_flag};
  const bool widened =
      (before.count <= 0 ||
       widen<Backward>(in, before, selection_start, break_found)) &&
      (after.count <= 0 ||
       widen<Forward>(in, after, selection_end, break_found));
  if (!widened) *break_found = 0;
  return widened ? 1 : 0;
}
