// One selection widened to breaks, or one list of breaks.
#pragma once

#include "tests/support/compare.h"
#include "tests/support/input.h"

namespace quill::test {

struct BreakCall {
  enum Operation { kWiden, kEveryFew, kAtSpaces };

  // The characters to widen over, or not to.
  struct Class {
    Longs members = {};
    unsigned char flag = 0;

    std::int32_t count() const { return length_of(members); }
  };

  Operation operation = kWiden;
  std::string text = {};
  std::int32_t unit = 1;   // characters or bytes
  std::int32_t start = 0;  // or the lower bound
  std::int32_t end = length_of(text);
  Class backward = {};
  Class forward = {};
  std::int32_t selection_start = 0;
  std::int32_t selection_end = 0;
  bool has_text = true;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};

std::string check_breaks(Input& in);

}  // namespace quill::test
