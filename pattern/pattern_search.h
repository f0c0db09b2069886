// Searching a text for matches of a range pattern.
//
// One searcher serves every operation: the first match forwards, with its fast
// start at the first byte that can begin a match, and the last one backwards.
// Each attempt at an offset is a unit of work.
//
// The searcher is made once per call of an operation. In a range that pays for
// it the pattern is prepared, attempts that fail at their first character are
// skipped in stretches, and the others are decided by runs of bits; the rest,
// and text that is not in order, goes by the book.
#pragma once

#include "blocks/base.h"
#include "blocks/yield_meter.h"
#include "pattern/attempt_count.h"
#include "pattern/coverage_window.h"
#include "pattern/prepared_pattern.h"
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
  // For searches that together go over at most `range_length` bytes.
  PatternSearcher(const char* text, RangePattern pattern, Host host,
                  Offset range_length)
      : text_(as_bytes(text)),
        pattern_(pattern),
        host_(host),
        range_length_(range_length),
        prepared_(text_, pattern) {}

  // The first match that starts in [from, to) and ends by `to`.
  bool find_first(Offset from, Offset to, MatchVariables found);

  // The match that starts at the highest offset below `to`.
  bool find_last(Offset from, Offset to, MatchVariables found);

  // Where the search after a match goes on: at its end. An empty match would
  // be found there again, so then past the character at or after it.
  Offset resume_after(std::int32_t start, std::int32_t end, Offset to) const {
    return start < end ? end : read_next(text_, end, to).next;
  }

 private:
  bool decide();
  bool has_fixed_start() const;
  bool find_by_the_book(Offset position, Offset to, MatchVariables found);
  bool find_prepared(Offset position, Offset to, MatchVariables found);
  bool find_last_by_the_book(Offset from, Offset to, MatchVariables found);
  bool find_last_prepared(Offset from, Offset to, MatchVariables found);
  Offset next_attempt(Offset position, Offset above, Offset after,
                      Offset to) const;

  // Puts the window where it holds `position`. False where it can't.
  bool open_window(Offset position, Offset to);

  // An attempt at a candidate in the window. When it fails, `next` is the first
  // offset after it at which another need not fail too.
  PatternMatch attempt_in_window(Offset position, Offset to);
  PatternMatch finish_attempt(Offset position, const PreparedPattern::Run& run,
                              Offset to);
  PreparedPattern::Run run_in_window(Offset position, Offset run_end) const;

  const Byte* text_;
  RangePattern pattern_;
  Host host_;
  Offset range_length_;

  enum class Way { kUndecided, kByTheBook, kPrepared };
  Way way_ = Way::kUndecided;
  bool fixed_start_ = false;
  bool simple_ = false;  // one part, any number of characters but none
  PreparedPattern prepared_;
  CoverageWindow window_;
  Offset out_of_order_until_ = -1;
};

}  // namespace quill
