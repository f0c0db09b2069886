#include "tests/models/masks_model.h"

#include <string>
#include <utility>

#include "tests/models/characters_model.h"
#include "tests/models/meter.h"
#include "tests/support/blocks.h"

namespace quill::naive {
namespace {

void write(std::string& out, int32_t packed) {
  const auto bits = static_cast<std::uint32_t>(packed);
  out += static_cast<char>(bits & 0xFF);
  for (const int shift : {8, 16, 24}) {
    if ((bits >> shift & 0xFF) != 0) out += static_cast<char>(bits >> shift);
  }
}

}  // namespace

// The quicksort that takes the first key as its pivot.
void utf8_SortMask(int32_t* mask_keys, int32_t* mask_values, int32_t first,
                   int32_t limit) {
  const auto exchange = [&](int32_t a, int32_t b) {
    std::swap(mask_keys[a], mask_keys[b]);
    std::swap(mask_values[a], mask_values[b]);
  };
  while (first + 1 < limit) {
    int32_t left = first + 1;
    int32_t right = limit;
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

int32_t utf8_StringToLongArray(const char* text, int32_t start, int32_t end,
                               const int32_t* mask_keys,
                               const int32_t* mask_values, int32_t mask_count,
                               int32_t* array, int32_t* count) {
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

int32_t utf8_MaskString(QuillBlock source, int32_t start, int32_t end,
                        const int32_t* mask_keys, const int32_t* mask_values,
                        int32_t mask_count, QuillBlock* output, int32_t,
                        int32_t reference, QuillYield yield) {
  if (start < 0 || end <= start || source == nullptr || mask_keys == nullptr ||
      mask_values == nullptr || mask_count == 0 || end > GetBlockSize(source)) {
    return 0;
  }
  UnlockBlock(source);
  *output = nullptr;
  std::string out;
  Meter meter(reference, yield);
  int32_t position = start;
  while (position < end && meter.go_on) {
    const Character read = next_character(*source, position, end);
    if (!read.was_read) return 0;
    position = read.next;
    write(out,
          utf8_MaskChar(read.packed, mask_keys, mask_values, mask_count, 1));
    meter.tick(position);
  }
  *output = test::block_of(out);
  return 1;
}

int32_t utf8_MaskStringSelection(QuillBlock source, const int32_t* selections,
                                 int32_t long_count, const int32_t* mask_keys,
                                 const int32_t* mask_values, int32_t mask_count,
                                 QuillBlock* output, int32_t reference,
                                 QuillYield yield) {
  const int32_t size = GetBlockSize(source);
  if (size < 1 || mask_keys == nullptr || mask_values == nullptr ||
      mask_count == 0 || (long_count >= 2 && selections == nullptr)) {
    return 0;
  }
  for (int32_t i = 0; i < long_count / 2 * 2; ++i) {
    if (selections[i] > size) return 0;
  }
  UnlockBlock(source);
  *output = nullptr;
  const char* const text = *source;
  std::string out;
  Meter meter(reference, yield);
  int32_t position = 0;
  for (int32_t taken = 0; taken + 2 <= long_count && meter.go_on;) {
    const int32_t start = selections[taken];
    const int32_t end = selections[taken + 1];
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
      write(out,
            utf8_MaskChar(read.packed, mask_keys, mask_values, mask_count, 1));
      meter.tick(taken);
    }
  }
  out.append(text + position, text + size);
  *output = test::block_of(out);
  return 1;
}

}  // namespace quill::naive
