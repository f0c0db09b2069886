// Searching a text for matches of a range pattern.
//
// One searcher serves every operation: the first match forwards, with its fast
// start at the first byte that can begin a match, and the last one backwards.
// Each attempt at an offset is a unit of work.
#pragma once

#include "blocks/base.h"
#include "blocks/yield_meter.h"
#include "pattern/range_pattern.h"

namespace quill {

// Whom a search asks whether to go on.
struct Host {
  std::int32_t reference;
  QuillYield yield;

  YieldMeter meter() const { return {reference, yield}; }
};

// The variables in which a search leaves what it finds. `end` is also where it
// keeps the next offset to try, so a failed search leaves some offset there.
struct MatchVariables {
  std::int32_t* start;
  std::int32_t* end;
  std::int32_t* next;
};

class PatternSearcher {
 public:
  PatternSearcher(const char* text, RangePattern pattern, Host host)
      : text_(as_bytes(text)), pattern_(pattern), host_(host) {}

  // The first match that starts in [from, to) and ends by `to`.
  bool find_first(Offset from, Offset to, MatchVariables found) const;

  // The match that starts at the highest offset below `to`.
  bool find_last(Offset from, Offset to, MatchVariables found) const;

  // Where the search after a match goes on: at its end. An empty match would
  // be found there again, so then past the character at or after it.
  Offset resume_after(std::int32_t start, std::int32_t end, Offset to) const {
    return start < end ? end : read_next(text_, end, to).next;
  }

 private:
  // Whether every match begins with one and the same character.
  bool has_fixed_start() const;

  const Byte* text_;
  RangePattern pattern_;
  Host host_;
};

}  // namespace quill
