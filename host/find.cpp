// quill find: lists matches with their line and column.
#include <unistd.h>

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "host/commands.h"
#include "host/listing.h"
#include "host/search.h"

namespace quill::tool {

namespace {

struct FindOptions {
  SearchOptions search;
  Paths files;
  std::int32_t nth = 0;
  bool last = false;
  bool count = false;
  std::string color = "auto";

  void add_to(CLI::App& command) {
    search.add_to(command);
    add_files(command, files);
    auto* const nth_option =
        command.add_option("--nth", nth, "Only the match with this number")
            ->check(CLI::Range(1, std::numeric_limits<std::int32_t>::max()));
    auto* const last_flag =
        command.add_flag("--last", last, "Only the last match")
            ->excludes(nth_option);
    command.add_flag("-c,--count", count, "Only tell the number of matches")
        ->excludes(nth_option)
        ->excludes(last_flag);
    command
        .add_option("--color,--colour", color,
                    "always, never, or auto: on a terminal")
        ->check(CLI::IsMember({"auto", "always", "never"}));
  }

  bool colored() const {
    if (color != "auto") return color == "always";
    return isatty(STDOUT_FILENO) == 1 && std::getenv("NO_COLOR") == nullptr;
  }
};

// Lists the match, if there is one.
bool list_one(Listing& listing, const std::optional<Match>& match) {
  if (match) listing.print(*match);
  return match.has_value();
}

bool list_all(Listing& listing, const Block& list) {
  const auto longs = list.longs();
  for (std::size_t i = 0; i + 1 < longs.size(); i += 2)
    listing.print({longs[i], longs[i + 1]});
  return !longs.empty();
}

ExitStatus run(const FindOptions& options) {
  const auto search = make_search(options.search);
  const bool colored = options.colored();

  return for_each_input(options.files, [&](const Input& input) {
    const std::string name = options.files.size() > 1 ? input.name : "";
    if (options.count) {
      const std::int32_t count = search->count(input.text);
      std::printf("%s%s%" PRId32 "\n", name.c_str(), name.empty() ? "" : ":",
                  count);
      return count > 0;
    }
    Listing listing(name, input.text.text(), colored);
    if (options.nth > 0)
      return list_one(listing, search->nth(input.text, options.nth));
    if (options.last) return list_one(listing, search->last(input.text));
    return list_all(listing, search->all(input.text));
  });
}

}  // namespace

void add_find(CLI::App& app, ExitStatus& status) {
  add_command(app, status, "find", "List matches with line and column", run)
      .footer(std::string("Columns are counted in characters. "
                          "Example: quill find -i -w word *.txt\n\n") +
              kPatternHelp);
}

}  // namespace quill::tool
