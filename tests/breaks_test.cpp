// Breaks: widening a selection, and the two break lists.
#include <gtest/gtest.h>

#include "tests/checks/breaks_check.h"
#include "tests/support/heap_watch.h"
#include "tests/support/random_inputs.h"

namespace quill::test {
namespace {

constexpr BreakCall::Operation kLists[] = {BreakCall::kEveryFew,
                                           BreakCall::kAtSpaces};

TEST(Breaks, AgreeWithNaiveTwinsOnRandomCalls) {
  for_random_inputs(1, 30'000, check_breaks);
}

TEST(Breaks, StopAtEachQuestion) {
  BreakCall call = {.text = "ab c\xC3\xA9 d\nefgh i \xF0\x9F\x98\x80 jk",
                    .unit = 4,
                    .backward = {{' '}, 0},
                    .forward = {{' '}, 2},
                    .selection_start = 13,
                    .selection_end = 9};
  for (const auto operation :
       {BreakCall::kWiden, BreakCall::kEveryFew, BreakCall::kAtSpaces}) {
    call.operation = operation;
    for (const std::int32_t yield_max : {1, 2, 3}) {
      EXPECT_EQ(first_difference_at_any_stop(call, {yield_max}), "");
    }
  }
}

// Answers stated by hand, for library and twins.
TEST(FindBreaks, FollowsItsRules) {
  struct Case {
    const char* what;
    BreakCall call;
    std::int32_t result;
    Longs want;  // start, end, whether both stopped at a character
  };
  const BreakCall::Class but_space = {{' '}, 0};
  const BreakCall::Class spaces = {{' '}, 1};
  const auto from = [](const char* text, BreakCall::Class backward,
                       BreakCall::Class forward, std::int32_t start,
                       std::int32_t end) {
    return BreakCall{.text = text,
                     .backward = backward,
                     .forward = forward,
                     .selection_start = start,
                     .selection_end = end};
  };
  const Case cases[] = {
      {"to the word",
       from("ab cde f", but_space, but_space, 5, 5),
       1,
       {3, 6, 1}},
      {"to the bounds", from("abc", but_space, but_space, 1, 2), 1, {0, 3, 0}},
      {"over a class", from("a   b", spaces, spaces, 2, 3), 1, {1, 4, 1}},
      {"forwards alone", from("ab cde f", {}, but_space, 5, 5), 1, {5, 6, 1}},
      {"a start found stays when the end can't be read",
       from("a bc\xC3", but_space, but_space, 3, 3),
       0,
       {2, 3, 0}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    for (const Side side : {Side::kLibrary, Side::kNaive}) {
      const Outcome o = observe(run_of(c.call), side, {});
      EXPECT_EQ(o.result, c.result);
      EXPECT_EQ(Longs(o.outs.begin(), o.outs.begin() + 3), c.want);
    }
  }
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

TEST(BreakLists, FollowTheirRules) {
  struct Case {
    const char* what;
    BreakCall call;
    BlockState want;
  };
  constexpr auto kEveryFew = BreakCall::kEveryFew;
  constexpr auto kAtSpaces = BreakCall::kAtSpaces;
  const auto list = [](const Longs& longs) {
    const HeldBlock held(longs);
    return state_of(held.block);
  };
  const char* const word = "h\xC3\xA9llo";
  const Case cases[] = {
      {"a whole last piece", {kEveryFew, "abcd", 2}, list({2, 2, 4, 4})},
      {"a short one", {kEveryFew, word, 2}, list({3, 3, 5, 5})},
      {"from inside a character", {kEveryFew, word, 4, 2}, list({6, 6})},
      {"no break", {kEveryFew, "ab", 3}, list({})},
      {"a stray holds", {kEveryFew, "a\x80", 1}, {}},
      {"behind the last space",
       {kAtSpaces, "ab cd efgh", 5},
       list({3, 3, 6, 6})},
      {"a word too long", {kAtSpaces, "abcdefg", 3}, list({3, 3, 6, 6})},
      {"a feed begins anew", {kAtSpaces, "ab\ncd efgh", 5}, list({6, 6})},
      {"beyond the text", {kEveryFew, "abc", 1, 0, 4}, {}},
      {"before the text", {kAtSpaces, "abc", 1, -1, 3}, {}},
      {"turned round",
       {kAtSpaces, "abc", 1, 2'147'483'647, -2'147'483'647},
       {}},
      {"no width", {kAtSpaces, "abc", 0}, {}},
  };
  for (const Case& c : cases) {
    for (const Side side : {Side::kLibrary, Side::kNaive}) {
      EXPECT_EQ(observe(run_of(c.call), side, {}).list, c.want) << c.what;
    }
  }
  QuillBlock none = untouched();
  std::int32_t count = -3;
  EXPECT_EQ(utf8_ComputeBreaks(nullptr, 0, 3, 1, &none, &count, 0, nullptr), 0);
  EXPECT_EQ(
      utf8_ComputeSpaceBreaks(nullptr, 0, 3, 1, &none, &count, 0, nullptr), 0);
  EXPECT_EQ(none, untouched());
  EXPECT_EQ(count, -3);
}

// Lists that outgrow their first capacity, which counts on full lines.
TEST(BreakLists, Grow) {
  BreakCall call = {.operation = BreakCall::kAtSpaces, .unit = 10};
  while (call.text.size() < 1'500'000) call.text += "a bcdefghi";
  call.end = static_cast<std::int32_t>(call.text.size());
  EXPECT_EQ(first_difference(call), "");
}

TEST(BreakLists, LeaveNothingBehindWhenMemoryIsShort) {
  BreakCall call = {.text = "a bcde f ghij kl", .unit = 4};
  for (const auto operation : kLists) {
    call.operation = operation;
    const Outcome whole = observe(run_of(call), Side::kNaive, {0});
    with_each_request_refused([&](const HeapWatch& heap) {
      const Outcome o = observe(run_of(call), Side::kLibrary, {0});
      if (o.result == 1) {
        EXPECT_EQ(o, whole);
      } else {
        EXPECT_TRUE(heap.failed());
        EXPECT_EQ(o.list, BlockState{});
        EXPECT_EQ(o.outs[0], -81);
      }
    });
  }
}

}  // namespace
}  // namespace quill::test
