// quill: edits and searches UTF-8 text files with Quillcore.
#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "host/commands.h"
#include "host/errors.h"
#include "host/interrupt.h"
#include "host/staging.h"

namespace quill::tool {
namespace {

constexpr const char* kFooter =
    "Files are UTF-8 text of at most 2,147,483,647 bytes. They are edited in\n"
    "place: the new text is written beside the file and renamed over it at "
    "the\n"
    "end of the run, so an interrupted or failed run leaves every file as it\n"
    "was. Permissions are kept; another hard link to a file keeps the old "
    "text.\n"
    "Without FILE, standard input is filtered to standard output. A FILE that\n"
    "begins with - or [ is written ./-name, ./[name].\n"
    "\n"
    "Ignoring case means simple case folding, one character for one "
    "character:\n"
    "\"STRASSE\" and \"strasse\" are the same, \"straße\" is not, since its "
    "fold\n"
    "expands to several characters.\n"
    "\n"
    "Exit status: 0 when something matched, 1 when nothing did, 2 on errors;\n"
    "sort, fold and wrap-lines answer 0 or 2. Stopped by Ctrl-C: 130.\n"
    "\n"
    "\"quill COMMAND --help\" tells more about a command.";

// Runs what the command line asks for.
int run(int argc, char** argv) {
  CLI::App app("Searches and edits UTF-8 text files.", "quill");
  app.set_version_flag("--version", "quill " QUILL_VERSION);
  app.footer(kFooter);
  app.require_subcommand(1);

  ExitStatus status = kMatched;
  for (const auto add : {add_replace, add_find, add_extract, add_words,
                         add_sort, add_fold, add_wrap_lines})
    add(app, status);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : kTrouble;
  }
  return status;
}

int run_and_report(int argc, char** argv) {
  try {
    watch_for_interrupts();
    return run(argc, argv);
  } catch (const Interrupted& stop) {
    discard_staged();
    return 128 + stop.signal;
  } catch (const FileError& error) {
    complain(error.name, error.what());
  } catch (const std::bad_alloc&) {
    std::fputs("quill: not enough memory\n", stderr);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "quill: %s\n", error.what());
  }
  return kTrouble;
}

}  // namespace
}  // namespace quill::tool

int main(int argc, char** argv) {
  using namespace quill::tool;
  const int status = run_and_report(argc, argv);
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    complain("(standard output)", std::strerror(errno));
    return kTrouble;
  }
  return status;
}
