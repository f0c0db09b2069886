#include "host/progress.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>

namespace quill::tool {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPatience{500};
constexpr std::chrono::milliseconds kBetweenUpdates{100};

const Clock::time_point started = Clock::now();
Clock::time_point next_update = started + kPatience;
Progress* current = nullptr;
std::atomic<bool> line_shown{false};

}  // namespace

std::string& progress_subject() {
  static std::string subject;
  return subject;
}

void wipe_progress() {
  if (line_shown.exchange(false)) std::fputs("\r\033[K", stderr);
}

Progress::Progress(const char* what, std::int64_t total)
    : what_(what), total_(std::max<std::int64_t>(total, 1)) {
  current = this;
}

Progress::~Progress() {
  current = nullptr;
  wipe_progress();
}

bool Progress::yield(std::int32_t, std::int32_t progress) {
  if (stop_requested()) return false;
  if (current != nullptr && Clock::now() >= next_update)
    current->show(progress);
  return true;
}

void Progress::show(std::int64_t progress) {
  static const bool on_terminal = isatty(STDERR_FILENO) == 1;
  next_update = Clock::now() + kBetweenUpdates;
  if (!on_terminal) return;
  const std::int64_t percent =
      std::clamp<std::int64_t>(progress, 0, total_) * 100 / total_;
  std::fprintf(stderr, "\rquill: %s: %s %3d%%\033[K",
               progress_subject().c_str(), what_, static_cast<int>(percent));
  line_shown = true;
}

}  // namespace quill::tool
