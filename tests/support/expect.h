// Answers stated by hand, asked of the library and of the naive twin that it is
// compared with; and calls that the heap refuses what they ask for.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/compare.h"
#include "tests/support/heap_watch.h"

namespace quill::test {

// What a test states of an outcome; the rest is not looked at.
struct Stated {
  std::optional<std::int32_t> result = {};
  Longs outs = {};  // the first of them
  std::optional<BlockState> list = {};
  std::optional<BlockState> text = {};
};

template <class Call>
void expect_answer(const char* why, const Call& call, const Stated& stated,
                   std::initializer_list<Side> sides = {Side::kLibrary,
                                                        Side::kNaive}) {
  for (const Side side : sides) {
    SCOPED_TRACE(testing::Message() << why << ", side " << show(side));
    Outcome o = outcome_of(call, side);
    o.outs.resize(stated.outs.size());
    EXPECT_EQ(o.result, stated.result.value_or(o.result));
    EXPECT_EQ(o.outs, stated.outs);
    EXPECT_EQ(o.list, stated.list.value_or(o.list));
    EXPECT_EQ(o.text, stated.text.value_or(o.text));
  }
}

// At each question of each of the operations, for small values of YieldMax.
template <class Call, class Operation>
void expect_same_at_any_stop(Call call,
                             std::initializer_list<Operation> operations) {
  for (const Operation operation : operations) {
    call.operation = operation;
    for (const std::int32_t yield_max : {1, 2, 3, 7, 16}) {
      EXPECT_EQ(first_difference_at_any_stop(call, {yield_max}), "");
    }
  }
}

// With each request refused in turn the library does all the same, where it can
// do without, or leaves one of the outcomes in `refused`.
template <class Call>
void expect_all_or_nothing(const Call& call,
                           const std::vector<Outcome>& refused) {
  const Outcome done = outcome_of(call, Side::kLibrary, {0});
  int refusals = 0;
  with_each_request_refused([&](const HeapWatch& heap) {
    const Outcome seen = outcome_of(call, Side::kLibrary, {0});
    if (seen == done) return;
    ++refusals;
    EXPECT_TRUE(heap.failed());
    EXPECT_TRUE(std::find(refused.begin(), refused.end(), seen) !=
                refused.end())
        << show(seen);
  });
  EXPECT_GT(refusals, 0);
}

}  // namespace quill::test
