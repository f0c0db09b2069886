#include "pattern/pattern_search.h"

#include "quillcore.h"

namespace quill {
namespace {

// The host is told of the offset about to be looked at, and after it has asked
// to stop, that one is still looked at.
Offset find_byte(const Byte* text, Offset from, Offset to, Byte wanted,
                 YieldMeter meter) {
  for (Offset position = from; position < to;) {
    if (text[position] == wanted) return position;
    if (!meter.go_on()) return -1;
    ++position;
    meter.tick(position);
  }
  return -1;
}

}  // namespace

bool PatternSearcher::has_fixed_start() const {
  const QuillRangePart& first = pattern_.part(0);
  return first.character_count == 1 && first.minimum >= 1 && first.include == 1;
}

bool PatternSearcher::find_first(Offset from, Offset to,
                                 MatchVariables found) const {
  *found.next = to_long(to);
  if (text_ == nullptr || from < 0 || to < from || to < 1 ||
      pattern_.part_count < 1) {
    return false;
  }
  Offset position = from;
  if (has_fixed_start()) {
    const Byte lead = byte_of(pattern_.part(0).characters[0], 0);
    position = find_byte(text_, from, to, lead, host_.meter());
    if (position < 0) return false;
  }
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

bool PatternSearcher::find_last(Offset from, Offset to,
                                MatchVariables found) const {
  *found.next = to_long(from);
  if (text_ == nullptr || from < 0 || from > to || to < 1 ||
      pattern_.part_count < 1) {
    return false;
  }
  YieldMeter meter = host_.meter();
  for (Offset position = to - 1; position >= from; --position) {
    const PatternMatch match = match_pattern(pattern_, text_, position, to);
    *found.end = to_long(match.next);
    if (match.matched) {
      *found.start = to_long(position);
      *found.next = to_long(position);
    }
    meter.tick(position - 1);
    if (match.matched) return true;
    if (!meter.go_on()) return false;
  }
  return false;
}

}  // namespace quill

using namespace quill;

std::int32_t utf8_FindPattern(const char* text, std::int32_t from,
                              std::int32_t to,
                              const QuillRangePart* const* parts,
                              std::int32_t part_count, std::int32_t* start,
                              std::int32_t* end, std::int32_t* next,
                              std::int32_t reference, QuillYield yield) {
  const PatternSearcher searcher(text, {parts, part_count}, {reference, yield});
  return searcher.find_first(from, to, {start, end, next}) ? 1 : 0;
}

std::int32_t utf8_FindPatternPrev(const char* text, std::int32_t from,
                                  std::int32_t to,
                                  const QuillRangePart* const* parts,
                                  std::int32_t part_count, std::int32_t* start,
                                  std::int32_t* end, std::int32_t* next,
                                  std::int32_t reference, QuillYield yield) {
  const PatternSearcher searcher(text, {parts, part_count}, {reference, yield});
  return searcher.find_last(from, to, {start, end, next}) ? 1 : 0;
}
