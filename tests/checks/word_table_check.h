// A replace table filled through a word table, or the words of a text replaced.
#pragma once

#include "tests/support/compare.h"
#include "tests/support/range_parts.h"

namespace quill::test {

struct WordTableCall {
  struct Word {
    Longs characters;
    std::string replacement;
  };

  bool only_fills = false;
  std::vector<Word> words = {};
  Mask mask = {};
  std::string text = {};
  Longs selections = {};  // of the replace table
  std::int32_t from = 0;
  std::int32_t to = length_of(text);
  RangeParts parts = {};
  int unusable = -1;  // the word whose replacement has a negative length
  bool is_text_null = false;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;

 private:
  void fill(Side side, std::vector<QuillWordEntry*>& table, Outcome& o) const;
  void replace(Side side, const std::vector<QuillWordEntry*>& table,
               QuillYield yield, Outcome& o) const;
};

WordTableCall draw_word_table_call(Input& in);
std::string check_word_table(Input& in);

}  // namespace quill::test
