#include "tests/models/word_table_model.h"

#include <utility>

namespace quill::model {
namespace {

bool begins_with(const WordTable& table, const Word& word,
                 std::string_view text, std::int64_t position,
                 std::int32_t end) {
  for (const std::int32_t character : word.characters) {
    const Read read = next_character(text, position, end);
    if (!read.found ||
        map(table.mask_keys, table.mask_values, read.packed) != character) {
      return false;
    }
    position = read.next;
  }
  return true;
}

}  // namespace

const Word* find_word(const WordTable& table, std::string_view text,
                      std::int32_t start, std::int32_t end) {
  for (const Word& word : table.words) {
    if (begins_with(table, word, text, start, end)) return &word;
  }
  return nullptr;
}

std::optional<std::string> replace_words(const WordTable& table,
                                         const std::string& text,
                                         std::int32_t from, std::int32_t to,
                                         const Pattern& pattern,
                                         std::int32_t reference,
                                         test::YieldRecorder& host) {
  if (std::cmp_greater(to, text.size())) return std::nullopt;
  const All found =
      find_all(text.data(), from, to, pattern, nullptr, reference, host);
  std::string out;
  std::size_t copied = 0;
  for (std::size_t i = 0; i < found.longs.size(); i += 2) {
    const Word* word =
        find_word(table, text, found.longs[i], found.longs[i + 1]);
    if (word == nullptr) continue;
    const auto start = static_cast<std::size_t>(found.longs[i]);
    out += text.substr(copied, start - copied) + word->replacement;
    copied = static_cast<std::size_t>(found.longs[i + 1]);
  }
  return out + text.substr(copied);
}

}  // namespace quill::model
