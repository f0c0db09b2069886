// Range patterns and their search, one step at a time: too plain to be wrong.
//
// Each function takes the arguments of the operation it is the model of, a
// recorder in place of the callback, and a vector in place of a Block.
#pragma once

#include <cstdint>
#include <vector>

#include "quillcore.h"
#include "tests/support/yield_recorder.h"

namespace quill::model {

using Longs = std::vector<std::int32_t>;

struct Pattern {
  const QuillRangePart* const* parts;
  std::int32_t count;
};

bool compare_part(const QuillRangePart& part, const char* text,
                  std::int32_t position, std::int32_t end, std::int32_t* next);

bool compare_pattern(const char* text, std::int32_t position, std::int32_t end,
                     const Pattern& pattern, std::int32_t* next);

// What a single search leaves in the host's variables.
struct Found {
  std::int32_t start;
  std::int32_t end;
  std::int32_t next;
  bool operator==(const Found&) const = default;
};

bool find(const char* text, std::int32_t from, std::int32_t to,
          const Pattern& pattern, Found& found, std::int32_t reference,
          test::YieldRecorder& host);

bool find_previous(const char* text, std::int32_t from, std::int32_t to,
                   const Pattern& pattern, Found& found, std::int32_t reference,
                   test::YieldRecorder& host);

// The matches of `pattern`, two longs each; with a `key`, the first match of
// that in each, four longs. `number` counts the matches of `pattern`.
struct All {
  Longs longs;
  std::int32_t number;
  std::int32_t stop;
};

All find_all(const char* text, std::int32_t from, std::int32_t to,
             const Pattern& pattern, const Pattern* key, std::int32_t reference,
             test::YieldRecorder& host);

}  // namespace quill::model
