// Word tables: replacing every word that a table lists, and the steps of it.
#include <memory>
#include <unordered_map>

#include "bench/support/bench.h"

namespace quill::bench {
namespace {

// `size` words that no text has, and at the end those that the texts have.
class Table {
 public:
  explicit Table(std::size_t size) {
    const char* known[] = {"garden", "captain", "letter", "morning"};
    for (std::size_t i = 0; i + 4 < size; ++i) {
      words_.push_back(characters("q" + std::to_string(i) + "x"));
    }
    for (const char* word : known) words_.push_back(characters(word));
    for (const Longs& word : words_) {
      entries_.push_back(
          {word.data(), static_cast<std::int32_t>(word.size()), "***", 3});
    }
    for (QuillWordEntry& entry : entries_) pointers_.push_back(&entry);
  }
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;

  QuillWordEntry** data() { return pointers_.data(); }
  std::int32_t count() const {
    return static_cast<std::int32_t>(pointers_.size());
  }

 private:
  std::vector<Longs> words_;
  std::vector<QuillWordEntry> entries_;
  std::vector<QuillWordEntry*> pointers_;
};

bool is_letter(char byte) {
  const auto lower = static_cast<unsigned char>(byte | 0x20);
  return lower >= 'a' && lower <= 'z';
}

// Runs of letters, as a list.
Longs words_of(std::string_view text) {
  Longs words;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool inside = is_letter(text[at]);
    if (inside != (words.size() % 2 == 1)) {
      words.push_back(static_cast<std::int32_t>(at));
    }
  }
  if (words.size() % 2 == 1) {
    words.push_back(static_cast<std::int32_t>(text.size()));
  }
  return words;
}

// A word of the table replaces whatever begins with it.
std::string replaced(std::string_view text, const Longs&) {
  Longs hits;
  const Longs words = words_of(text);
  for (std::size_t i = 0; i < words.size(); i += 2) {
    const std::string_view word =
        text.substr(static_cast<std::size_t>(words[i]),
                    static_cast<std::size_t>(words[i + 1] - words[i]));
    for (const std::string_view known :
         {"garden", "captain", "letter", "morning"}) {
      if (folded(word.substr(0, known.size())) == known) {
        hits.insert(hits.end(), {words[i], words[i + 1]});
        break;
      }
    }
  }
  return spliced(text, hits, "***");
}

// How each selection of the list fares: the sum of the kinds.
std::int32_t fill(Span text, QuillBlock list, Table& table) {
  QuillBlock entries = nullptr;
  std::int32_t count = 0;
  iArrayToReplaceTable(list, GetBlockSize(list) / 4, &entries, &count);
  auto** first = reinterpret_cast<QuillReplaceEntry**>(*entries);
  const FoldMask& mask = fold_mask();
  WordTable_FillReplaceTable(
      first, count, table.data(), table.count(), const_cast<char*>(text.data),
      const_cast<std::int32_t*>(mask.keys.data()),
      const_cast<std::int32_t*>(mask.values.data()), mask.count());
  std::int32_t hits = 0;
  for (std::int32_t i = 0; i < count; ++i) hits += first[i]->kind != 0 ? 1 : 0;
  DisposeReplaceTable(entries, count);
  return hits;
}

void add_steps() {
  const auto list = std::make_shared<Held>();
  const auto prepare = [=](Span text) {
    if (list->block == nullptr) {
      const Longs words =
          words_of({text.data, static_cast<std::size_t>(text.end)});
      list->assign(
          {reinterpret_cast<const char*>(words.data()), words.size() * 4});
    }
  };
  for (const std::size_t size : {std::size_t{10}, std::size_t{1000}}) {
    const auto table = std::make_shared<Table>(size);
    add_scan(
        "WordTable_FillReplaceTable/table_of_" + std::to_string(size),
        english(),
        [=](Span text) {
          prepare(text);
          return fill(text, list->block, *table);
        },
        [](std::string_view bytes) {
          const std::string after = replaced(bytes, {});
          return static_cast<std::int32_t>(matches(after, "***").size() / 2);
        },
        {std::size_t{1} << 20});
  }
  const auto make = [=](Span text) {
    prepare(text);
    QuillBlock entries = nullptr;
    std::int32_t count = 0;
    iArrayToReplaceTable(list->block, GetBlockSize(list->block) / 4, &entries,
                         &count);
    DisposeReplaceTable(entries, count);
    return count;
  };
  const auto words = [](std::string_view bytes) {
    return static_cast<std::int32_t>(words_of(bytes).size() / 2);
  };
  add_scan("iArrayToReplaceTable/with_dispose", english(), make, words,
           {std::size_t{1} << 20});
  add_scan("DisposeReplaceTable/with_make", english(), make, words,
           {std::size_t{1} << 20});
}

}  // namespace

void add_word_table_cases() {
  static const Longs letters = [] {
    Longs made;
    for (std::int32_t c = 'A'; c <= 'Z'; ++c) made.push_back(c);
    for (std::int32_t c = 'a'; c <= 'z'; ++c) made.push_back(c);
    return made;
  }();
  static const QuillRangePart part = {letters.data(), 52, 1, 0, 1};
  static const QuillRangePart* const parts[] = {&part};
  for (const std::size_t size :
       {std::size_t{10}, std::size_t{1000}, std::size_t{50'000}}) {
    const auto table = std::make_shared<Table>(size);
    add_edit("utf8_WordTableReplace/table_of_" + std::to_string(size),
             english(),
             {[](std::string_view) { return Longs{}; },
              [=](Held& text, Held&) {
                const FoldMask& mask = fold_mask();
                std::int32_t to = GetBlockSize(text.block);
                std::int32_t end = 0;
                utf8_WordTableReplace(&text.block, 0, &to, parts, 1,
                                      table->data(), table->count(),
                                      mask.keys.data(), mask.values.data(),
                                      mask.count(), &end, 0, go_on);
              },
              replaced});
  }
  add_steps();
}

}  // namespace quill::bench
