// Range patterns: one position, the next match, the previous, all, counted,
// and keys inside outer matches.
#include <algorithm>
#include <memory>

#include "bench/support/bench.h"

namespace quill::bench {
namespace {

// A part as a case writes it: members, how many, and whether they are meant.
struct Part {
  std::string members;
  std::int32_t minimum = 1;
  std::int32_t maximum = 0;
  bool include = true;

  bool accepts(char byte) const {
    return (members.find(byte) != std::string::npos) == include;
  }
};

// A pattern as the exports take it.
class Pattern {
 public:
  explicit Pattern(std::vector<Part> parts) : parts_(std::move(parts)) {
    for (const Part& part : parts_) {
      sets_.push_back(characters(part.members));
      std::sort(sets_.back().begin(), sets_.back().end());
    }
    for (std::size_t i = 0; i < parts_.size(); ++i) {
      records_.push_back({sets_[i].data(),
                          static_cast<std::int32_t>(sets_[i].size()),
                          parts_[i].minimum, parts_[i].maximum,
                          static_cast<unsigned char>(parts_[i].include)});
    }
    for (const QuillRangePart& record : records_) pointers_.push_back(&record);
  }
  Pattern(const Pattern&) = delete;
  Pattern& operator=(const Pattern&) = delete;

  const QuillRangePart* const* data() const { return pointers_.data(); }
  std::int32_t count() const {
    return static_cast<std::int32_t>(pointers_.size());
  }

  // Where a match that starts at `at` ends, in ASCII text; nothing when there
  // is none. A part takes all that it can, and gives nothing back.
  std::size_t match_end(std::string_view text, std::size_t at) const {
    for (const Part& part : parts_) {
      std::int32_t taken = 0;
      while (at < text.size() && part.accepts(text[at])) ++at, ++taken;
      if (taken < part.minimum) return std::string_view::npos;
      if (part.maximum != 0 && taken > part.maximum) {
        return std::string_view::npos;
      }
    }
    return at;
  }

 private:
  std::vector<Part> parts_;
  std::vector<Longs> sets_;
  std::vector<QuillRangePart> records_;
  std::vector<const QuillRangePart*> pointers_;
};

using Shared = std::shared_ptr<const Pattern>;

Shared pattern(std::vector<Part> parts) {
  return std::make_shared<const Pattern>(std::move(parts));
}

const std::string& letters() {
  static const std::string letters = [] {
    std::string made;
    for (char c = 'a'; c <= 'z'; ++c) made += c;
    for (char c = 'A'; c <= 'Z'; ++c) made += c;
    return made;
  }();
  return letters;
}

Longs expected_matches(const Pattern& pattern, std::string_view text) {
  Longs found;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = pattern.match_end(text, at);
    if (end == std::string_view::npos) {
      ++at;
      continue;
    }
    found.push_back(static_cast<std::int32_t>(at));
    found.push_back(static_cast<std::int32_t>(end));
    at = end;
  }
  return found;
}

QuillBlock find_all(Span text, const Pattern& pattern) {
  QuillBlock list = nullptr;
  std::int32_t longs = 0;
  std::int32_t stop = 0;
  utf8_FindPatternAll(text.data, 0, text.end, pattern.data(), pattern.count(),
                      &list, &longs, &stop, 0, go_on);
  return list;
}

void add_all(const std::string& name, const Shared& pattern,
             const Source& source = english()) {
  add_scan(
      "utf8_FindPatternAll/" + name, source,
      [=](Span text) {
        const QuillBlock list = find_all(text, *pattern);
        DisposeBlock(list);
        return list;
      },
      [=](Span text) {
        Held list;
        list.block = find_all(text, *pattern);
        return list.longs();
      },
      [=](std::string_view bytes) {
        return expected_matches(*pattern, bytes);
      });
  add_scan(
      "utf8_CountPatternAll/" + name, source,
      [=](Span text) {
        std::int32_t number = 0;
        std::int32_t stop = 0;
        utf8_CountPatternAll(text.data, 0, text.end, pattern->data(),
                             pattern->count(), &number, &stop, 0, go_on);
        return number;
      },
      [=](std::string_view bytes) {
        return static_cast<std::int32_t>(
            expected_matches(*pattern, bytes).size() / 2);
      });
}

// A single search for what is not there goes through the whole text.
void add_absent(const Shared& pattern) {
  const auto search = [=](auto function) {
    return [=](Span text) {
      std::int32_t start = 0;
      std::int32_t end = 0;
      std::int32_t next = 0;
      return function(text.data, 0, text.end, pattern->data(), pattern->count(),
                      &start, &end, &next, 0, go_on) == 0;
    };
  };
  const auto absent = [=](std::string_view bytes) {
    return expected_matches(*pattern, bytes).empty();
  };
  add_scan("utf8_FindPattern/absent", english(), search(utf8_FindPattern),
           absent);
  add_scan("utf8_FindPatternPrev/absent", english(),
           search(utf8_FindPatternPrev), absent);
}

QuillBlock find_keys(Span text, const Pattern& outer, const Pattern& key) {
  QuillBlock list = nullptr;
  std::int32_t longs = 0;
  std::int32_t stop = 0;
  utf8_FindKeyPatternAll(text.data, 0, text.end, outer.data(), outer.count(),
                         key.data(), key.count(), &list, &longs, &stop, 0,
                         go_on);
  return list;
}

void add_keys(const Shared& outer, const Shared& key) {
  add_scan(
      "utf8_FindKeyPatternAll/first_capital_of_a_line", english(),
      [=](Span text) {
        const QuillBlock list = find_keys(text, *outer, *key);
        DisposeBlock(list);
        return list;
      },
      [=](Span text) {
        Held list;
        list.block = find_keys(text, *outer, *key);
        return list.longs();
      },
      [=](std::string_view bytes) {
        Longs records;
        const Longs found = expected_matches(*outer, bytes);
        for (std::size_t i = 0; i < found.size(); i += 2) {
          const std::string_view inside =
              bytes.substr(0, static_cast<std::size_t>(found[i + 1]));
          std::size_t at = static_cast<std::size_t>(found[i]);
          std::size_t end = std::string_view::npos;
          while (at < inside.size() &&
                 (end = key->match_end(inside, at)) == std::string_view::npos) {
            ++at;
          }
          if (end == std::string_view::npos) continue;
          records.insert(records.end(), {static_cast<std::int32_t>(at),
                                         static_cast<std::int32_t>(end),
                                         found[i], found[i + 1]});
        }
        return records;
      });
}

void add_single_position(const Shared& word) {
  static constexpr std::string_view kText = "captain, ";
  const auto part = [=] {
    std::int32_t next = 0;
    utf8_CompareRangePart(word->data()[0], kText.data(), 0, 9, &next);
    return next;
  };
  const auto whole = [=] {
    std::int32_t next = 0;
    utf8_CompareRangePattern(kText.data(), 0, 9, word->data(), word->count(),
                             &next);
    return next;
  };
  add(
      "utf8_CompareRangePart/word", 1, [=] { return part() == 7; },
      [=] { benchmark::DoNotOptimize(part()); });
  add(
      "utf8_CompareRangePattern/word", 1, [=] { return whole() == 7; },
      [=] { benchmark::DoNotOptimize(whole()); });
}

// The list is disposed of inside: only that the text stays is to be seen.
void add_sort_pattern(const Shared& word) {
  add_edit("utf8_SortPattern/words", english(),
           {[](std::string_view) { return Longs{}; },
            [=](Held& text, Held&) {
              std::int32_t stop = 0;
              utf8_SortPattern(&text.block, 0, GetBlockSize(text.block),
                               word->data(), word->count(), &stop, 0, go_on);
            },
            [](std::string_view bytes, const Longs&) {
              return std::string(bytes);
            }});
}

}  // namespace

void add_pattern_cases() {
  const Shared words = pattern({{letters()}});
  const Shared absent = pattern({{"#", 1, 1}, {letters()}});
  add_all("words", words);
  add_all("long_words", pattern({{letters(), 7, 0}}));
  add_all("rare_first_character", pattern({{"W", 1, 1}, {letters()}}));
  add_all("letters_then_stop", pattern({{letters()}, {".", 1, 1}}));
  add_all("absent", absent);
  add_all("open_run", pattern({{"a"}, {"b", 1, 1}}), all('b'));
  add_absent(absent);
  add_keys(pattern({{"\n", 1, 0, false}}),
           pattern({{"WIO", 1, 1}, {letters()}}));
  add_single_position(words);
  add_sort_pattern(words);
}

}  // namespace quill::bench
