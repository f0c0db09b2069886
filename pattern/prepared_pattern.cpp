#include "pattern/prepared_pattern.h"

#include <algorithm>
#include <bit>

namespace quill {
namespace {

// Characters of a run that are tested one by one before it counts as long.
constexpr Offset kShortRun = 32;

// The first bit that is 0 among `length`, or `length`.
Offset first_clear(const std::uint64_t* words, Offset length) {
  for (Offset i = 0; i < length; i += 64) {
    if (const std::uint64_t clear = ~words[i / 64]; clear != 0) {
      return std::min(i + std::countr_zero(clear), length);
    }
  }
  return length;
}

}  // namespace

bool PreparedPattern::prepare(Offset range_length) {
  if (pattern_.part_count < 1 || pattern_.part_count > kMostParts) return false;
  Offset members = 0;
  for (std::int32_t i = 0; i < pattern_.part_count; ++i) {
    members += std::max(pattern_.part(i).character_count, 0);
  }
  // A member costs about as much as a byte of text does by bisection.
  if (members > range_length) return false;
  for (std::int32_t i = 0; i < pattern_.part_count; ++i) {
    parts_.emplace_back(pattern_.part(i), range_length);
    if (!parts_[i].accepted.is_prepared()) return false;
    if (starters_ == 0 && minimum_of(i) > 0) starters_ = i + 1;
  }
  note_demands();
  return true;
}

void PreparedPattern::note_demands() {
  int place = 0;
  const int most = std::min(pattern_.part_count, kMostDemandedParts);
  for (int part = 0; part < most; ++part) {
    for (Offset i = 0; i < minimum_of(part); ++i) {
      if (demand_count_ == kMostDemands) return;
      demands_[demand_count_++] = {part, place++};
    }
    if (minimum_of(part) < 0 || limit_of(part) != minimum_of(part)) return;
    settled_ = {part + 1, place};
  }
}

// Takes one character more. False when the run ends before it.
bool PreparedPattern::step(const Part& part, Run& run, Offset end) const {
  const Byte byte = text_[run.next];
  if (byte < 0x80) {
    if (!part.accepted.accepts_ascii(byte)) return false;
    ++run.next;
  } else {
    const Character read = read_next(text_, run.next, end);
    run.read = read.found;
    if (!read.found || !part.accepted.accepts(text_, read)) return false;
    run.next = read.next;
  }
  ++run.count;
  return true;
}

// Takes the first characters as long as they are single bytes.
void PreparedPattern::take_ascii(const Part& part, Run& run, Offset end) const {
  const Offset most = std::min({end - run.next, part.limit, kShortRun});
  Offset taken = 0;
  while (taken < most && text_[run.next + taken] < 0x80 &&
         part.accepted.accepts_ascii(text_[run.next + taken])) {
    ++taken;
  }
  run.next += taken;
  run.count += taken;
}

PreparedPattern::Run PreparedPattern::run_of(int part, Offset position,
                                             Offset end) {
  Part& prepared = parts_[part];
  Run run{position, 0, true};
  if (jump_known(prepared, run, end)) return run;
  take_ascii(prepared, run, end);
  while (run.next < end && run.count < prepared.limit) {
    if (run.count >= kShortRun) {
      extend(prepared, run, end);
      return run;
    }
    if (!step(prepared, run, end)) break;
  }
  return run;
}

// How far to look from `position` on: at most up to a run known from before.
Offset PreparedPattern::stretch_end(const Part& part, Offset position,
                                    Offset end) {
  const Offset most = std::min(end, position + CharacterClass::kMostCovered);
  const LongRun& known = part.known;
  const bool is_ahead = known.range_end == end && position < known.start;
  return is_ahead ? std::min(most, known.start) : most;
}

// Goes on with a run that has become long.
void PreparedPattern::extend(Part& part, Run& run, Offset end) const {
  Offset start = run.next;  // of what is in order up to the end
  std::uint64_t covered[CharacterClass::kMostCovered / 64];
  while (run.next < end && run.count < part.limit) {
    if (jump_known(part, run, end)) break;
    const Byte* const first = text_ + run.next;
    const Walk walk =
        walk_characters(first, text_ + stretch_end(part, run.next, end),
                        part.limit - run.count);
    const Offset length = walk.next - first;
    if (length == 0) {
      if (!step(part, run, end)) break;
      start = run.next;
      continue;
    }
    part.accepted.cover(first, walk.next, walk.characters == length, covered);
    const Offset taken = first_clear(covered, length);
    run.next += taken;
    if (taken < length) {
      run.count += count_leads(first, first + taken);
      break;
    }
    run.count += walk.characters;
  }
  if (run.count < part.limit) part.known = {start, run.next, end, run.read};
}

// Goes to the end of a run known from before, when no limit lies on the way.
bool PreparedPattern::jump_known(const Part& part, Run& run, Offset end) const {
  const LongRun& known = part.known;
  if (run.next >= known.end || run.next < known.start ||
      known.range_end != end || part.limit != kMaxLong ||
      is_continuation(text_[run.next])) {
    return false;
  }
  // How many characters there are matters only up to the minimum.
  const Offset missing = std::max<Offset>(part.minimum - run.count, 1);
  run.count +=
      walk_characters(text_ + run.next, text_ + known.end, missing).characters;
  run.next = known.end;
  run.read = known.read;
  return true;
}

Offset PreparedPattern::match_rest(int part, Offset position, Offset end) {
  for (; part < pattern_.part_count; ++part) {
    const Run run = run_of(part, position, end);
    if (!run.read || !allows(part, run.count)) return -1;
    position = run.next;
  }
  return position;
}

PatternMatch PreparedPattern::match(Offset position, Offset end) {
  const Offset matched = match_rest(0, position, end);
  if (matched >= 0) return {matched, true};
  return {read_next(text_, position, end).next, false};
}

}  // namespace quill
