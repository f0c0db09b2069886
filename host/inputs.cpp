#include "host/inputs.h"

#include <CLI/App.hpp>
#include <cstdio>
#include <new>

#include "host/errors.h"
#include "host/progress.h"
#include "host/reading.h"

namespace quill::tool {

void add_files(CLI::App& command, Paths& paths) {
  command.add_option("FILE", paths,
                     "Files to work on; standard input for none or for -");
}

ExitStatus for_each_input(const Paths& paths,
                          const std::function<bool(Input&)>& work) {
  bool matched = false;
  bool trouble = false;
  for (const std::string& path : paths.empty() ? Paths{"-"} : paths) {
    const std::string name = display_name(path);
    progress_subject() = name;
    try {
      Input input{path, name, read_text(path)};
      matched |= work(input);
    } catch (const FileError& error) {
      complain(error.name.empty() ? name : error.name, error.what());
      trouble = true;
    } catch (const std::bad_alloc&) {
      complain(name, "not enough memory");
      trouble = true;
    }
  }
  if (trouble) return kTrouble;
  return matched ? kMatched : kNotMatched;
}

void complain(std::string_view name, std::string_view reason) noexcept {
  std::fprintf(stderr, "quill: %.*s: %.*s\n", static_cast<int>(name.size()),
               name.data(), static_cast<int>(reason.size()), reason.data());
}

}  // namespace quill::tool
