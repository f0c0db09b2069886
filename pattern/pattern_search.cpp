#include "pattern/pattern_search.h"

#include "search/byte_search.h"

namespace quill {
namespace {

// A shorter range is done before anything could be prepared for it.
constexpr Offset kWorthPreparing = 16;

// What is out of order seldom comes alone, and each try to open a window there
// costs as much as a few attempts.
constexpr Offset kOutOfOrderStretch = 64;

}  // namespace

// Chooses the way of all searches, once there is one to be made. True when the
// pattern is prepared.
bool PatternSearcher::decide() {
  if (way_ == Way::kUndecided) {
    fixed_start_ = has_fixed_start();
    way_ = range_length_ >= kWorthPreparing && prepared_.prepare(range_length_)
               ? Way::kPrepared
               : Way::kByTheBook;
    is_run_ = way_ == Way::kPrepared && pattern_.part_count == 1 &&
              prepared_.has_starters();
  }
  return way_ == Way::kPrepared;
}

// Whether every match begins with one and the same character.
bool PatternSearcher::has_fixed_start() const {
  const QuillRangePart& first = pattern_.part(0);
  return first.character_count == 1 && first.minimum >= 1 && first.include == 1;
}

bool PatternSearcher::find_first(Offset from, Offset to,
                                 const MatchVariables& found) {
  *found.next = to_long(to);
  if (text_ == nullptr || from < 0 || to < from || to < 1 ||
      pattern_.part_count < 1) {
    return false;
  }
  const bool is_prepared = decide();
  Offset position = from;
  if (fixed_start_) {
    position = scan_for_start(from, to);
    if (position < 0) return false;
  }
  return is_prepared ? find_prepared(position, to, found)
                     : find_by_the_book(position, to, found);
}

// The first byte that the one character to start with can begin at, or -1.
Offset PatternSearcher::scan_for_start(Offset from, Offset to) {
  YieldMeter meter = host_.meter();
  if (window_.holds(from, to) && window_.is_ascii()) {
    const Offset found = window_.next_covered(from);
    if (found < window_.limit() && found - from < meter.units_left()) {
      return found;
    }
  }
  const Byte lead = byte_of(pattern_.part(0).characters[0], 0);
  return scan_for_byte({text_, from, to}, lead, meter);
}

bool PatternSearcher::find_by_the_book(Offset position, Offset to,
                                       const MatchVariables& found) {
  YieldMeter meter = host_.meter();
  while (position < to) {
    const PatternMatch match = match_pattern(pattern_, text_, position, to);
    *found.end = to_long(match.next);
    if (match.matched) {
      *found.start = to_long(position);
      *found.next = *found.end;
    }
    meter.tick(match.next);
    // A match counts even when the host has just asked to stop.
    if (match.matched) return true;
    if (!meter.go_on()) return false;
    position = match.next;
  }
  return false;
}

bool PatternSearcher::open_window(Offset position, Offset to) {
  if (position < out_of_order_until_) return false;
  window_.move_to(position, text_, to, prepared_);
  if (window_.limit() > position) return true;
  out_of_order_until_ = position + kOutOfOrderStretch;
  return false;
}

bool PatternSearcher::find_prepared(Offset position, Offset to,
                                    const MatchVariables& found) {
  if (position >= to) return false;
  AttemptCount count(text_, position, to, host_.meter(), found.end);
  while (position < to) {
    PatternMatch match;
    const bool in_order =
        window_.holds(position, to)
            ? !is_continuation(text_[position])
            : prepared_.has_starters() && open_window(position, to);
    if (in_order) {
      const Offset candidate = window_.next_candidate(position);
      if (candidate == window_.limit()) {
        const bool passed =
            position == window_.base()
                ? count.pass_over(position, candidate, window_.characters())
                : count.pass_to(candidate);
        if (!passed) return false;
        position = candidate;
        continue;
      }
      if (!count.pass_to(candidate)) return false;
      position = candidate;
      match = attempt_in_window(position, to);
    } else {
      match = prepared_.match(position, to);
    }
    if (match.matched) {
      *found.end = to_long(match.next);
      *found.start = to_long(position);
      *found.next = *found.end;
      count.succeed(position, match.next);
      return true;
    }
    if (!count.pass_to(match.next)) return false;
    position = match.next;
  }
  *found.end = to_long(to);
  return false;
}

PatternSearcher::Taken PatternSearcher::take_runs(Offset position, Offset to,
                                                  Offset most,
                                                  MatchSink& sink) const {
  Taken taken{0, position, false};
  // A search makes no more attempts than the window has bytes.
  const bool may_ask =
      YieldMax > 0 && YieldMax <= CharacterClass::kMostCovered + 1;
  if (!is_run_ || may_ask || !window_.holds(position, to) ||
      prepared_.limit_of(0) < prepared_.minimum_of(0)) {
    return taken;
  }
  std::array<std::int32_t, CoverageWindow::kMostEdges> matches;
  const Offset count = std::min(list_runs(position, matches.data()), most);
  if (count == 0) return taken;
  taken.searches = sink.take(matches.data(), count);
  taken.refused = taken.searches < count;
  const Offset last = taken.refused ? taken.searches : count - 1;
  taken.position = matches[static_cast<std::size_t>(2 * last + 1)];
  return taken;
}

// Lists the matches of the one part there is, from a search at `position` on,
// as many as kMostEdges longs hold, and returns their number.
Offset PatternSearcher::list_runs(Offset position,
                                  std::int32_t* matches) const {
  if (prepared_.limit_of(0) < kMaxLong) return list_pieces(position, matches);
  const Offset runs = window_.edges_from(position, matches) / 2;
  return keep_long(matches, runs, prepared_.minimum_of(0));
}

// The same where runs longer than the limit are several matches.
Offset PatternSearcher::list_pieces(Offset position,
                                    std::int32_t* matches) const {
  std::array<std::int32_t, CoverageWindow::kMostEdges> edges;
  const Offset edge_count = window_.edges_from(position, edges.data());
  const Offset limit = prepared_.limit_of(0);
  Offset count = 0;
  for (Offset i = 0; i < edge_count; i += 2) {
    const auto at = static_cast<std::size_t>(i);
    const bool goes_on = i + 1 == edge_count;
    const Offset end = goes_on ? window_.limit() : edges[at + 1];
    const Offset least = goes_on ? limit : prepared_.minimum_of(0);
    for (Offset start = edges[at]; start < end;) {
      const PreparedPattern::Run piece = piece_of(start, end, limit);
      if (piece.count < least) break;
      if (2 * count + 2 > CoverageWindow::kMostEdges) return count;
      matches[2 * count] = to_long(start);
      matches[2 * count + 1] = to_long(piece.next);
      ++count;
      start = piece.next;
    }
  }
  return count;
}

// The characters in order from `start` to `end`, or the first `limit` of them.
PreparedPattern::Run PatternSearcher::piece_of(Offset start, Offset end,
                                               Offset limit) const {
  if (window_.is_ascii()) {
    const Offset count = std::min(limit, end - start);
    return {start + count, count, true};
  }
  Offset count = 0;
  while (count < limit && start < end) {
    start += length_from_lead(text_[start]);
    ++count;
  }
  return {start, count, true};
}

PatternMatch PatternSearcher::attempt_in_window(Offset position, Offset to) {
  if (prepared_.starters() > 1) return prepared_.match(position, to);
  const PreparedPattern::Demand& settled = prepared_.settled();
  if (settled.part > 0 && window_.has_settled(position, settled.place)) {
    const Offset end = match_rest(settled.part, position + settled.place, to);
    return end >= 0 ? PatternMatch{end, true}
                    : PatternMatch{position + 1, false};
  }
  const Offset run_end = window_.next_bare(position);
  if (run_end == window_.limit() && run_end < to) {
    return finish_attempt(position, prepared_.run_of(0, position, to), to);
  }
  return finish_attempt(position, run_in_window(position, run_end), to);
}

// The first part's run, which goes on up to `run_end` if its limit lets it.
PreparedPattern::Run PatternSearcher::run_in_window(Offset position,
                                                    Offset run_end) const {
  const Offset limit = prepared_.limit_of(0);
  const Offset length = run_end - position;
  // Characters have at most four bytes, so mostly the bytes say enough.
  if (limit == kMaxLong && length >= 4 * prepared_.minimum_of(0)) {
    return {run_end, prepared_.minimum_of(0), true};
  }
  const Byte* const first = text_ + position;
  const Offset count =
      window_.is_ascii() ? length : count_leads(first, text_ + run_end);
  if (count <= limit) return {run_end, count, true};
  if (limit < 0) return {position, 0, true};
  if (window_.is_ascii()) return {position + limit, limit, true};
  return {nth_lead(first, text_ + run_end, limit) - text_, limit, true};
}

// Where the parts from `part` on end, or -1. Among single bytes the bits
// of the window tell, as far as it goes.
Offset PatternSearcher::match_rest(int part, Offset position, Offset to) {
  const int most = std::min(pattern_.part_count, CoverageWindow::kMostParts);
  for (; part < most && window_.is_ascii() && window_.holds(position, to);
       ++part) {
    const Offset end = window_.run_end(part, position, text_, prepared_);
    if (end == window_.limit() && end < to) break;  // it may go on
    const Offset limit = prepared_.limit_of(part);
    const Offset count = std::clamp<Offset>(limit, 0, end - position);
    if (!prepared_.allows(part, count)) return -1;
    position += count;
  }
  return prepared_.match_rest(part, position, to);
}

// Where the run came to its own end, an attempt from inside it would come to
// the same end with fewer characters: when this one fails, so would they.
PatternMatch PatternSearcher::finish_attempt(Offset position,
                                             const PreparedPattern::Run& run,
                                             Offset to) {
  if (run.read && prepared_.allows(0, run.count)) {
    const Offset end = match_rest(1, run.next, to);
    if (end >= 0) return {end, true};
  }
  const bool cut_short = run.count >= prepared_.limit_of(0);
  return {cut_short ? position + length_from_lead(text_[position]) : run.next,
          false};
}

bool PatternSearcher::find_last(Offset from, Offset to,
                                const MatchVariables& found) {
  *found.next = to_long(from);
  if (text_ == nullptr || from < 0 || from > to || to < 1 ||
      pattern_.part_count < 1) {
    return false;
  }
  return decide() && prepared_.has_starters()
             ? find_last_prepared(from, to, found)
             : find_last_by_the_book(from, to, found);
}

// An attempt at a continuation byte reads what the one before it, at the next
// offset, has read: it fails too, and would go on at the same offset.
bool PatternSearcher::find_last_by_the_book(Offset from, Offset to,
                                            const MatchVariables& found) {
  YieldMeter meter = host_.meter();
  PatternMatch match{to, false};
  for (Offset position = to - 1; position >= from; --position) {
    if (!is_continuation(text_[position])) {
      match = match_pattern(pattern_, text_, position, to);
    }
    *found.end = to_long(match.next);
    if (match.matched) *found.start = *found.next = to_long(position);
    meter.tick(position - 1);
    if (match.matched) return true;
    if (!meter.go_on()) return false;
  }
  return false;
}

// Only offsets of bytes that a match can begin with are tried; the others fail
// and are counted together.
bool PatternSearcher::find_last_prepared(Offset from, Offset to,
                                         const MatchVariables& found) {
  ByteSet first_bytes;
  for (int i = 0; i < prepared_.starters(); ++i) {
    first_bytes.add_all(prepared_.accepted_by(i).first_bytes());
  }
  YieldMeter meter = host_.meter();
  PatternMatch match{to, false};
  for (Offset position = to - 1; position >= from;) {
    const Offset lowest = std::max(from, position - meter.units_left() + 1);
    const Byte* const above = text_ + position + 1;
    const Byte* const hit =
        find_member_backward(text_ + lowest, above, first_bytes);
    const Offset tried = hit == above ? lowest : hit - text_;
    if (hit != above) {
      match = prepared_.match(tried, to);
    } else {
      match.next = next_attempt(tried, position + 1, match.next, to);
    }
    *found.end = to_long(match.next);
    if (match.matched) *found.start = *found.next = to_long(tried);
    meter.skip(position - tried);
    meter.tick(tried - 1);
    if (match.matched) return true;
    if (!meter.go_on()) return false;
    position = tried - 1;
  }
  return false;
}

// Where a forward search would go on after an attempt at `position` failed,
// when after one at `above` it would go on at `after`.
Offset PatternSearcher::next_attempt(Offset position, Offset above,
                                     Offset after, Offset to) const {
  while (position < above && is_continuation(text_[position])) ++position;
  return position < above ? read_next(text_, position, to).next : after;
}

}  // namespace quill

using namespace quill;

std::int32_t utf8_FindPattern(const char* text, std::int32_t from,
                              std::int32_t to,
                              const QuillRangePart* const* parts,
                              std::int32_t part_count, std::int32_t* start,
                              std::int32_t* end, std::int32_t* next,
                              std::int32_t reference, QuillYield yield) {
  PatternSearcher searcher(text, {parts, part_count}, {reference, yield},
                           Offset{to} - from);
  return searcher.find_first(from, to, {start, end, next}) ? 1 : 0;
}

std::int32_t utf8_FindPatternPrev(const char* text, std::int32_t from,
                                  std::int32_t to,
                                  const QuillRangePart* const* parts,
                                  std::int32_t part_count, std::int32_t* start,
                                  std::int32_t* end, std::int32_t* next,
                                  std::int32_t reference, QuillYield yield) {
  PatternSearcher searcher(text, {parts, part_count}, {reference, yield},
                           Offset{to} - from);
  return searcher.find_last(from, to, {start, end, next}) ? 1 : 0;
}
