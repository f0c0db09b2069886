// One of the three replace-alls, the text in a Block that the host has locked.
#pragma once

#include "tests/support/compare.h"
#include "tests/support/range_parts.h"

namespace quill::test {

struct ReplaceAllCall {
  enum Operation { kBytes, kCharacters, kPattern };

  Operation operation = kBytes;
  std::string text = {};
  std::int32_t from = 0;
  std::int32_t to = length_of(text);
  // What is sought by the one, and by the others.
  std::string bytes = {};
  Longs characters = {};
  RangeParts parts = {};
  // For characters only.
  Mask mask = {};
  Longs breaks = {};
  unsigned char edge = 0;
  unsigned char invert = 0;
  // What is put in.
  std::string string = {};
  std::vector<unsigned char> flags = {};  // none: null
  std::int32_t position = 1;
  bool is_text_null = false;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};

std::string check_replace_all(Input& in);

}  // namespace quill::test
