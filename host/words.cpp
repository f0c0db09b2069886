// quill words: replaces words by what a table gives for them.
#include "host/commands.h"
#include "host/editing.h"
#include "host/errors.h"
#include "host/progress.h"
#include "host/range_pattern.h"
#include "host/reading.h"
#include "host/word_table.h"

namespace quill::tool {

namespace {

struct WordsOptions {
  std::string table;
  bool ignore_case = false;
  EditOptions edit;

  void add_to(CLI::App& command) {
    command
        .add_option("TABLE", table,
                    "Lines of a word, a tab and its replacement; lines that "
                    "begin with # are skipped")
        ->required();
    command.add_flag("-i,--ignore-case", ignore_case,
                     "Upper and lower case are the same, in all scripts");
    edit.add_to(command, true);
  }
};

// The replace table for the words of one text, released with its entries.
class ReplaceTable {
 public:
  explicit ReplaceTable(const Block& words) {
    if (iArrayToReplaceTable(words.get(),
                             static_cast<std::int32_t>(words.longs().size()),
                             &table_, &count_) != 1)
      throw std::bad_alloc();
  }
  ~ReplaceTable() { DisposeReplaceTable(table_, count_); }
  ReplaceTable(const ReplaceTable&) = delete;
  ReplaceTable& operator=(const ReplaceTable&) = delete;

  QuillReplaceEntry** entries() const {
    return reinterpret_cast<QuillReplaceEntry**>(LockBlock(table_));
  }
  std::int32_t count() const { return count_; }

 private:
  QuillBlock table_ = nullptr;
  std::int32_t count_ = 0;
};

Block find_words(const Block& text) {
  static const RangePattern word = parse_pattern("\\w+", false);
  Block list;
  std::int32_t longs = 0;
  std::int32_t stop = 0;
  const bool found = watched("finding words", text.size(), [&] {
    return utf8_FindPatternAll(text.data(), 0, text.size(), word.parts(),
                               word.part_count(), list.slot(), &longs, &stop, 0,
                               Progress::yield) == 1;
  });
  if (!found) throw std::bad_alloc();
  return list;
}

WordTable read_table(const WordsOptions& options) {
  try {
    return WordTable(options.table, options.ignore_case);
  } catch (const FileError& error) {
    throw FileError(error.what(), display_name(options.table));
  }
}

ExitStatus run(const WordsOptions& options) {
  WordTable table = read_table(options);

  return edit_inputs(options.edit, [&](Block& text) {
    const Block words = find_words(text);
    if (words.size() == 0) return Edited{false, 0};
    const ReplaceTable replacements(words);
    const Edited edited = watched("looking up words", 1, [&] {
      const std::int64_t found =
          table.look_up(text, replacements.entries(), replacements.count());
      return Edited{found > 0, found};
    });
    if (edited.matched && !options.edit.dry_run &&
        InsertMultiple(text.slot(), replacements.entries(),
                       replacements.count()) != 1)
      throw FileError("no room for the result");
    return edited;
  });
}

}  // namespace

void add_words(CLI::App& app, ExitStatus& status) {
  add_command(app, status, "words", "Replace words through a table", run)
      .footer(
          "Only whole words are replaced. Example, in spelling.tsv:\n"
          "  colour<TAB>color\n"
          "  grey<TAB>gray\n"
          "then: quill words spelling.tsv story.txt");
}

}  // namespace quill::tool
