// Texts, masks and lists that the benchmarks work on: made once, from a fixed
// seed, the same on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "quillcore.h"

namespace quill::bench {

using Longs = std::vector<std::int32_t>;

inline constexpr std::size_t kShort = 100;
inline constexpr std::size_t kLong = std::size_t{64} << 20;

// Sentences of the words of a language, cut at `size` bytes or up to three
// before, where a character ends.
enum class Language { kEnglish, kGreek, kChinese };
const std::string& text(Language language, std::size_t size);

// `size` times the same byte.
const std::string& repeated(char byte, std::size_t size);

// Packed characters of a text.
Longs characters(std::string_view utf8);

// Makes A to Z, and the capitals of Latin-1, Greek and Cyrillic, equal to
// their small letters.
struct FoldMask {
  Longs keys;
  Longs values;
  std::int32_t count() const { return static_cast<std::int32_t>(keys.size()); }
};
const FoldMask& fold_mask();

// The same, done by hand. It never changes a length.
std::string folded(std::string_view text);

// What delimits words in English.
const Longs& word_breaks();

// Matches of `needle`, left to right, none overlapping, as a list.
Longs matches(std::string_view text, std::string_view needle);

// Those of them with no letter, digit or underscore on either side.
Longs whole_words(std::string_view text, const Longs& found);

// `count` selections of `length` bytes, evenly spread.
Longs spread(std::size_t size, std::size_t count, std::size_t length);

// Every line without its line feed.
Longs lines(std::string_view text);

// The text with `with` in place of every selection.
std::string spliced(std::string_view text, const Longs& selections,
                    std::string_view with);

bool go_on(std::int32_t reference, std::int32_t progress);

}  // namespace quill::bench
