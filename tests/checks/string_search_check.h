// One search for a string of characters, or one comparison or test of break
// characters as a search makes them; the text lies against a page that can't be
// read.
#pragma once

#include "tests/support/compare.h"
#include "tests/support/input.h"

namespace quill::test {

using Flags = std::vector<unsigned char>;

struct StringSearch {
  enum Operation {
    kFind,
    kFindPrevious,
    kFindNth,
    kCount,
    kFindAll,
    kCompare,
    kCompareSelection,
    kTestBreaks,
    // The filter for long texts by itself: the matches at its candidates, which
    // are to be all matches.
    kFilter,
    kFilterBackward
  };
  enum Null { kNone, kText, kPattern, kKeys, kValues, kBreaks };

  Operation operation = kFindAll;
  std::string text = {};
  Longs pattern = {};
  std::optional<Flags> flags = {};
  Mask mask = {};
  std::optional<Longs> breaks = {};
  unsigned char edge = 1;
  unsigned char invert = 0;
  std::int32_t start = 0;  // or where to compare, or where the match starts
  std::int32_t end = length_of(text);
  std::int32_t match_end = 0;
  std::int32_t nth = 1;

  // What contradicts the rest: a null pointer, counts that are not the sizes.
  Null null = kNone;
  std::int32_t pattern_count = length_of(pattern);
  std::int32_t mask_count = mask.count();
  std::int32_t break_count = breaks ? length_of(*breaks) : 0;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;

 private:
  naive::StringCall arguments(const char* at) const;
};

std::string check_string_search(Input& in);

}  // namespace quill::test
