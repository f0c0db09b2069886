#include "pattern/range_pattern.h"

namespace quill {
namespace {

// Offsets before the text can come from the host; nothing is read there.
Character read_inside(const Byte* text, Offset position, Offset end) {
  if (position < 0) return {position, end, 0, false};
  return read_next(text, position, end);
}

}  // namespace

PartMatch match_part(const QuillRangePart& part, const Byte* text,
                     Offset position, Offset end) {
  const Offset limit = limit_of(part);
  Offset count = 0;
  while (position < end && count < limit) {
    const Character read = read_inside(text, position, end);
    if (!read.found) return {position, false, false};
    if (!passes(part, read.packed)) break;  // and is not taken
    position = read.next;
    ++count;
  }
  return {position, part.minimum <= count && count <= limit, true};
}

PatternMatch match_pattern(const RangePattern& pattern, const Byte* text,
                           Offset position, Offset end) {
  Offset reached = position;
  for (std::int32_t i = 0; i < pattern.part_count; ++i) {
    const PartMatch run = match_part(pattern.part(i), text, reached, end);
    if (!run.matched) return {read_inside(text, position, end).next, false};
    reached = run.next;
  }
  return {reached, true};
}

}  // namespace quill

using namespace quill;

std::int32_t utf8_CompareRangePart(const QuillRangePart* part, const char* text,
                                   std::int32_t position, std::int32_t end,
                                   std::int32_t* next) {
  const PartMatch run = match_part(*part, as_bytes(text), position, end);
  if (run.read) *next = to_long(run.next);
  return run.matched ? 1 : 0;
}

std::int32_t utf8_CompareRangePattern(const char* text, std::int32_t position,
                                      std::int32_t end,
                                      const QuillRangePart* const* parts,
                                      std::int32_t part_count,
                                      std::int32_t* next) {
  const PatternMatch match =
      match_pattern({parts, part_count}, as_bytes(text), position, end);
  *next = to_long(match.next);
  return match.matched ? 1 : 0;
}
