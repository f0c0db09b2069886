// One lookup in a mask, one sort of a mask, or one text rewritten through one.
#pragma once

#include "tests/support/compare.h"
#include "tests/support/input.h"

namespace quill::test {

struct MaskCall {
  enum Operation {
    kLookUp,    // each of `longs` in the mask, by every export that does
    kUseTable,  // the same by the table that long texts are mapped with
    kSort,
    kToArray,
    kRewrite,
    kRewriteSelections
  };

  Operation operation = kLookUp;
  std::string text = {};
  Mask mask = {};
  std::int32_t mask_count = mask.count();
  Longs longs = {};        // selections, or characters
  std::int32_t start = 0;  // in the text, or for kSort in the mask
  std::int32_t end = length_of(text);
  bool has_text = true;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};

std::string check_masks(Input& in);

}  // namespace quill::test
