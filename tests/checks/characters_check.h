// One call of a reader or a counter of characters, with the text against a page
// that can't be read.
#pragma once

#include <array>

#include "tests/support/compare.h"
#include "tests/support/input.h"

namespace quill::test {

struct CharacterCall {
  enum Operation {
    kNext,
    kNextValue,
    kContaining,
    kPrevious,
    kCount,
    kCountTask,
    kCountToOffset
  };

  Operation operation = kNext;
  std::string text = {};
  std::int32_t start = 0;  // or the position
  std::int32_t end = length_of(text);
  std::int32_t request = 1;  // characters, for kCountToOffset
  bool has_text = true;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};

// What a reader, one of the first four operations, answers: its result, then
// start, length, character and next, -9 where nothing is written.
using Reading = std::array<std::int32_t, 5>;
Reading read_character(Side side, CharacterCall::Operation reader,
                       const char* text, std::int32_t position,
                       std::int32_t end);

std::string check_characters(Input& in);

}  // namespace quill::test
