// One comparison with a range pattern or one search for it, the text against a
// page that can't be read.
#pragma once

#include "tests/support/compare.h"
#include "tests/support/range_parts.h"

namespace quill::test {

struct PatternCall {
  enum Operation {
    kComparePart,
    kCompare,
    kFind,
    kFindPrevious,
    kCount,
    kFindAll,
    kFindKeys,
    kSort
  };

  Operation operation = kFindAll;
  std::string text = {};
  std::int32_t from = 0;
  std::int32_t to = length_of(text);
  RangeParts parts = {};
  RangeParts key = {};
  bool is_text_null = false;
  std::int32_t part_count = length_of(parts);

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};

std::string check_pattern(Input& in);

}  // namespace quill::test
