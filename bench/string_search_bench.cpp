// Searches for strings of characters: plain, under a folding mask, whole
// words, with open positions, backwards, the n-th, and counted.
#include <algorithm>

#include "bench/support/bench.h"

namespace quill::bench {
namespace {

// The parameters that the searches share.
struct Search {
  std::string name;
  Source source;
  std::string needle;  // '?' is an open position
  bool fold = false;
  bool words = false;

  Longs pattern() const { return characters(fold ? folded(needle) : needle); }
  std::vector<unsigned char> flags() const {
    std::vector<unsigned char> flags;
    for (const std::int32_t character : pattern()) {
      flags.push_back(character == '?' ? 0 : 1);
    }
    return flags;
  }
  bool has_open() const { return needle.find('?') != std::string::npos; }
};

// A search ready to be called: `call` puts the shared parameters in front.
struct Prepared {
  explicit Prepared(const Search& search)
      : pattern(search.pattern()),
        flags(search.flags()),
        open(search.has_open()),
        fold(search.fold),
        words(search.words) {
    fold_mask();
    word_breaks();
  }

  template <class Export, class... Rest>
  auto call(Export function, Span text, Rest... rest) const {
    const FoldMask& mask = fold_mask();
    const Longs& breaks = word_breaks();
    return function(
        text.data, 0, text.end, pattern.data(),
        static_cast<std::int32_t>(pattern.size()),
        open ? flags.data() : nullptr, fold ? mask.keys.data() : nullptr,
        fold ? mask.values.data() : nullptr, fold ? mask.count() : 0,
        words ? breaks.data() : nullptr,
        words ? static_cast<std::int32_t>(breaks.size()) : 0, 1, 0, rest...);
  }

  Longs pattern;
  std::vector<unsigned char> flags;
  bool open, fold, words;
};

// What an open position accepts is one byte here: the texts are ASCII then.
Longs open_matches(std::string_view text, std::string_view needle) {
  Longs found;
  for (std::size_t at = 0; at + needle.size() <= text.size();) {
    const bool same = std::equal(
        needle.begin(), needle.end(),
        text.begin() + static_cast<std::ptrdiff_t>(at),
        [](char wanted, char byte) { return wanted == '?' || wanted == byte; });
    if (same) {
      found.push_back(static_cast<std::int32_t>(at));
      found.push_back(static_cast<std::int32_t>(at + needle.size()));
    }
    at += same ? needle.size() : 1;
  }
  return found;
}

Longs expected(const Search& search, std::string_view bytes) {
  const std::string copy = search.fold ? folded(bytes) : std::string(bytes);
  const std::string needle =
      search.fold ? folded(search.needle) : search.needle;
  const Longs found =
      search.has_open() ? open_matches(copy, needle) : matches(copy, needle);
  return search.words ? whole_words(bytes, found) : found;
}

QuillBlock find_all(const Prepared& search, Span text) {
  QuillBlock list = nullptr;
  std::int32_t longs = 0;
  std::int32_t stop = 0;
  search.call(utf8_FindStrAll, text, &list, &longs, &stop, 0, go_on);
  return list;
}

void add_all(const Search& search) {
  const Prepared prepared(search);
  add_scan(
      "utf8_FindStrAll/" + search.name, search.source,
      [=](Span text) {
        const QuillBlock list = find_all(prepared, text);
        DisposeBlock(list);
        return list;
      },
      [=](Span text) {
        Held list;
        list.block = find_all(prepared, text);
        return list.longs();
      },
      [=](std::string_view bytes) { return expected(search, bytes); });
  add_scan(
      "utf8_CountStrAll/" + search.name, search.source,
      [=](Span text) {
        std::int32_t count = 0;
        std::int32_t stop = 0;
        prepared.call(utf8_CountStrAll, text, &count, &stop, 0, go_on);
        return count;
      },
      [=](std::string_view bytes) {
        return static_cast<std::int32_t>(expected(search, bytes).size() / 2);
      });
}

// The single searches. Absent ones go through the whole text.
void add_single(const Search& search) {
  const Prepared prepared(search);
  const auto first = [=](std::string_view bytes) {
    const Longs found = expected(search, bytes);
    return found.empty() ? -1 : found.front();
  };
  const auto last = [=](std::string_view bytes) {
    const Longs found = expected(search, bytes);
    return found.empty() ? -1 : found[found.size() - 2];
  };
  const auto find = [=](auto function) {
    return [=](Span text) {
      std::int32_t start = 0;
      std::int32_t end = 0;
      return prepared.call(function, text, &start, &end, 0, go_on) == 1 ? start
                                                                        : -1;
    };
  };
  add_scan("utf8_FindStr/" + search.name, search.source, find(utf8_FindStr),
           first);
  add_scan("utf8_FindStrPrev/" + search.name, search.source,
           find(utf8_FindStrPrev), last);
  add_scan(
      "utf8_FindStrNth/100th_" + search.name, search.source,
      [=](Span text) {
        std::int32_t occurrence = 100;
        std::int32_t start = 0;
        std::int32_t end = 0;
        const auto found = prepared.call(utf8_FindStrNth, text, &occurrence,
                                         &start, &end, 0, go_on);
        return found == 1 ? start : -1;
      },
      [=](std::string_view bytes) {
        const Longs found = expected(search, bytes);
        return found.size() < 200 ? -1 : found[198];
      });
}

void add_comparison_cases() {
  const std::string text = "The Captain said nothing";
  const Prepared prepared({"", english(), "captain", true, true});
  const auto compare = [=](auto function) {
    std::int32_t next = 0;
    const bool same =
        function(text.data(), 4, static_cast<std::int32_t>(text.size()),
                 prepared.pattern.data(), 7, nullptr, fold_mask().keys.data(),
                 fold_mask().values.data(), fold_mask().count(), &next) == 1;
    return same ? next : -1;
  };
  add(
      "utf8_CompareSubstring/masked", 1,
      [=] { return compare(utf8_CompareSubstring) == 11; },
      [=] { benchmark::DoNotOptimize(compare(utf8_CompareSubstring)); });
  add(
      "utf8_CompareSelString/masked", 1,
      [=] { return compare(utf8_CompareSelString) == 11; },
      [=] { benchmark::DoNotOptimize(compare(utf8_CompareSelString)); });
  const auto test = [=] {
    unsigned char before = 0;
    unsigned char after = 0;
    utf8_TestBreakChars(text.data(), static_cast<std::int32_t>(text.size()), 4,
                        11, fold_mask().keys.data(), fold_mask().values.data(),
                        fold_mask().count(), word_breaks().data(),
                        static_cast<std::int32_t>(word_breaks().size()), 1,
                        &before, &after);
    return before == 1 && after == 1;
  };
  add("utf8_TestBreakChars/masked", 1, test,
      [=] { benchmark::DoNotOptimize(test()); });
}

}  // namespace

void add_string_search_cases() {
  const Search all_matches[] = {
      {"rare", english(), "Window"},
      {"dense", english(), "e"},
      {"absent", english(), "zebra"},
      {"cjk", chinese(), "\xE4\xB8\xAD\xE5\x9B\xBD"},
      {"fold_rare", english(), "Window", true},
      {"fold_dense", english(), "e", true},
      {"fold_absent", english(), "zebra", true},
      {"fold_words", english(), "the", true, true},
      {"fold_greek", greek(),
       "\xCE\x98\xCE\xAC\xCE\xBB\xCE\xB1\xCF\x83\xCF\x83\xCE\xB1", true},
      {"fold_greek_dense", greek(), "\xCE\xB1", true},
      {"fold_cjk", chinese(), "\xE4\xB8\xAD\xE5\x9B\xBD", true},
      {"open_inside", english(), "W?nd?w"},
      {"open_first", english(), "?indow"},
      {"match_everywhere", all('a'), "aa", true},
  };
  for (const Search& search : all_matches) add_all(search);
  const Search single[] = {
      {"absent", english(), "zebra"},
      {"fold_absent", english(), "zebra", true},
      {"fold_words", english(), "Captain", true, true},
  };
  for (const Search& search : single) add_single(search);
  // No shortcut helps where every position begins a match but for its end.
  Search worst = {"periodic", all('a'), std::string(30, 'a') + "b", true};
  add_all(worst);
  add_comparison_cases();
}

}  // namespace quill::bench
