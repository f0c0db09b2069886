// What the subcommands that change text share: where the result goes, and how
// changes are counted and shown.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "host/inputs.h"

namespace quill::tool {

struct EditOptions {
  Paths files;
  std::string output;
  bool count = false;
  bool dry_run = false;

  // Whether the edit has to find out the number of changes.
  bool counting() const { return count || dry_run; }

  // Declares FILE... and --output; with `counts` also --count and --dry-run.
  void add_to(CLI::App& command, bool counts);
};

// What an edit has done, or under --dry-run would do.
struct Edited {
  bool matched = true;
  std::int64_t changes = 0;  // where they are counted
};

// Edits each input and puts the result in the place of the file, or where
// --output says; standard input goes to standard output. Files change at the
// very end, all together. Throws UsageError.
ExitStatus edit_inputs(const EditOptions& options,
                       const std::function<Edited(Block& text)>& edit);

}  // namespace quill::tool
