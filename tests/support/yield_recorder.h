// A host's side of the yield callback: writes down each call, and answers false
// (or any other byte) at a chosen one.
#pragma once

#include <bit>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "quillcore.h"

namespace quill::test {

// The values of YieldMax that every operation is crossed with.
inline constexpr std::int32_t kYieldMaxima[] = {1, 2, 7, 10000, 0, -1};

inline constexpr int kNever = std::numeric_limits<int>::max();

// What a host does while a call runs. Its questions are numbered from 0; all
// but one are answered with 1.
struct HostPlan {
  std::int32_t yield_max = 10000;
  int stop_at = kNever;  // the question that is answered with `answer`
  unsigned char answer = 0;
  int change_at = kNever;  // the question at which YieldMax becomes `change_to`
  std::int32_t change_to = 0;
};

// Only one recorder is active at a time: the callback is a plain function.
class YieldRecorder {
 public:
  using Call = std::pair<std::int32_t, std::int32_t>;  // reference, progress

  explicit YieldRecorder(const HostPlan& plan = {})
      : before_(std::exchange(active_, this)),
        yield_max_before_(std::exchange(YieldMax, plan.yield_max)),
        plan_(plan) {}
  ~YieldRecorder() {
    active_ = before_;
    YieldMax = yield_max_before_;
  }
  YieldRecorder(const YieldRecorder&) = delete;
  YieldRecorder& operator=(const YieldRecorder&) = delete;

  // Has the recorder note at each call what these out-parameters hold then.
  // They stay where they are until the operation has returned.
  static void watch(const std::vector<std::int32_t>& outs) {
    active_->watched_ = outs;
  }

  // A host in another language hands in a function that returns a byte.
  static QuillYield callback() { return std::bit_cast<QuillYield>(&on_yield); }
  const std::vector<Call>& calls() const { return calls_; }
  const std::vector<std::int32_t>& seen_outs() const { return seen_outs_; }

 private:
  static unsigned char on_yield(std::int32_t reference, std::int32_t progress) {
    return active_->answer(reference, progress);
  }
  unsigned char answer(std::int32_t reference, std::int32_t progress) {
    const auto number = std::ssize(calls_);
    if (number == plan_.change_at) YieldMax = plan_.change_to;
    calls_.emplace_back(reference, progress);
    seen_outs_.insert(seen_outs_.end(), watched_.begin(), watched_.end());
    return number == plan_.stop_at ? plan_.answer : 1;
  }

  static inline YieldRecorder* active_ = nullptr;
  YieldRecorder* before_;
  std::int32_t yield_max_before_;
  HostPlan plan_;
  std::vector<Call> calls_;
  std::span<const std::int32_t> watched_;
  std::vector<std::int32_t> seen_outs_;
};

}  // namespace quill::test
