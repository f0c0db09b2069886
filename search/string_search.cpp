// The loops that count a search's offsets and ask the host, and the exports
// that are made of them.
//
// Passing an offset is one unit in every loop, so the offset at which the host
// is due is known ahead: up to there the searcher looks for a match without
// counting. A repeated search counts its searches, and each of them counts its
// own offsets from nothing.
#include "search/string_search.h"

#include <algorithm>
#include <array>
#include <span>

#include "blocks/long_list.h"
#include "blocks/yield_meter.h"

namespace quill {
namespace {

// Where a search writes what it found: the host's variables, in this order.
struct FoundAt {
  std::int32_t* start;
  std::int32_t* end;

  void write(Offset found_start, Offset found_end) const {
    *start = to_long(found_start);
    *end = to_long(found_end);
  }
};

// The offset up to which nothing is asked but perhaps at the very end.
Offset stretch_limit(const YieldMeter& meter, Offset position, Offset end) {
  const Offset left = meter.units_left();
  return left < end - position ? position + left : end;
}

// Counts the units of a stretch without a match; the last one may ask, and
// tells the stretch's limit.
void pass_stretch(YieldMeter& meter, Offset position, Offset limit) {
  meter.skip(limit - position - 1);
  meter.tick(limit);
}

// A stop takes effect before the next offset. A match is written before its
// unit is counted, and stands whatever the host answers.
bool scan_all(StringSearcher& searcher, Offset position, FoundAt found,
              YieldMeter& meter) {
  const Offset end = searcher.query().end;
  while (position < end && meter.go_on()) {
    const Offset limit = stretch_limit(meter, position, end);
    Match match;
    if (searcher.next_match(position, limit, match)) {
      found.write(match.start, match.end);
      meter.skip(match.start - position);
      meter.tick(match.end);
      return true;
    }
    pass_stretch(meter, position, limit);
    position = limit;
  }
  return false;
}

// The last look of a scan for the first byte, at the offset where it was
// stopped or where the range ends: one more unit, counted before the look and
// asked about after it. The answer to that may revoke the stop.
bool look_once_more(StringSearcher& searcher, Offset position, FoundAt found,
                    YieldMeter& meter) {
  const StringQuery& query = searcher.query();
  meter.count();
  Match match;
  const bool matches = position < query.end &&
                       query.text[position] == searcher.first_byte() &&
                       searcher.matches_at(position, match);
  if (matches) found.write(match.start, match.end);
  meter.ask_if_due(matches ? match.end : position + 1);
  return matches;
}

// As scan_all, but what is passed is passed by a scan for the first byte. A
// stop that reaches the host between two such bytes takes effect only after
// the byte behind it has had its look, and a scan that runs into the end of
// the range counts one unit more.
bool scan_for_first_byte(StringSearcher& searcher, Offset position,
                         FoundAt found, YieldMeter& meter) {
  const StringQuery& query = searcher.query();
  while (position < query.end && meter.go_on()) {
    const Offset limit = stretch_limit(meter, position, query.end);
    Match match;
    if (searcher.next_match(position, limit, match)) {
      found.write(match.start, match.end);
      meter.skip(match.start - position);
      meter.tick(match.end);
      return true;
    }
    pass_stretch(meter, position, limit);
    position = limit;
    const bool between = query.text[limit - 1] != searcher.first_byte();
    if (between && (position == query.end || !meter.go_on())) {
      if (look_once_more(searcher, position, found, meter)) return true;
      ++position;
    }
  }
  return false;
}

// The forward search behind all others, with a count of its own.
bool find_first(StringSearcher& searcher, Offset start, FoundAt found,
                YieldMeter meter) {
  const StringQuery& query = searcher.query();
  found.write(0, query.end);
  if (!query.is_valid_from(start)) return false;
  return searcher.has_first_byte()
             ? scan_for_first_byte(searcher, start, found, meter)
             : scan_all(searcher, start, found, meter);
}

bool find_last(StringSearcher& searcher, FoundAt found, YieldMeter meter) {
  const StringQuery& query = searcher.query();
  found.write(0, query.start);
  const Offset highest = query.end - query.pattern.count;
  if (!query.is_valid_from(query.start) || query.start > highest) return false;
  Offset limit = highest + 1;  // offsets from here on have been tried
  while (limit > query.start && meter.go_on()) {
    const Offset left = meter.units_left();
    const Offset from = left < limit - query.start ? limit - left : query.start;
    Match match;
    if (searcher.previous_match(from, limit, match)) {
      found.write(match.start, match.start);
      meter.skip(limit - 1 - match.start);
      meter.tick(match.start);
      return true;
    }
    meter.skip(limit - from - 1);
    meter.tick(from - 1);
    limit = from;
  }
  return false;
}

// Lists the matches from `position` on that are known at once, where neither
// the searches that end there nor their repetition can ask the host. False
// when the list has no room for one of them, which is then passed.
bool list_known(StringSearcher& searcher, std::int32_t& position,
                YieldMeter& meter, LongList& list) {
  std::array<std::int32_t, 128> pairs;
  while (position < searcher.query().end && meter.go_on() &&
         YieldMeter(0, nullptr).units_left() > StringSearcher::kWindow) {
    const Offset most =
        std::min(std::ssize(pairs) / 2, meter.units_left() - 1) * 2;
    const Offset count = searcher.write_known(
        position, std::span(pairs).first(static_cast<std::size_t>(most)));
    if (count == 0) break;
    const auto known = std::span(pairs).first(static_cast<std::size_t>(count));
    const Offset listed = list.append_pairs(known);
    if (listed < count) {
      position = known[static_cast<std::size_t>(listed + 1)];
      return false;
    }
    meter.skip(count / 2);
    position = known.back();
  }
  return true;
}

}  // namespace

StringList find_all_strings(const StringQuery& query, std::int32_t reference,
                            QuillYield yield) {
  const StringList none{nullptr, 0, to_long(query.end), false};
  LongList list;
  if (!list.start()) return none;
  StringSearcher searcher(query);
  YieldMeter meter(reference, yield);
  std::int32_t position = to_long(query.start);
  bool grows = true;
  while (position < query.end && meter.go_on() && grows) {
    std::int32_t match_start = 0;
    if (find_first(searcher, position, {&match_start, &position},
                   {reference, yield})) {
      grows = list.append(match_start, position);
    }
    meter.tick(position);
    if (grows) grows = list_known(searcher, position, meter, list);
  }
  const std::int32_t long_count = to_long(list.long_count());
  QuillBlock block = list.hand_over_or_none();
  if (list.failed_to_start() || (long_count != 0 && block == nullptr)) {
    DisposeHandle(block);
    return none;
  }
  return {block, long_count, position, true};
}

}  // namespace quill

namespace {

using namespace quill;

// The thirteen parameters that all searches begin with.
StringQuery make_query(const char* text, std::int32_t start, std::int32_t end,
                       const std::int32_t* pattern, std::int32_t pattern_count,
                       const unsigned char* position_flags,
                       const std::int32_t* mask_keys,
                       const std::int32_t* mask_values, std::int32_t mask_count,
                       const std::int32_t* break_characters,
                       std::int32_t break_count, unsigned char edge_flag,
                       unsigned char invert_flag) {
  return {as_bytes(text),
          start,
          end,
          {pattern, pattern_count, position_flags},
          {mask_keys, mask_values, mask_count},
          {{break_characters, break_count}, edge_flag, invert_flag}};
}

}  // namespace

std::int32_t utf8_FindStr(
    const char* text, std::int32_t start, std::int32_t end,
    const std::int32_t* pattern, std::int32_t pattern_count,
    const unsigned char* position_flags, const std::int32_t* mask_keys,
    const std::int32_t* mask_values, std::int32_t mask_count,
    const std::int32_t* break_characters, std::int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag,
    std::int32_t* found_start, std::int32_t* found_end, std::int32_t reference,
    QuillYield yield) {
  const StringQuery query =
      make_query(text, start, end, pattern, pattern_count, position_flags,
                 mask_keys, mask_values, mask_count, break_characters,
                 break_count, edge_flag, invert_flag);
  StringSearcher searcher(query);
  return find_first(searcher, start, {found_start, found_end},
                    {reference, yield})
             ? 1
             : 0;
}

std::int32_t utf8_FindStrPrev(
    const char* text, std::int32_t start, std::int32_t end,
    const std::int32_t* pattern, std::int32_t pattern_count,
    const unsigned char* position_flags, const std::int32_t* mask_keys,
    const std::int32_t* mask_values, std::int32_t mask_count,
    const std::int32_t* break_characters, std::int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag,
    std::int32_t* found_start, std::int32_t* found_end, std::int32_t reference,
    QuillYield yield) {
  const StringQuery query =
      make_query(text, start, end, pattern, pattern_count, position_flags,
                 mask_keys, mask_values, mask_count, break_characters,
                 break_count, edge_flag, invert_flag);
  StringSearcher searcher(query);
  return find_last(searcher, {found_start, found_end}, {reference, yield}) ? 1
                                                                           : 0;
}

std::int32_t utf8_FindStrNth(
    const char* text, std::int32_t start, std::int32_t end,
    const std::int32_t* pattern, std::int32_t pattern_count,
    const unsigned char* position_flags, const std::int32_t* mask_keys,
    const std::int32_t* mask_values, std::int32_t mask_count,
    const std::int32_t* break_characters, std::int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag,
    std::int32_t* occurrence, std::int32_t* found_start,
    std::int32_t* found_end, std::int32_t reference, QuillYield yield) {
  const StringQuery query =
      make_query(text, start, end, pattern, pattern_count, position_flags,
                 mask_keys, mask_values, mask_count, break_characters,
                 break_count, edge_flag, invert_flag);
  StringSearcher searcher(query);
  const std::int32_t wanted = *occurrence;
  *found_end = start;
  YieldMeter meter(reference, yield);
  std::int32_t made = 0;
  bool found = true;
  while (made < wanted && found && meter.go_on()) {
    found = find_first(searcher, *found_end, {found_start, found_end},
                       {reference, yield});
    ++made;
    meter.tick(*found_end);
  }
  *occurrence = made - 1;
  return found ? 1 : 0;
}

std::int32_t utf8_CountStrAll(
    const char* text, std::int32_t start, std::int32_t end,
    const std::int32_t* pattern, std::int32_t pattern_count,
    const unsigned char* position_flags, const std::int32_t* mask_keys,
    const std::int32_t* mask_values, std::int32_t mask_count,
    const std::int32_t* break_characters, std::int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag,
    std::int32_t* match_count, std::int32_t* stop, std::int32_t reference,
    QuillYield yield) {
  const StringQuery query =
      make_query(text, start, end, pattern, pattern_count, position_flags,
                 mask_keys, mask_values, mask_count, break_characters,
                 break_count, edge_flag, invert_flag);
  StringSearcher searcher(query);
  YieldMeter meter(reference, yield);
  std::int32_t position = start;
  std::int32_t matches = 0;
  while (position < end && meter.go_on()) {
    std::int32_t match_start = 0;
    if (find_first(searcher, position, {&match_start, &position},
                   {reference, yield})) {
      ++matches;
    }
    meter.tick(position);
  }
  *match_count = matches;
  *stop = position;
  return 1;
}

std::int32_t utf8_FindStrAll(
    const char* text, std::int32_t start, std::int32_t end,
    const std::int32_t* pattern, std::int32_t pattern_count,
    const unsigned char* position_flags, const std::int32_t* mask_keys,
    const std::int32_t* mask_values, std::int32_t mask_count,
    const std::int32_t* break_characters, std::int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag, QuillBlock* list,
    std::int32_t* long_count, std::int32_t* stop, std::int32_t reference,
    QuillYield yield) {
  const StringList found = find_all_strings(
      make_query(text, start, end, pattern, pattern_count, position_flags,
                 mask_keys, mask_values, mask_count, break_characters,
                 break_count, edge_flag, invert_flag),
      reference, yield);
  *list = found.list;
  *long_count = found.long_count;
  *stop = found.stop;
  return found.made ? 1 : 0;
}
