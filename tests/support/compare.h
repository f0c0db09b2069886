// Makes one call twice, to the library and to its naive twin, and says where
// the two differ in anything that the host can see.
//
// A call is a struct of its arguments with two members:
//
//   Outcome run(Side side, QuillYield yield) const;  // makes the call
//   std::string show() const;                        // names its arguments
#pragma once

#include <functional>

#include "tests/models/naive.h"
#include "tests/support/blocks.h"
#include "tests/support/show.h"
#include "tests/support/yield_recorder.h"

namespace quill::test {

enum class Side { kLibrary, kNaive };

// QUILL_PICK(side, FindStr)(...) makes the call to that side.
#define QUILL_PICK(side, name) ((side) == Side::kLibrary ? ::name : naive::name)

// What a call leaves behind. Each call fills in what it has.
struct Outcome {
  std::int32_t result = -99;
  Longs outs = {-81, -82, -83, -84};  // out-parameters, and any other longs
  BlockState list = {};               // a Block of longs
  BlockState text = {};               // a Block of bytes
  std::string buffer = {};            // bytes changed in place

  // Filled in by the comparison: what the host was told, and what the longs
  // given to YieldRecorder::watch held each time.
  std::vector<YieldRecorder::Call> asked = {};
  Longs outs_when_asked = {};

  bool operator==(const Outcome&) const = default;
};

std::string show(const Outcome& outcome);
inline void PrintTo(const Outcome& outcome, std::ostream* out) {
  *out << show(outcome);
}

using Run = std::function<Outcome(Side, QuillYield)>;

// The call as the host of `plan` sees it.
Outcome observe(const Run& run, Side side, const HostPlan& plan);

// Empty when the library does as the naive twin under every set of kernels;
// otherwise both outcomes. The question that is answered with a stop is taken
// modulo those asked when nobody stops, so that every stop takes effect.
std::string first_difference(const Run& run, HostPlan plan);

template <class Call>
Run run_of(const Call& call) {
  return [&call](Side side, QuillYield yield) { return call.run(side, yield); };
}

template <class Call>
Outcome outcome_of(const Call& call, Side side = Side::kLibrary,
                   const HostPlan& plan = {}) {
  return observe(run_of(call), side, plan);
}

template <class Call>
std::string first_difference(const Call& call, const HostPlan& plan = {}) {
  const std::string found = first_difference(run_of(call), plan);
  return found.empty() ? found : found + call.show();
}

}  // namespace quill::test
