// Searching for a range pattern.
#pragma once

#include <string_view>

#include "host/range_pattern.h"
#include "host/search.h"

namespace quill::tool {

class PatternSearch : public Search {
 public:
  PatternSearch(std::string_view notation, bool ignore_case)
      : pattern_(parse_pattern(notation, ignore_case)) {}

  std::optional<Match> first(const Block& text) const override;
  std::optional<Match> nth(const Block& text, std::int32_t n) const override;
  std::optional<Match> last(const Block& text) const override;
  std::int32_t count(const Block& text) const override;
  Block all(const Block& text) const override;
  bool replace(Block& text, std::int32_t from,
               std::string_view replacement) const override;

 private:
  template <typename Export, typename... Outputs>
  std::int32_t call(Export search, const char* what, const Block& text,
                    Outputs... outputs) const;

  RangePattern pattern_;
};

}  // namespace quill::tool
