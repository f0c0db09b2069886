// quill replace: every match becomes another text.
#include "host/commands.h"
#include "host/editing.h"
#include "host/errors.h"
#include "host/reading.h"
#include "host/search.h"

namespace quill::tool {

namespace {

struct ReplaceOptions {
  SearchOptions search;
  std::string replacement;
  EditOptions edit;

  void add_to(CLI::App& command) {
    search.add_to(command);
    command.add_option("REPLACEMENT", replacement, "What to put in its place")
        ->required();
    edit.add_to(command, true);
  }
};

ExitStatus run(const ReplaceOptions& options) {
  const auto search = make_search(options.search);
  require_utf8_argument("REPLACEMENT", options.replacement);

  return edit_inputs(options.edit, [&](Block& text) {
    const std::optional<Match> first = search->first(text);
    if (!first) return Edited{false, 0};
    Edited edited;
    if (options.edit.counting()) edited.changes = search->count(text);
    if (!options.edit.dry_run &&
        !search->replace(text, first->start, options.replacement))
      throw FileError("no room for the result");
    return edited;
  });
}

}  // namespace

void add_replace(CLI::App& app, ExitStatus& status) {
  add_command(app, status, "replace", "Replace a word or pattern", run)
      .footer(std::string("Example: quill replace -w cat dog story.txt\n\n") +
              kPatternHelp);
}

}  // namespace quill::tool
