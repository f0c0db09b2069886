// quill extract: prints what matched, and nothing else.
#include "host/commands.h"
#include "host/errors.h"
#include "host/progress.h"
#include "host/reading.h"
#include "host/search.h"
#include "host/staging.h"

namespace quill::tool {

namespace {

struct ExtractOptions {
  SearchOptions search;
  std::string prefix;
  std::string suffix = "\n";
  Paths files;

  void add_to(CLI::App& command) {
    search.add_to(command);
    add_files(command, files);
    command.add_option("--prefix", prefix, "Print this before each match");
    command.add_option("--suffix", suffix,
                       "Print this after each match, not a newline");
  }
};

std::int32_t length(const std::string& string) {
  return static_cast<std::int32_t>(string.size());
}

ExitStatus run(const ExtractOptions& options) {
  const auto search = make_search(options.search);
  return for_each_input(options.files, [&](Input& input) {
    const Block list = search->all(input.text);
    const auto longs = static_cast<std::int64_t>(list.longs().size());
    if (longs == 0) return false;

    Block pieces;
    const bool extracted = watched("extracting", longs, [&] {
      return ExtractSelections(input.text.data(), list.get(),
                               options.prefix.data(), length(options.prefix),
                               options.suffix.data(), length(options.suffix),
                               pieces.slot(), 0, Progress::yield) == 1;
    });
    if (!extracted) throw FileError("no room for the result");
    write_to_standard_output(pieces.text());
    return true;
  });
}

}  // namespace

void add_extract(CLI::App& app, ExitStatus& status) {
  add_command(app, status, "extract", "Print the text of every match", run)
      .footer(std::string("Example: quill extract -p '\\d{4}' diary.txt\n\n") +
              kPatternHelp);
}

}  // namespace quill::tool
