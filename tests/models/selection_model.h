// What the operations on selection lists do, written down as plainly as it can
// be: one byte, one bit, one element at a time.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/yield_recorder.h"

namespace quill::test::model {

using Longs = std::vector<std::int32_t>;

struct Mask {
  Longs keys;
  Longs values;
  std::int32_t count = 0;
};

struct Copied {
  std::int32_t result;
  std::int32_t copied;
  std::string bytes;

  bool operator==(const Copied&) const = default;
};

// `stride` longs an element, of which the pair at `pair` is copied. `before` is
// what the host's variable holds.
Copied copy(std::string_view text, std::int32_t capacity, std::int32_t before,
            const Longs& list, std::int32_t count, std::size_t stride,
            std::size_t pair, std::int32_t reference, YieldRecorder& host);

int compare(std::string_view text, const std::int32_t* a, const std::int32_t* b,
            const Mask& mask);

// The heap sort's steps on elements 1 to count.
void heap_sort(std::uint32_t count,
               const std::function<int(std::uint64_t, std::uint64_t)>& compare,
               const std::function<void(std::uint64_t, std::uint64_t)>& swap);

// `stride` longs an element; what is left over stays.
Longs sort(std::string_view text, Longs list, std::size_t stride,
           const Mask& mask);

Longs order(const Longs& list, std::int32_t text_length);

// The bit set as one bool a bit.
using Bits = std::vector<bool>;
Bits add_to_map(Bits map, std::int32_t text_length, const Longs& list);
Longs list_of_map(const Bits& map, std::int32_t text_length);

// Of a canonical list within the range.
Longs invert(const Longs& list, std::int32_t start, std::int32_t end);

struct Extracted {
  std::int32_t result;
  bool handed_over;
  std::string bytes;

  bool operator==(const Extracted&) const = default;
};

Extracted extract(std::string_view text, const Longs& list,
                  std::string_view prefix, std::string_view suffix,
                  std::int32_t reference, YieldRecorder& host);

}  // namespace quill::test::model
