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

#include <algorithm>
#include <array>

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

// What matches are handed to: pairs of longs and their number. Answers how many
// it took; fewer than that ends the search.
class MatchSink {
 public:
  MatchSink() = default;
  MatchSink(const MatchSink&) = delete;
  MatchSink& operator=(const MatchSink&) = delete;
  virtual Offset take(const std::int32_t* matches, Offset count) = 0;

 protected:
  ~MatchSink() = default;
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
  bool find_first(Offset from, Offset to, const MatchVariables& found);

  // The match that starts at the highest offset below `to`.
  bool find_last(Offset from, Offset to, const MatchVariables& found);

  // Searches again and again, each time from the end of the last match, as long
  // as the matches lie whole in a stretch looked through before and no search
  // can come to ask the host; at most `most` times. Ends early where that does
  // not hold, or when `sink` refuses a match.
  struct Taken {
    Offset searches;
    Offset position;  // where the next search begins
    bool refused;
  };
  Taken take_runs(Offset position, Offset to, Offset most,
                  MatchSink& sink) const;

  // Where the search after a match goes on: at its end. An empty match would
  // be found there again, so then past the character at or after it.
  Offset resume_after(std::int32_t start, std::int32_t end, Offset to) const {
    return start < end ? end : read_next(text_, end, to).next;
  }

 private:
  bool decide();
  bool has_fixed_start() const;
  Offset scan_for_start(Offset from, Offset to);
  bool find_by_the_book(Offset position, Offset to,
                        const MatchVariables& found);
  bool find_prepared(Offset position, Offset to, const MatchVariables& found);
  bool find_last_by_the_book(Offset from, Offset to,
                             const MatchVariables& found);
  bool find_last_prepared(Offset from, Offset to, const MatchVariables& found);
  Offset next_attempt(Offset position, Offset above, Offset after,
                      Offset to) const;

  // Puts the window, which does not hold `position`, there. False where it
  // can't.
  bool open_window(Offset position, Offset to);

  // Whether the window has at least that many characters from a run's start to
  // its end.
  bool has_characters(Offset start, Offset end, Offset least) const {
    const Offset length = end - start;  // of characters of 1 to 4 bytes
    if (window_.is_ascii() || length < least) return length >= least;
    if (length > 4 * (least - 1)) return true;
    if (length < kFewBytes) return has_leads(start, end, least);
    return count_leads(text_ + start, text_ + end) >= least;
  }

  static constexpr Offset kFewBytes = 16;
  bool has_leads(Offset start, Offset end, Offset least) const {
    for (; start < end; ++start) {
      least -= is_continuation(text_[start]) ? 0 : 1;
    }
    return least <= 0;
  }

  Offset list_runs(Offset position, std::int32_t* matches) const;
  Offset list_pieces(Offset position, std::int32_t* matches) const;
  PreparedPattern::Run piece_of(Offset start, Offset end, Offset limit) const;

  // Keeps the runs with at least that many characters. Returns their number.
  Offset keep_long(std::int32_t* edges, Offset runs, Offset least) const {
    if (least <= 1) return runs;
    std::int32_t* kept = edges;
    for (Offset i = 0; i < runs; ++i) {
      const std::int32_t start = edges[2 * i];
      const std::int32_t end = edges[2 * i + 1];
      kept[0] = start;
      kept[1] = end;
      kept += has_characters(start, end, least) ? 2 : 0;
    }
    return (kept - edges) / 2;
  }

  // An attempt at a candidate in the window. When it fails, `next` is the first
  // offset after it at which another need not fail too.
  PatternMatch attempt_in_window(Offset position, Offset to);
  PatternMatch finish_attempt(Offset position, const PreparedPattern::Run& run,
                              Offset to);
  Offset match_rest(int part, Offset position, Offset to);
  PreparedPattern::Run run_in_window(Offset position, Offset run_end) const;

  const Byte* text_;
  RangePattern pattern_;
  Host host_;
  Offset range_length_;

  enum class Way { kUndecided, kByTheBook, kPrepared };
  Way way_ = Way::kUndecided;
  bool fixed_start_ = false;
  bool is_run_ = false;  // one part, which can't be empty
  PreparedPattern prepared_;
  CoverageWindow window_;
  Offset out_of_order_until_ = -1;
};

}  // namespace quill
