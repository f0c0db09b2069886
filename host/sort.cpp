// quill sort: orders the lines of a text by the code points of their
// characters.
//
// Every line becomes a record of a key selection list: the key is the line
// without its newline, by which it is sorted, and goes with the whole line,
// which is copied.
#include "host/commands.h"
#include "host/editing.h"
#include "host/errors.h"
#include "host/fold_mask.h"
#include "host/progress.h"
#include "host/range_pattern.h"

namespace quill::tool {

namespace {

struct SortOptions {
  bool ignore_case = false;
  EditOptions edit;

  void add_to(CLI::App& command) {
    command.add_flag("-i,--ignore-case", ignore_case,
                     "Compare lines with their case folded");
    edit.add_to(command, false);
  }
};

void end_last_line(Block& text) {
  const std::int32_t size = text.size();
  if (text.text().back() == '\n') return;
  if (size == std::numeric_limits<std::int32_t>::max())
    throw FileError("no room for the last newline");
  text.resize(size + 1);
  text.data()[size] = '\n';
}

Block find_lines(const Block& text) {
  static const RangePattern line = parse_pattern("[^\\n]*\\n", false);
  static const RangePattern key = parse_pattern("[^\\n]*", false);
  Block records;
  std::int32_t longs = 0;
  std::int32_t stop = 0;
  const bool found = watched("finding lines", text.size(), [&] {
    return utf8_FindKeyPatternAll(text.data(), 0, text.size(), line.parts(),
                                  line.part_count(), key.parts(),
                                  key.part_count(), records.slot(), &longs,
                                  &stop, 0, Progress::yield) == 1;
  });
  if (!found) throw std::bad_alloc();
  return records;
}

Block copy_lines(const Block& text, const Block& records) {
  const std::int32_t size = text.size();
  Block sorted(size);
  std::int32_t copied = 0;
  watched("copying", size, [&] {
    return CopySuperSelectionsTo(
        text.data(), sorted.data(), size, &copied, records.longs().data(),
        static_cast<std::int32_t>(records.longs().size() / 4), 0,
        Progress::yield);
  });
  // A list that stopped growing for lack of memory would lose lines.
  if (copied != size) throw FileError("too many lines");
  return sorted;
}

ExitStatus run(const SortOptions& options) {
  const FoldMask mask = fold_mask(options.ignore_case);
  return edit_inputs(options.edit, [&](Block& text) {
    if (text.size() == 0) return Edited{};
    end_last_line(text);
    const Block records = find_lines(text);
    watched("sorting", 1, [&] {
      return utf8_SortKeySelections(text.data(), records.longs().data(),
                                    static_cast<std::uint32_t>(records.size()),
                                    mask.keys.data(), mask.values.data(),
                                    mask.count());
    });
    text = copy_lines(text, records);
    return Edited{};
  });
}

}  // namespace

void add_sort(CLI::App& app, ExitStatus& status) {
  add_command(app, status, "sort", "Sort lines by code point", run);
}

}  // namespace quill::tool
