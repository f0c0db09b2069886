// One search, whatever is sought: a word, character by character, or a range
// pattern. The subcommands see only this.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/block.h"

namespace CLI {
class App;
}

namespace quill::tool {

struct Match {
  std::int32_t start;
  std::int32_t end;
};

class Search {
 public:
  virtual ~Search() = default;

  virtual std::optional<Match> first(const Block& text) const = 0;
  virtual std::optional<Match> nth(const Block& text, std::int32_t n) const = 0;
  virtual std::optional<Match> last(const Block& text) const = 0;
  virtual std::int32_t count(const Block& text) const = 0;

  // A selection list of all matches; no Block when there are none.
  virtual Block all(const Block& text) const = 0;

  // Replaces every match that starts at or after `from`. False when there is
  // no room for the result.
  virtual bool replace(Block& text, std::int32_t from,
                       std::string_view replacement) const = 0;
};

struct SearchOptions {
  std::string sought;
  bool ignore_case = false;
  bool whole_word = false;
  bool is_pattern = false;

  // Declares WORD and the options of a search.
  void add_to(CLI::App& command);
};

// Throws UsageError.
std::unique_ptr<Search> make_search(const SearchOptions& options);

// How a pattern is written, for the help of the commands that take one.
extern const char* const kPatternHelp;

}  // namespace quill::tool
