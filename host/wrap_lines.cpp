// quill wrap-lines: breaks lines that are too long, after a space where there
// is one.
//
// Each long line is broken by itself: in a range of several lines, a space of
// a line that fits could become the break of the one after it.
#include <algorithm>
#include <limits>

#include "host/commands.h"
#include "host/editing.h"
#include "host/errors.h"
#include "host/progress.h"

namespace quill::tool {

namespace {

struct WrapOptions {
  std::int32_t width = 0;
  EditOptions edit;

  void add_to(CLI::App& command) {
    command
        .add_option("-w,--width", width,
                    "The greatest number of bytes in a line")
        ->required()
        ->check(CLI::Range(1, std::numeric_limits<std::int32_t>::max()));
    edit.add_to(command, false);
  }
};

// Appends the breaks of the line [start, end) to `breaks`.
void break_line(const Block& text, std::int32_t start, std::int32_t end,
                std::int32_t width, std::vector<std::int32_t>& breaks) {
  Block list;
  std::int32_t count = 0;
  if (utf8_ComputeSpaceBreaks(text.get(), start, end, width, list.slot(),
                              &count, 0, Progress::yield) != 1)
    throw std::bad_alloc();
  throw_if_stopped();
  const auto longs = list.longs();
  breaks.insert(breaks.end(), longs.begin(), longs.end());
}

std::vector<std::int32_t> line_breaks(const Block& text, std::int32_t width) {
  const std::string_view contents = text.text();
  std::vector<std::int32_t> breaks;
  std::size_t start = 0;
  while (start < contents.size()) {
    const std::size_t end =
        std::min(contents.find('\n', start), contents.size());
    if (end - start > static_cast<std::size_t>(width)) {
      break_line(text, static_cast<std::int32_t>(start),
                 static_cast<std::int32_t>(end), width, breaks);
    }
    start = end + 1;
  }
  return breaks;
}

Block selection_list(const std::vector<std::int32_t>& longs) {
  const std::size_t bytes = longs.size() * sizeof(std::int32_t);
  if (bytes > std::numeric_limits<std::int32_t>::max())
    throw FileError("too many lines");
  Block list(static_cast<std::int32_t>(bytes));
  std::copy(longs.begin(), longs.end(), list.longs().begin());
  return list;
}

ExitStatus run(const WrapOptions& options) {
  return edit_inputs(options.edit, [&](Block& text) {
    const auto breaks = watched("wrapping", text.size(), [&] {
      return line_breaks(text, options.width);
    });
    if (breaks.empty()) return Edited{};
    const Block list = selection_list(breaks);
    if (InsertStr(text.slot(), list.get(), "\n", 1, nullptr) != 1)
      throw FileError("no room for the result");
    return Edited{};
  });
}

}  // namespace

void add_wrap_lines(CLI::App& app, ExitStatus& status) {
  add_command(app, status, "wrap-lines", "Break long lines", run)
      .footer(
          "A line is broken after its last space that fits, which stays at "
          "its\n"
          "end, or within a word that is longer than the width; characters\n"
          "are never broken. Example: quill wrap-lines --width 72 notes.txt");
}

}  // namespace quill::tool
