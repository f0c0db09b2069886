// Edits of a Block at its selections, and replace-all.
#include <algorithm>
#include <memory>

#include "bench/support/bench.h"

namespace quill::bench {
namespace {

// Ten selections of four bytes in a short text, a million in a long one.
Longs many(std::string_view text) {
  return spread(text.size(), text.size() < 1000 ? 10 : 1'000'000, 4);
}

// A tenth of them.
Longs some(std::string_view text) {
  return spread(text.size(), text.size() < 1000 ? 1 : 100'000, 4);
}

Longs none(std::string_view) { return {}; }

void add_insert(const std::string& name,
                const std::function<Longs(std::string_view)>& select,
                const std::string& with) {
  add_edit("InsertStr/" + name, english(),
           {select,
            [=](Held& text, Held& list) {
              InsertStr(&text.block, list.block, with.data(),
                        static_cast<std::int32_t>(with.size()), nullptr);
            },
            [=](std::string_view bytes, const Longs& selections) {
              return spliced(bytes, selections, with);
            }});
}

void add_list_edits() {
  add_edit(
      "DelSel/many", english(),
      {many, [](Held& text, Held& list) { DelSel(&text.block, list.block); },
       [](std::string_view bytes, const Longs& selections) {
         return spliced(bytes, selections, "");
       }});
  add_insert("shrinking_many", many, "ab");
  add_insert("same_length_many", many, "abcd");
  add_insert("growing_many", many, "abcdef");
  add_insert("growing_some", some, "abcdef");
  add_edit("InsertDualStr/many", english(),
           {many,
            [](Held& text, Held& list) {
              InsertDualStr(&text.block, list.block, "<", 1, "/>", 2);
            },
            [](std::string_view bytes, const Longs& selections) {
              std::string result;
              std::size_t copied = 0;
              for (std::size_t i = 0; i < selections.size(); i += 2) {
                const auto start = static_cast<std::size_t>(selections[i]);
                const auto end = static_cast<std::size_t>(selections[i + 1]);
                result.append(bytes.substr(copied, start - copied))
                    .append("<")
                    .append(bytes.substr(start, end - start))
                    .append("/>");
                copied = end;
              }
              return result.append(bytes.substr(copied));
            }});
}

// The first and the last position fixed, those between left as they are.
std::string overlaid(std::string_view bytes, const Longs& selections) {
  std::string result(bytes);
  for (std::size_t i = 0; i < selections.size(); i += 2) {
    result[static_cast<std::size_t>(selections[i])] = '(';
    result[static_cast<std::size_t>(selections[i + 1]) - 1] = ')';
  }
  return result;
}

void add_overlays() {
  static const unsigned char flags[] = {1, 0, 0, 1};
  add_edit("InsertStr/overlay_many", english(),
           {many,
            [](Held& text, Held& list) {
              InsertStr(&text.block, list.block, "(__)", 4, flags);
            },
            overlaid});
  add_edit("InsertMaskedStr/many", english(),
           {many,
            [](Held& text, Held& list) {
              static const Longs characters = {'(', '_', '_', ')'};
              InsertMaskedStr(&text.block, list.block, characters.data(), 4,
                              flags);
            },
            overlaid});
}

// Each entry has the same string, longer than its selection, so that the
// answer is that of a plain insertion.
void add_multiple() {
  struct Table {
    std::vector<QuillReplaceEntry> entries;
    std::vector<QuillReplaceEntry*> pointers;
  };
  const auto table = std::make_shared<Table>();
  add_edit(
      "InsertMultiple/growing_many", english(),
      {many,
       [=](Held& text, Held& list) {
         const auto* longs = reinterpret_cast<const std::int32_t*>(*list.block);
         const auto count =
             static_cast<std::size_t>(GetBlockSize(list.block)) / 8;
         table->entries.resize(count);
         table->pointers.resize(count);
         for (std::size_t i = 0; i < count; ++i) {
           table->entries[i] = {longs[2 * i], longs[2 * i + 1], "abcdef", 6, 3};
           table->pointers[i] = &table->entries[i];
         }
         InsertMultiple(&text.block, table->pointers.data(),
                        static_cast<std::int32_t>(count));
       },
       [](std::string_view bytes, const Longs& selections) {
         return spliced(bytes, selections, "abcdef");
       }});
}

void add_byte_replace(const std::string& name, const std::string& word,
                      const std::string& with) {
  add_edit("ReplaceStrAll/" + name, english(),
           {none,
            [=](Held& text, Held&) {
              std::int32_t to = GetBlockSize(text.block);
              std::int32_t position = 0;
              ReplaceStrAll(text.block, 0, &to, word.data(),
                            static_cast<std::int32_t>(word.size()), 0,
                            with.data(), static_cast<std::int32_t>(with.size()),
                            nullptr, 0, 0, 0, 0, &position, 0, go_on);
            },
            [=](std::string_view bytes, const Longs&) {
              return spliced(bytes, matches(bytes, word), with);
            }});
}

void add_replace(const std::string& name, const Source& source,
                 const std::string& word, const std::string& with, bool fold,
                 bool words) {
  const Longs pattern = characters(fold ? folded(word) : word);
  add_edit("utf8_ReplaceStrAll/" + name, source,
           {none,
            [=](Held& text, Held&) {
              const FoldMask& mask = fold_mask();
              const Longs& breaks = word_breaks();
              std::int32_t to = GetBlockSize(text.block);
              std::int32_t position = 0;
              utf8_ReplaceStrAll(
                  &text.block, 0, &to, pattern.data(),
                  static_cast<std::int32_t>(pattern.size()), nullptr,
                  with.data(), static_cast<std::int32_t>(with.size()), nullptr,
                  fold ? mask.keys.data() : nullptr,
                  fold ? mask.values.data() : nullptr, fold ? mask.count() : 0,
                  words ? breaks.data() : nullptr,
                  words ? static_cast<std::int32_t>(breaks.size()) : 0, 1, 0,
                  &position, 0, go_on);
            },
            [=](std::string_view bytes, const Longs&) {
              Longs found = fold ? matches(folded(bytes), folded(word))
                                 : matches(bytes, word);
              if (words) found = whole_words(bytes, found);
              return spliced(bytes, found, with);
            }});
}

// Runs of two or more spaces and line feeds are rare; single ones are not.
void add_pattern_replace() {
  static const Longs set = {'\n', ' '};
  static const QuillRangePart part = {set.data(), 2, 1, 0, 1};
  static const QuillRangePart* const parts[] = {&part};
  add_edit("utf8_ReplacePatternAll/every_space", english(),
           {none,
            [](Held& text, Held&) {
              std::int32_t to = GetBlockSize(text.block);
              std::int32_t end = 0;
              utf8_ReplacePatternAll(&text.block, 0, &to, parts, 1, "_", 1,
                                     nullptr, &end, 0, go_on);
            },
            [](std::string_view bytes, const Longs&) {
              std::string result;
              for (const char byte : bytes) {
                const bool space = byte == ' ' || byte == '\n';
                if (!space) result += byte;
                if (space && (result.empty() || result.back() != '_')) {
                  result += '_';
                }
              }
              return result;
            }});
}

}  // namespace

void add_edit_cases() {
  add_list_edits();
  add_overlays();
  add_multiple();
  add_byte_replace("rare", "Window", "Door");
  add_byte_replace("dense", "e", "ee");
  add_byte_replace("absent", "zebra", "horse");
  add_replace("rare", english(), "Window", "Door", false, false);
  add_replace("dense", english(), "e", "ee", false, false);
  add_replace("absent", english(), "zebra", "horse", false, false);
  add_replace("fold_rare", english(), "Window", "Door", true, false);
  add_replace("fold_words", english(), "the", "a", true, true);
  add_replace("fold_greek", greek(), "\xCE\xBC\xCE\xB9\xCE\xB1", "\xCE\xB7",
              true, false);
  add_pattern_replace();
}

}  // namespace quill::bench
