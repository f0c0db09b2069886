#include "host/interrupt.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "host/errors.h"
#include "host/progress.h"
#include "host/staging.h"

namespace quill::tool {

namespace {

// How long a stopped run may take to end by itself.
constexpr std::chrono::milliseconds kGrace{10};

std::atomic<int> stop_signal{0};

void watch(sigset_t signals) {
  int signal = 0;
  if (sigwait(&signals, &signal) != 0) return;
  stop_signal = signal;
  std::this_thread::sleep_for(kGrace);
  // False when the renames are done or under way: too late to stop.
  if (!discard_staged()) return;
  wipe_progress();
  _exit(128 + signal);
}

}  // namespace

void watch_for_interrupts() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    // Who started us may have had a signal ignored, as nohup does.
    struct sigaction inherited {};
    sigaction(signal, nullptr, &inherited);
    if (inherited.sa_handler != SIG_IGN) sigaddset(&signals, signal);
  }
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  std::thread(watch, signals).detach();
}

bool stop_requested() { return stop_signal != 0; }

void throw_if_stopped() {
  if (stop_requested()) throw Interrupted{stop_signal};
}

}  // namespace quill::tool
