#include "host/word_table.h"

#include <algorithm>

#include "host/break_set.h"
#include "host/errors.h"
#include "host/packed.h"
#include "host/reading.h"

namespace quill::tool {

namespace {

bool is_word(std::string_view text) {
  const auto bytes =
      icu::StringPiece(text.data(), static_cast<int>(text.size()));
  return !text.empty() &&
         break_set().containsNone(icu::UnicodeString::fromUTF8(bytes));
}

// The line up to its end, which is taken off `rest`.
std::string_view take_line(std::string_view& rest) {
  const std::size_t end = std::min(rest.find('\n'), rest.size());
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

}  // namespace

WordTable::WordTable(const std::string& path, bool ignore_case)
    : text_(read_text(path)), mask_(fold_mask(ignore_case)) {
  std::string_view rest = text_.text();
  for (int number = 1; !rest.empty(); ++number) {
    try {
      add_line(take_line(rest));
    } catch (const FileError& error) {
      throw FileError("line " + std::to_string(number) + ": " + error.what());
    }
  }
  std::stable_sort(entries_.begin(), entries_.end(),
                   [](const QuillWordEntry& a, const QuillWordEntry& b) {
                     return a.word_count > b.word_count;
                   });
  for (QuillWordEntry& entry : entries_) pointers_.push_back(&entry);
}

void WordTable::add_line(std::string_view line) {
  if (line.empty() || line.front() == '#') return;
  const std::size_t tab = line.find('\t');
  if (tab == line.npos) throw FileError("no tab between word and replacement");
  const std::string_view word = line.substr(0, tab);
  const std::string_view replacement = line.substr(tab + 1);
  if (!is_word(word)) throw FileError("the first column is not one word");

  words_.push_back(packed_characters(word, mask_));
  const auto length = static_cast<std::int32_t>(words_.back().size());
  entries_.push_back({words_.back().data(), length, replacement.data(),
                      static_cast<std::int32_t>(replacement.size())});
  word_lengths_[replacement.data()] = length;
}

std::int64_t WordTable::look_up(const Block& text, QuillReplaceEntry** entries,
                                std::int32_t count) {
  WordTable_FillReplaceTable(entries, count, pointers_.data(),
                             static_cast<std::int32_t>(pointers_.size()),
                             text.data(), mask_.keys.data(),
                             mask_.values.data(), mask_.count());
  std::int64_t found = 0;
  for (QuillReplaceEntry* entry :
       std::span(entries, static_cast<std::size_t>(count))) {
    if (entry->kind == 0) continue;
    std::int32_t length = 0;
    utf8_CountCharacters(text.data(), entry->start, entry->end, &length);
    if (length == word_lengths_.at(entry->replacement)) {
      ++found;
      continue;
    }
    entry->kind = 0;  // only the beginning of a longer word
  }
  return found;
}

}  // namespace quill::tool
