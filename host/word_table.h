// A table of words and what replaces them, read from a file of two columns,
// in the library's form.
//
// The library takes the first word of a table that a text's word begins with.
// So the longest words come first: then a word that is the whole of a text's
// word is met before any that is only its beginning.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/block.h"
#include "host/fold_mask.h"
#include "quillcore.h"

namespace quill::tool {

class WordTable {
 public:
  // Throws FileError with the line of the mistake.
  WordTable(const std::string& path, bool ignore_case);

  // Fills a replace table for the words of `text` that stand in the table.
  // Answers how many do.
  std::int64_t look_up(const Block& text, QuillReplaceEntry** entries,
                       std::int32_t count);

 private:
  void add_line(std::string_view line);

  Block text_;  // the replacements point into it
  FoldMask mask_;
  std::vector<std::vector<std::int32_t>> words_;
  std::vector<QuillWordEntry> entries_;
  std::vector<QuillWordEntry*> pointers_;  // into entries_

  // The number of characters of the word that a replacement belongs to.
  std::unordered_map<const char*, std::int32_t> word_lengths_;
};

}  // namespace quill::tool
