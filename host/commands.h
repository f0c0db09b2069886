// The subcommands. Each function declares one on the command line; when the
// user has chosen it, it runs at the end of parsing and leaves its exit status.
#pragma once

#include <CLI/App.hpp>
#include <memory>

#include "host/inputs.h"

namespace quill::tool {

void add_replace(CLI::App& app, ExitStatus& status);
void add_find(CLI::App& app, ExitStatus& status);
void add_extract(CLI::App& app, ExitStatus& status);
void add_words(CLI::App& app, ExitStatus& status);
void add_sort(CLI::App& app, ExitStatus& status);
void add_fold(CLI::App& app, ExitStatus& status);
void add_wrap_lines(CLI::App& app, ExitStatus& status);

// Declares a subcommand whose `Options` declare themselves with add_to() and
// are handed to `run`.
template <typename Options>
CLI::App& add_command(CLI::App& app, ExitStatus& status, const char* name,
                      const char* description,
                      ExitStatus (*run)(const Options&)) {
  CLI::App& command = *app.add_subcommand(name, description);
  const auto options = std::make_shared<Options>();
  options->add_to(command);
  command.callback([options, run, &status] { status = run(*options); });
  return command;
}

}  // namespace quill::tool
