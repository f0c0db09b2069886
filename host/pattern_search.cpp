#include "host/pattern_search.h"

#include <new>

#include "host/progress.h"

namespace quill::tool {

namespace {

// The match at an index of a list, if the list reaches so far.
std::optional<Match> match_at(const Block& list, std::size_t index) {
  const auto longs = list.longs();
  if (index >= longs.size()) return std::nullopt;
  return Match{longs[index], longs[index + 1]};
}

}  // namespace

// Every search export takes the text, the range and the pattern first.
template <typename Export, typename... Outputs>
std::int32_t PatternSearch::call(Export search, const char* what,
                                 const Block& text, Outputs... outputs) const {
  const std::int32_t size = text.size();
  return watched(what, size, [&] {
    return search(text.data(), 0, size, pattern_.parts(), pattern_.part_count(),
                  outputs..., 0, Progress::yield);
  });
}

std::optional<Match> PatternSearch::first(const Block& text) const {
  Match match{};
  std::int32_t next = 0;
  if (call(utf8_FindPattern, "searching", text, &match.start, &match.end,
           &next) != 1)
    return std::nullopt;
  return match;
}

// The n-th and the last match are those of the list of all: the library has no
// search for the n-th match of a pattern, and its backward search finds the
// match that starts last, which for a run of letters is the last letter.
std::optional<Match> PatternSearch::nth(const Block& text,
                                        std::int32_t n) const {
  const Block list = all(text);
  return match_at(list, 2 * (static_cast<std::size_t>(n) - 1));
}

std::optional<Match> PatternSearch::last(const Block& text) const {
  const Block list = all(text);
  return match_at(list, list.longs().size() - 2);
}

std::int32_t PatternSearch::count(const Block& text) const {
  std::int32_t matches = 0;
  std::int32_t stop = 0;
  call(utf8_CountPatternAll, "counting", text, &matches, &stop);
  return matches;
}

Block PatternSearch::all(const Block& text) const {
  Block list;
  std::int32_t longs = 0;
  std::int32_t stop = 0;
  if (call(utf8_FindPatternAll, "searching", text, list.slot(), &longs,
           &stop) != 1)
    throw std::bad_alloc();
  return list;
}

bool PatternSearch::replace(Block& text, std::int32_t from,
                            std::string_view replacement) const {
  std::int32_t to = text.size();
  std::int32_t new_end = 0;
  return watched("replacing", to, [&] {
    return utf8_ReplacePatternAll(text.slot(), from, &to, pattern_.parts(),
                                  pattern_.part_count(), replacement.data(),
                                  static_cast<std::int32_t>(replacement.size()),
                                  nullptr, &new_end, 0, Progress::yield) == 1;
  });
}

}  // namespace quill::tool
