// A line on the terminal that tells how far a long library call has come.
//
// It is driven by the yield callback, shown only when standard error is a
// terminal and the run has already taken a moment, and wiped when the call
// ends. The same callback stops the call after an interrupt.
#pragma once

#include <cstdint>
#include <string>

#include "host/interrupt.h"

namespace quill::tool {

class Progress {
 public:
  // `what` is being done to what progress_subject() names; `total` is the
  // progress value at the end.
  Progress(const char* what, std::int64_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // The yield callback of the calls made while a Progress lives.
  static bool yield(std::int32_t reference, std::int32_t progress);

 private:
  void show(std::int64_t progress);

  const char* what_;
  std::int64_t total_;
};

// Takes the line off the terminal, from whichever thread.
void wipe_progress();

// The name of the file being worked on.
std::string& progress_subject();

// Makes one library call under a progress line. Throws Interrupted when the
// user has stopped it: its result is then only a part.
template <typename Call>
auto watched(const char* what, std::int64_t total, Call call) {
  const Progress progress(what, total);
  auto result = call();
  throw_if_stopped();
  return result;
}

}  // namespace quill::tool
