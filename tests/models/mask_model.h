// Sorting masks and rewriting text through them, step by step.
#pragma once

#include <optional>
#include <string>

#include "tests/models/reader_model.h"
#include "tests/support/yield_recorder.h"

namespace quill::model {

// The quicksort that takes the first key as its pivot.
void sort_mask(Longs& keys, Longs& values, std::size_t first,
               std::size_t limit);

struct Masking {
  std::string text;
  Longs keys;
  Longs values;
  std::int32_t reference = 0;
};

// Nothing where the operation fails.
std::optional<std::string> mask_string(const Masking& of, std::int32_t start,
                                       std::int32_t end,
                                       test::YieldRecorder& host);
std::optional<std::string> mask_selections(const Masking& of,
                                           const Longs& selections,
                                           test::YieldRecorder& host);

}  // namespace quill::model
