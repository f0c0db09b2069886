#include "host/editing.h"

#include <unistd.h>

#include <CLI/App.hpp>
#include <cinttypes>
#include <cstdio>

#include "host/errors.h"
#include "host/staging.h"

namespace quill::tool {

namespace {

// Counts go to standard output, except where the text itself goes there.
void print_count(const EditOptions& options, const Input& input,
                 const std::string& target, std::int64_t changes) {
  std::FILE* const where = target == "-" && !options.dry_run ? stderr : stdout;
  std::fprintf(where, "%s:%" PRId64 "\n", input.name.c_str(), changes);
}

void put(const std::string& target, const Input& input) {
  if (target == "-") {
    write_to_standard_output(input.text.text());
  } else {
    stage_file(target, input.text.text());
  }
}

}  // namespace

void EditOptions::add_to(CLI::App& command, bool counts) {
  add_files(command, files);
  command.add_option("-o,--output", output,
                     "Write the result to this file, - for standard output, "
                     "and leave FILE alone");
  if (!counts) return;
  command.add_flag("-c,--count", count,
                   "Tell the number of changes in each FILE");
  command.add_flag("-n,--dry-run", dry_run,
                   "Change nothing, only tell the number of changes");
}

ExitStatus edit_inputs(const EditOptions& options,
                       const std::function<Edited(Block& text)>& edit) {
  if (!options.output.empty() && options.files.size() > 1)
    throw UsageError("--output takes the result of one FILE, not of several");

  const ExitStatus status = for_each_input(options.files, [&](Input& input) {
    const Edited edited = edit(input.text);
    const bool in_place = options.output.empty() && input.path != "-";
    const std::string& target =
        options.output.empty() ? input.path : options.output;
    if (options.counting()) print_count(options, input, target, edited.changes);
    // A file in which nothing matched isn't touched.
    const bool keeps = in_place && !edited.matched;
    if (!options.dry_run && !keeps) put(target, input);
    return edited.matched;
  });
  return commit_staged() ? status : kTrouble;
}

}  // namespace quill::tool
