// The readers and the mask lookup, one byte and one comparison at a time.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace quill::model {

using Longs = std::vector<std::int32_t>;

struct Read {
  std::int64_t start = 0;
  std::int64_t next = 0;
  std::int32_t packed = 0;
  bool found = false;
};

Read next_character(std::string_view text, std::int64_t position,
                    std::int64_t end);
Read containing_character(std::string_view text, std::int64_t position,
                          std::int64_t end);
Read previous_character(std::string_view text, std::int64_t position,
                        std::int64_t end);

// By bisection, whether or not the keys are in order.
std::int32_t map(const Longs& keys, const Longs& values,
                 std::int32_t character);

}  // namespace quill::model
