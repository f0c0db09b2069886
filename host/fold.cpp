// quill fold: every character becomes its simple case folding.
#include "host/commands.h"
#include "host/editing.h"
#include "host/errors.h"
#include "host/fold_mask.h"
#include "host/progress.h"

namespace quill::tool {

namespace {

struct FoldOptions {
  EditOptions edit;

  void add_to(CLI::App& command) { edit.add_to(command, false); }
};

ExitStatus run(const FoldOptions& options) {
  const FoldMask mask = fold_mask(true);
  return edit_inputs(options.edit, [&](Block& text) {
    const std::int32_t size = text.size();
    if (size == 0) return Edited{};
    Block folded;
    const bool done = watched("folding", size, [&] {
      return utf8_MaskString(text.get(), 0, size, mask.keys.data(),
                             mask.values.data(), mask.count(), folded.slot(), 0,
                             0, Progress::yield) == 1;
    });
    if (!done) throw FileError("no room for the result");
    text = std::move(folded);
    return Edited{};
  });
}

}  // namespace

void add_fold(CLI::App& app, ExitStatus& status) {
  add_command(app, status, "fold", "Fold case: capitals become small", run);
}

}  // namespace quill::tool
