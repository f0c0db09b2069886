// Breaks: widening a selection, and the two break lists.
#include <gtest/gtest.h>

#include "tests/checks/calls.h"
#include "tests/support/alphabet.h"
#include "tests/support/expect.h"

namespace quill::test {
namespace {

TEST(Breaks, AgreeWithNaiveTwinsOnRandomCalls) {
  for_random_inputs(1, 30'000, check_breaks);
}

// Where a host keeps both ends in one variable, the forward search begins
// where the backward one ended.
TEST(FindBreaks, StartsForwardFromWhatTheHostNowHolds) {
  const Longs space = {0x20};
  std::int32_t both = 4;
  unsigned char found = 0;
  EXPECT_EQ(utf8_FindBreaks("ab cd", 0, 5, space.data(), 1, 0, space.data(), 1,
                            1, &both, &both, &found, 0, nullptr),
            1);
  EXPECT_EQ(both, 3);
  EXPECT_EQ(found, 1);
}

// Lists that outgrow their first capacity, which counts on full lines.
TEST(BreakLists, Grow) {
  const BreakCall call = {.operation = BreakCall::kAtSpaces,
                          .text = repeated("a bcdefghi", 1'500'000),
                          .unit = 10};
  EXPECT_EQ(first_difference(call), "");
}

TEST(BreakLists, LeaveNothingBehindWhenMemoryIsShort) {
  BreakCall call = {.text = "a bcde f ghij kl", .unit = 4};
  for (const auto operation : {BreakCall::kEveryFew, BreakCall::kAtSpaces}) {
    call.operation = operation;
    Outcome refused;
    refused.result = 0;
    refused.outs[1] = 0;
    expect_all_or_nothing(call, {refused});
  }
}

}  // namespace
}  // namespace quill::test
