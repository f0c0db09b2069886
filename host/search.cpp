#include "host/search.h"

#include <CLI/App.hpp>

#include "host/errors.h"
#include "host/pattern_search.h"
#include "host/reading.h"
#include "host/word_search.h"

namespace quill::tool {

void SearchOptions::add_to(CLI::App& command) {
  command.add_option("WORD", sought, "What to look for")->required();
  command.add_flag("-i,--ignore-case", ignore_case,
                   "Upper and lower case are the same, in all scripts");
  auto* const word_flag = command.add_flag(
      "-w,--whole-word", whole_word,
      "Only where no letter, mark, number or underscore adjoins");
  command
      .add_flag("-p,--pattern", is_pattern,
                "WORD is a pattern, in the notation below")
      ->excludes(word_flag);
}

std::unique_ptr<Search> make_search(const SearchOptions& options) {
  if (options.sought.empty()) throw UsageError("WORD must not be empty");
  require_utf8_argument("WORD", options.sought);
  if (options.is_pattern)
    return std::make_unique<PatternSearch>(options.sought, options.ignore_case);
  return std::make_unique<WordSearch>(options.sought, options.ignore_case,
                                      options.whole_word);
}

}  // namespace quill::tool
