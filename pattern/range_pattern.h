// A range pattern: a sequence of parts, each a run of characters that are all
// in a set (or all outside it), with a least and a greatest length.
//
// Matching is greedy and never backtracks: each part takes what it can get and
// the next one starts there. This is the plain matcher, one bisection of the
// set for each character; it defines what every faster one must answer.
#pragma once

#include <limits>

#include "blocks/base.h"
#include "blocks/longs.h"
#include "quillcore.h"
#include "utf8/characters.h"

namespace quill {

// The pattern as the host passes it.
struct RangePattern {
  const QuillRangePart* const* parts = nullptr;
  std::int32_t part_count = 0;

  const QuillRangePart& part(std::int32_t index) const {
    assert(index >= 0 && index < part_count);
    return *parts[index];
  }
};

// The most characters that a part takes: 0 stands for no limit. A negative
// limit can't be met, not even by no character.
inline Offset limit_of(const QuillRangePart& part) {
  return part.maximum == 0 ? kMaxLong : part.maximum;
}

// Whether a character may belong to the part's run.
inline bool passes(const QuillRangePart& part, std::int32_t character) {
  const bool listed =
      find_long(part.characters, part.character_count, character).found;
  return listed == (part.include != 0);
}

struct PartMatch {
  Offset next;   // where the run ends; undefined unless it was read to its end
  bool matched;  // whether the length of the run is one the part allows
  bool read;     // false when a character on the way could not be read
};

PartMatch match_part(const QuillRangePart& part, const Byte* text,
                     Offset position, Offset end);

struct PatternMatch {
  Offset next;  // the match's end, or where a search makes its next attempt
  bool matched;
};

PatternMatch match_pattern(const RangePattern& pattern, const Byte* text,
                           Offset position, Offset end);

}  // namespace quill
