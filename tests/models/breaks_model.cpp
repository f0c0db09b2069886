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
  const auto widen = [&](bool backward, const Long* members, Long count,
                         unsigned char flag, Long* edge) {
    const Long bound = backward ? lower_bound : end;
    Meter meter(reference, yield);
    Long at = *edge;
    for (bool widening = true; widening;) {
      if (backward ? at <= bound : at >= bound) {
        *edge = bound;
        *break_found = 0;
        return true;
      }
      const Character read = backward ? previous_character(text, at, end)
                                      : next_character(text, at, end);
      if (!read.was_read) return false;
      at = backward ? read.start : read.next;
      const bool member = utf8_InList(read.packed, members, count) == 1;
      if (member != (flag == 1)) {
        *edge = backward ? read.next : read.start;
        widening = false;
      }
      meter.tick(lower_bound);
      if (!meter.go_on) return false;
    }
    return true;
  };
  *break_found = 1;
  if ((backward_count <= 0 || widen(true, backward_class, backward_count,
                                    backward_flag, selection_start)) &&
      (forward_count <= 0 || widen(false, forward_class, forward_count,
                                   forward_flag, selection_end))) {
    return 1;
  }
  *break_found = 0;
  return 0;
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
