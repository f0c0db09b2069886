// A host's side of the yield callback: writes down each call, and answers false
// (or any other byte) at a chosen one.
#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "quillcore.h"

namespace quill::test {

// Sets YieldMax for a scope.
class YieldMaxScope {
 public:
  explicit YieldMaxScope(std::int32_t value)
      : before_(std::exchange(YieldMax, value)) {}
  ~YieldMaxScope() { YieldMax = before_; }
  YieldMaxScope(const YieldMaxScope&) = delete;
  YieldMaxScope& operator=(const YieldMaxScope&) = delete;

 private:
  std::int32_t before_;
};

// The values of YieldMax that every operation is crossed with.
inline constexpr std::int32_t kYieldMaxima[] = {1, 2, 7, 10000, 0, -1};

inline constexpr int kNever = std::numeric_limits<int>::max();

// Only one recorder is active at a time: the callback is a plain function.
class YieldRecorder {
 public:
  using Call = std::pair<std::int32_t, std::int32_t>;  // reference, progress

  // Answers 1, but `answer` to the call numbered `stop_at` (from 0). Calls
  // after that one are answered with 1 again.
  explicit YieldRecorder(int stop_at = kNever, unsigned char answer = 0)
      : before_(std::exchange(active_, this)),
        stop_at_(stop_at),
        answer_(answer) {}
  ~YieldRecorder() { active_ = before_; }
  YieldRecorder(const YieldRecorder&) = delete;
  YieldRecorder& operator=(const YieldRecorder&) = delete;

  // Has the host set YieldMax to `maximum` during the call numbered `at`.
  void change_maximum(int at, std::int32_t maximum) {
    change_at_ = at;
    maximum_ = maximum;
  }

  // Has the recorder note at each call what these out-parameters hold then.
  // They stay where they are until the operation has returned.
  static void watch(const std::vector<std::int32_t>& outs) {
    active_->watched_ = outs;
  }

  QuillYield callback() const;
  const std::vector<Call>& calls() const { return calls_; }

  const std::vector<std::int32_t>& seen_outs() const { return seen_outs_; }

 private:
  static unsigned char on_yield(std::int32_t reference, std::int32_t progress);
  unsigned char answer(std::int32_t reference, std::int32_t progress);

  static YieldRecorder* active_;
  YieldRecorder* before_;
  std::vector<Call> calls_;
  std::span<const std::int32_t> watched_;
  std::vector<std::int32_t> seen_outs_;
  int stop_at_;
  int change_at_ = kNever;
  std::int32_t maximum_ = 0;
  unsigned char answer_;
};

}  // namespace quill::test
