#include <string>
#include <utility>

#include "tests/models/naive.h"
#include "tests/support/blocks.h"

namespace quill::naive {
// The quicksort that takes the first key as its pivot.
void utf8_SortMask(Long* mask_keys, Long* mask_values, Long first, Long limit) {
  const auto exchange = [&](Long a, Long b) {
    std::swap(mask_keys[a], mask_keys[b]);
    std::swap(mask_values[a], mask_values[b]);
  };
  while (first + 1 < limit) {
    Long left = first + 1;
    Long right = limit;
    while (left < right) {
      if (mask_keys[left] <= mask_keys[first]) {
        ++left;
      } else {
        exchange(left, --right);
      }
    }
    exchange(first, left - 1);
    naive::utf8_SortMask(mask_keys, mask_values, first, left - 1);
    first = right;
  }
}

Long utf8_StringToLongArray(const char* text, Long start, Long end,
                            const Long* mask_keys, const Long* mask_values,
                            Long mask_count, Long* array, Long* count) {
  if (text == nullptr || array == nullptr || start < 0 || start >= end) {
    return 0;
  }
  *count = 0;
  while (start < end) {
    const Character read = next_character(text, start, end);
    if (!read.was_read) break;
    array[(*count)++] =
        utf8_MaskChar(read.packed, mask_keys, mask_values, mask_count, 1);
    start = read.next;
  }
  return 1;
}

Long utf8_MaskString(QuillBlock source, Long start, Long end,
                     const Long* mask_keys, const Long* mask_values,
                     Long mask_count, QuillBlock* output, Long, Long reference,
                     QuillYield yield) {
  if (start < 0 || end <= start || source == nullptr || mask_keys == nullptr ||
      mask_values == nullptr || mask_count == 0 || end > GetBlockSize(source)) {
    return 0;
  }
  UnlockBlock(source);
  *output = nullptr;
  std::string out;
  Meter meter(reference, yield);
  Long position = start;
  while (position < end && meter.go_on) {
    const Character read = next_character(*source, position, end);
    if (!read.was_read) return 0;
    position = read.next;
    append_character(
        out, utf8_MaskChar(read.packed, mask_keys, mask_values, mask_count, 1));
    meter.tick(position);
  }
  *output = test::block_of(out);
  return 1;
}

Long utf8_MaskStringSelection(QuillBlock source, const Long* selections,
                              Long long_count, const Long* mask_keys,
                              const Long* mask_values, Long mask_count,
                              QuillBlock* output, Long reference,
                              QuillYield yield) {
  const Long size = GetBlockSize(source);
  if (size < 1 || mask_keys == nullptr || mask_values == nullptr ||
      mask_count == 0 || (long_count >= 2 && selections == nullptr)) {
    return 0;
  }
  for (Long i = 0; i < long_count / 2 * 2; ++i) {
    if (selections[i] > size) return 0;
  }
  UnlockBlock(source);
  *output = nullptr;
  const char* const text = *source;
  std::string out;
  Meter meter(reference, yield);
  Long position = 0;
  for (Long taken = 0; taken + 2 <= long_count && meter.go_on;) {
    const Long start = selections[taken];
    const Long end = selections[taken + 1];
    taken += 2;
    if (start > position) {
      out.append(text + position, text + start);
      position = start;
    }
    meter.go_on = true;
    while (position < end) {
      const Character read = next_character(text, position, end);
      if (!read.was_read) return 0;
      position = read.next;
      append_character(out, utf8_MaskChar(read.packed, mask_keys, mask_values,
                                          mask_count, 1));
      meter.tick(taken);
    }
  }
  out.append(text + position, text + size);
  *output = test::block_of(out);
  return 1;
}

}  // namespace quill::naive
