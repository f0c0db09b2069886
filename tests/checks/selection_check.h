// One operation on selections; text, destination and map against pages that
// can't be read.
#pragma once

#include "tests/support/compare.h"
#include "tests/support/input.h"

namespace quill::test {

struct SelectionCall {
  enum Operation {
    kCopy,
    kCopySuper,
    kCompare,
    kSort,
    kSortKeys,
    kSortAnything,
    kOrder,
    kToMap,
    kFromMap,
    kInvert,
    kExtract
  };

  Operation operation = kSort;
  std::string text = {};
  Longs list = {};
  Mask mask = {};
  std::int32_t mask_count = mask.count();
  std::int32_t size = 0;   // of the destination, the text or an element
  std::int32_t start = 0;  // of the range
  std::int32_t end = 0;
  std::string map = {};
  std::string prefix = {};
  std::string suffix = {};
  enum { kNothing, kText, kPrefix, kSuffix, kList } missing = kNothing;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};

SelectionCall draw_selection_call(Input& in);
std::string check_selection(Input& in);

}  // namespace quill::test
