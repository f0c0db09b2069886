#include "host/word_search.h"

#include "host/break_set.h"
#include "host/packed.h"
#include "host/progress.h"

namespace quill::tool {

namespace {

constexpr unsigned char kEdgesAreBreaks = 1;
constexpr unsigned char kNotInverted = 0;

std::int32_t count_of(const std::vector<std::int32_t>& longs) {
  return static_cast<std::int32_t>(longs.size());
}

std::optional<Match> match_if(std::int32_t found, Match match) {
  return found == 1 ? std::optional(match) : std::nullopt;
}

}  // namespace

WordSearch::WordSearch(std::string_view word, bool ignore_case, bool whole_word)
    : mask_(fold_mask(ignore_case)),
      breaks_(whole_word ? break_characters() : std::vector<std::int32_t>()),
      pattern_(packed_characters(word, mask_)) {}

// Every search export takes the same thirteen parameters, then its outputs.
template <typename Export, typename... Outputs>
std::int32_t WordSearch::call(Export search, const char* what,
                              const Block& text, std::int32_t from,
                              Outputs... outputs) const {
  const std::int32_t size = text.size();
  return watched(what, size, [&] {
    return search(text.data(), from, size, pattern_.data(), count_of(pattern_),
                  nullptr, mask_.keys.data(), mask_.values.data(),
                  mask_.count(), breaks_.data(), count_of(breaks_),
                  kEdgesAreBreaks, kNotInverted, outputs..., 0,
                  Progress::yield);
  });
}

std::optional<Match> WordSearch::first(const Block& text) const {
  return nth(text, 1);
}

std::optional<Match> WordSearch::nth(const Block& text, std::int32_t n) const {
  Match match{};
  const std::int32_t found =
      call(utf8_FindStrNth, "searching", text, 0, &n, &match.start, &match.end);
  return match_if(found, match);
}

std::optional<Match> WordSearch::last(const Block& text) const {
  Match match{};
  if (call(utf8_FindStrPrev, "searching backwards", text, 0, &match.start,
           &match.end) != 1)
    return std::nullopt;
  // The backward search tells only where the match starts.
  const std::int32_t found = call(utf8_FindStr, "searching", text, match.start,
                                  &match.start, &match.end);
  return match_if(found, match);
}

std::int32_t WordSearch::count(const Block& text) const {
  std::int32_t matches = 0;
  std::int32_t stop = 0;
  call(utf8_CountStrAll, "counting", text, 0, &matches, &stop);
  return matches;
}

Block WordSearch::all(const Block& text) const {
  Block list;
  std::int32_t longs = 0;
  std::int32_t stop = 0;
  if (call(utf8_FindStrAll, "searching", text, 0, list.slot(), &longs, &stop) !=
      1)
    throw std::bad_alloc();
  return list;
}

bool WordSearch::replace(Block& text, std::int32_t from,
                         std::string_view replacement) const {
  std::int32_t to = text.size();
  std::int32_t position = 0;
  return watched("replacing", to, [&] {
    return utf8_ReplaceStrAll(text.slot(), from, &to, pattern_.data(),
                              count_of(pattern_), nullptr, replacement.data(),
                              static_cast<std::int32_t>(replacement.size()),
                              nullptr, mask_.keys.data(), mask_.values.data(),
                              mask_.count(), breaks_.data(), count_of(breaks_),
                              kEdgesAreBreaks, kNotInverted, &position, 0,
                              Progress::yield) == 1;
  });
}

}  // namespace quill::tool
