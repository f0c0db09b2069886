// One call of FindStr, FindStrAll, FindByte or BytePatternSwap, with text and
// pattern against pages that can't be read.
#pragma once

#include "tests/support/compare.h"
#include "tests/support/input.h"

namespace quill::test {

struct ByteSearch {
  enum Operation { kFind, kFindAll, kFindByte, kSwap };

  Operation operation = kFind;
  std::string text = {};
  std::int32_t start = 0;
  std::int32_t end = length_of(text);
  std::string pattern = {};
  std::string replacement = {};
  // Where in the text the swap's two strings lie; -1: elsewhere.
  std::int32_t pattern_at = -1;
  std::int32_t replacement_at = -1;
  // What FindStr and FindStrAll refuse.
  bool has_text = true;
  bool has_pattern = true;
  std::int32_t length = length_of(pattern);

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};

std::string check_byte_search(Input& in);

}  // namespace quill::test
