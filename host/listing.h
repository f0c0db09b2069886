// Listing matches for a reader: "NAME:LINE:COLUMN:" and the line, with the
// match coloured. Of a very long line only the surroundings of the match are
// shown, so that the cost doesn't depend on the length of lines.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/search.h"

namespace quill::tool {

// Walks forward through a text and knows the line and the column, both
// counted from 1, the column in characters.
class LineCursor {
 public:
  explicit LineCursor(std::string_view text) : text_(text) {}

  // `offset` is not before the last one.
  void move_to(std::int32_t offset);

  std::int64_t line() const { return line_; }
  std::int64_t column() const { return column_; }
  std::int32_t line_start() const { return line_start_; }

 private:
  std::string_view text_;
  std::int32_t position_ = 0;
  std::int32_t line_start_ = 0;
  std::int64_t line_ = 1;
  std::int64_t column_ = 1;
};

class Listing {
 public:
  // An empty `name` is not printed.
  Listing(const std::string& name, std::string_view text, bool colored);

  // Prints one match, which does not start before the one printed last.
  void print(Match match);

 private:
  std::string_view between(std::int32_t start, std::int32_t end) const;
  void put(std::string_view text, const char* color = nullptr) const;

  std::string prefix_;
  std::string_view text_;
  LineCursor cursor_;
  bool colored_;
};

}  // namespace quill::tool
