#include "search/string_searcher.h"

#include <cstring>

namespace quill {

StringSearcher::StringSearcher(const StringQuery& query)
    : query_(query),
      mask_(query.mask, query.end - query.start),
      has_first_byte_(query.mask.count <= 0 && query.pattern.count >= 1 &&
                      query.pattern.elements != nullptr &&
                      query.pattern.is_fixed(0)) {}

bool StringSearcher::matches_at(Offset position, Match& match) {
  const Comparison compared = compare_characters(
      query_.text, position, query_.end, query_.pattern, mask_);
  if (!compared.equal) return false;
  match = {position, compared.next};
  return is_word(match);
}

bool StringSearcher::is_word(const Match& match) {
  const WordTest& word = query_.word;
  if (!word.set.is_given()) return word.accepts({1, 1});
  return word.accepts(test_sides(query_.text, query_.end, match.start,
                                 match.end, mask_, word.set, word.edge));
}

bool StringSearcher::next_match(Offset from, Offset limit, Match& match) {
  for (Offset p = from; p < limit; ++p) {
    if (is_continuation(query_.text[p])) continue;
    if (matches_at(p, match)) return true;
  }
  return false;
}

bool StringSearcher::previous_match(Offset from, Offset limit, Match& match) {
  for (Offset p = limit; p-- > from;) {
    if (matches_at(p, match)) return true;
  }
  return false;
}

}  // namespace quill
