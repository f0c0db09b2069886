// What can go wrong in a run, as exceptions. Nothing of this reaches the
// library: it reports through results, which the callers here turn into these.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace quill::tool {

// One input or output can't be dealt with; the others still run. Where no file
// is named, it is the input being worked on.
struct FileError : std::runtime_error {
  explicit FileError(const std::string& reason, std::string file = {})
      : std::runtime_error(reason), name(std::move(file)) {}
  std::string name;
};

// The command line makes no sense: nothing runs.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The user has asked the run to stop.
struct Interrupted {
  int signal;
};

}  // namespace quill::tool
