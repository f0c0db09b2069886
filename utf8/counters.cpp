// Counting characters, and stepping over a number of them.
//
// Both go by the class of the lead byte alone, but differ where characters are
// not in order: a count takes a continuation byte for a character of its own,
// a step looks for the character that contains it. Stretches of characters in
// order, where they agree, are walked by the vector kernels; what lies between
// is gone over byte by byte.
#include "utf8/counters.h"

#include <algorithm>
#include <limits>

#include "blocks/byte_scan.h"
#include "blocks/yield_meter.h"
#include "quillcore.h"
#include "utf8/characters.h"

namespace quill {
namespace {

// How many characters to go over one by one before the kernels are tried
// again: more each time they gain little.
class Patience {
 public:
  Offset after(Offset walked) {
    characters_ = walked < kLittle ? std::min(2 * characters_, kMost) : kLeast;
    return characters_;
  }

 private:
  static constexpr Offset kLittle = 64;
  static constexpr Offset kLeast = 1;
  static constexpr Offset kMost = 256;
  Offset characters_ = kLeast;
};

// Counts at most `most` characters whose first byte lies in [position, end),
// and moves `position` past the last of them: beyond `end` when that cuts it.
Offset count_on(const Byte* text, Offset& position, Offset end, Offset most) {
  Offset count = 0;
  Patience patience;
  while (count < most && position < end) {
    const Walk walk =
        walk_characters(text + position, text + end, most - count);
    count += walk.characters;
    const Offset walked = walk.next - (text + position);
    position += walked;
    const Offset singly = std::min(count + patience.after(walked), most);
    for (; count < singly && position < end; ++count) {
      position += length_from_lead(text[position]);
    }
  }
  return count;
}

void count_all(const Byte* text, Offset start, Offset end, YieldMeter& meter,
               std::int32_t& count) {
  Offset position = start;
  Offset total = 0;
  while (position < end && meter.go_on()) {
    const Offset stretch = meter.units_left();
    const Offset counted = count_on(text, position, end, stretch);
    total += counted;
    count = to_long(total);  // the host may look at it when it is asked
    if (counted < stretch) break;
    meter.skip(stretch - 1);
    meter.tick(position);
  }
}

bool is_countable(const char* text, std::int32_t start, std::int32_t end) {
  return start <= end && start >= 0 && text != nullptr;
}

}  // namespace

Stepped step_characters(const Byte* text, Offset start, Offset end,
                        Offset most) {
  Stepped steps{start, 0, false, false};
  if (text == nullptr && start < end && most > 0) return {end, 0, true, false};
  Patience patience;
  while (steps.characters < most && steps.offset < end) {
    const Walk walk = walk_characters(text + steps.offset, text + end,
                                      most - steps.characters);
    const Offset walked = walk.next - (text + steps.offset);
    steps.offset += walked;
    steps.characters += walk.characters;
    const Offset singly =
        std::min(steps.characters + patience.after(walked), most);
    while (steps.characters < singly && steps.offset < end) {
      const Character read = read_containing(text, steps.offset, end);
      if (!read.found) return {end, steps.characters, true, false};
      ++steps.characters;
      // A character that ends at or before the offset which it was read from
      // has only continuation bytes behind it up to there. Read from its end,
      // it is found again: no further step moves.
      if (read.next <= steps.offset) return {read.next, most, false, true};
      steps.offset = read.next;
    }
  }
  return steps;
}

}  // namespace quill

using namespace quill;

std::int32_t utf8_CountCharacters(const char* text, std::int32_t start,
                                  std::int32_t end, std::int32_t* count) {
  *count = 0;
  if (!is_countable(text, start, end)) return 0;
  Offset position = start;
  *count = to_long(count_on(as_bytes(text), position, end,
                            std::numeric_limits<Offset>::max()));
  return 1;
}

std::int32_t utf8_CountCharactersTask(const char* text, std::int32_t start,
                                      std::int32_t end, std::int32_t* count,
                                      std::int32_t reference,
                                      QuillYield yield) {
  *count = 0;
  if (!is_countable(text, start, end)) return 0;
  YieldMeter meter(reference, yield);
  count_all(as_bytes(text), start, end, meter, *count);
  return 1;
}

std::int32_t utf8_CountToOffset(const char* text, std::int32_t start,
                                std::int32_t end, std::int32_t* count,
                                std::int32_t* offset) {
  const std::int32_t wanted = *count;
  if (wanted < 1) {
    *offset = end;
    return 0;
  }
  if (start < 0 || start >= end) {
    *count = 0;
    *offset = end;
    return 0;
  }
  const Stepped steps = step_characters(as_bytes(text), start, end, wanted);
  *offset = to_long(steps.offset);
  if (steps.failed) {
    *count = 0;
    return 0;
  }
  if (steps.characters == wanted) return 1;
  *count = to_long(steps.characters);
  return 0;
}
