#include "tests/models/naive.h"
#include "tests/support/blocks.h"

namespace quill::naive {
namespace {

bool is_refused(QuillBlock text, Long start, Long end, Long unit) {
  return text == nullptr || start < 0 || end <= start || unit < 1 ||
         end > GetBlockSize(text);
}

Long hand_over(const test::Longs& positions, QuillBlock* list,
               Long* long_count) {
  test::Longs twice;
  for (const Long position : positions) {
    twice.insert(twice.end(), 2, position);
  }
  *list = test::block_of(twice);
  *long_count = test::length_of(twice);
  return 1;
}

}  // namespace

Long utf8_FindBreaks(const char* text, Long lower_bound, Long end,
                     const Long* backward_class, Long backward_count,
                     unsigned char backward_flag, const Long* forward_class,
                     Long forward_count, unsigned char forward_flag,
                     Long* selection_start, Long* selection_end,
                     unsigned char* break_found, Long reference,
                     QuillYield yield) {
  *break_found = 1;
  const auto fail = [&] {
    *break_found = 0;
    return 0;
  };
  if (backward_count > 0) {
    Meter meter(reference, yield);
    Long p = *selection_start;
    for (bool widening = true; widening;) {
      if (p <= lower_bound) {
        *selection_start = lower_bound;
        *break_found = 0;
        break;
      }
      const Character read = previous_character(text, p, end);
      if (!read.was_read) return fail();
      p = read.start;
      const bool member =
          utf8_InList(read.packed, backward_class, backward_count) == 1;
      if (member != (backward_flag == 1)) {
        *selection_start = read.next;
        widening = false;
      }
      meter.tick(lower_bound);
      if (!meter.go_on) return fail();
    }
  }
  if (forward_count <= 0) return 1;
  Meter meter(reference, yield);
  Long q = *selection_end;
  for (bool widening = true; widening;) {
    if (q >= end) {
      *selection_end = end;
      *break_found = 0;
      return 1;
    }
    const Character read = next_character(text, q, end);
    if (!read.was_read) return fail();
    q = read.next;
    const bool member =
        utf8_InList(read.packed, forward_class, forward_count) == 1;
    if (member != (forward_flag == 1)) {
      *selection_end = read.start;
      widening = false;
    }
    meter.tick(lower_bound);
    if (!meter.go_on) return fail();
  }
  return 1;
}

Long utf8_ComputeBreaks(QuillBlock text, Long start, Long end, Long chunk,
                        QuillBlock* list, Long* long_count, Long reference,
                        QuillYield yield) {
  if (is_refused(text, start, end, chunk)) return 0;
  UnlockBlock(text);
  test::Longs positions;
  Meter meter(reference, yield);
  Long p = start;
  while (p < end && meter.go_on) {
    Long count = 0;
    while (count < chunk && p < end) {
      const Character read = containing_character(*text, p, end);
      if (!read.was_read || read.next <= p) return 0;
      p = read.next;
      ++count;
    }
    if (count == chunk) positions.push_back(p);
    meter.tick(p);
  }
  return hand_over(positions, list, long_count);
}

Long utf8_ComputeSpaceBreaks(QuillBlock text, Long start, Long end, Long width,
                             QuillBlock* list, Long* long_count, Long reference,
                             QuillYield yield) {
  if (is_refused(text, start, end, width)) return 0;
  UnlockBlock(text);
  test::Longs positions;
  Meter meter(reference, yield);
  Long p = start;
  while (p < end && meter.go_on) {
    Long limit = p + width;
    Long last_space = -1;
    while (p < limit && p < end) {
      const Character read = next_character(*text, p, end);
      if (!read.was_read) return 0;
      p = read.next;
      const char byte = (*text)[read.start];
      if (byte == '\r' || byte == '\n') limit = p + width;
      if (byte == ' ') last_space = read.start;
    }
    if (p != end) {
      if (last_space >= 0) p = last_space + 1;
      positions.push_back(p);
    }
    meter.tick(p);
  }
  return hand_over(positions, list, long_count);
}

}  // namespace quill::naive
