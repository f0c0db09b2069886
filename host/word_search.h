// Searching for a string of characters, perhaps regardless of case, perhaps
// only where it stands as a word of its own.
#pragma once

#include <string_view>
#include <vector>

#include "host/fold_mask.h"
#include "host/search.h"

namespace quill::tool {

class WordSearch : public Search {
 public:
  WordSearch(std::string_view word, bool ignore_case, bool whole_word);

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
                    std::int32_t from, Outputs... outputs) const;

  FoldMask mask_;
  std::vector<std::int32_t> breaks_;   // empty: anywhere
  std::vector<std::int32_t> pattern_;  // mapped through the mask
};

}  // namespace quill::tool
