// The three replace-alls.
#include <gtest/gtest.h>

#include "tests/checks/replace_all_check.h"
#include "tests/support/heap_watch.h"
#include "tests/support/random_inputs.h"

namespace quill::test {
namespace {

TEST(ReplaceAll, AgreesWithNaiveTwinsOnRandomCalls) {
  for_random_inputs(53, 30'000, check_replace_all);
}

// The answers are stated by hand: for the library, and for the twins that it is
// compared with.
TEST(ReplaceAll, KeepsItsRules) {
  constexpr auto kBytes = ReplaceAllCall::kBytes;
  constexpr auto kCharacters = ReplaceAllCall::kCharacters;
  constexpr auto kPattern = ReplaceAllCall::kPattern;
  const struct {
    const char* why;
    ReplaceAllCall::Operation operation;
    std::string text;
    char sought;
    std::string string;
    unsigned char first_flag;  // 1: none
    std::int32_t to, position;
    std::int32_t result;
    std::string edited;
    std::int32_t new_to, new_position;
  } cases[] = {
      {"every match", kBytes, "abab", 'b', "XY", 1, 4, 1, 1, "aXYaXY", 6, 3},
      {"deletes", kBytes, "abab", 'b', "", 1, 4, 1, 1, "aa", 2, -1},
      {"a part of the text", kBytes, "abab", 'b', "", 1, 2, 1, 1, "aab", 1, 0},
      {"no match is no insertion", kBytes, "ab", 'x', "Y", 1, 2, 1, 0, "ab", 2,
       1},
      {"but an overlay", kBytes, "ab", 'x', "Y", 0, 2, 1, 1, "ab", 2, 1},
      {"no match of characters", kCharacters, "ab", 'x', "Y", 1, 2, 1, 1, "ab",
       2, 1},
      {"no match of a pattern", kPattern, "ab", 'x', "Y", 1, 2, 1, 1, "ab", 2,
       2},
      {"overlaid", kCharacters, "bab", 'a', "XY", 0, 3, 1, 1, "baYb", 4, 2},
      {"a run of a pattern", kPattern, "baab", 'a', "X", 1, 4, 1, 1, "bXb", 3,
       3},
      {"a range beyond the text", kBytes, "ab", 'a', "X", 1, 3, 1, 0, "ab", 3,
       3},
      {"a position that would not fit", kBytes, "ab", 'b', "XX", 1, 2,
       2147483647, 0, "ab", 2, 2147483647},
      {"one that just fits", kBytes, "ab", 'b', "XX", 1, 2, 2147483646, 1,
       "aXX", 3, 2147483647},
      {"nor below", kBytes, "ab", 'b', "", 1, 2, INT32_MIN, 0, "ab", 2,
       INT32_MIN},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    ReplaceAllCall call;
    call.operation = c.operation;
    call.text = c.text;
    call.to = c.to;
    call.bytes = std::string(1, c.sought);
    call.characters = {c.sought};
    call.parts = {{{c.sought}}};
    call.string = c.string;
    if (c.first_flag == 0) call.flags = {0, 1};
    call.position = c.position;
    for (const Side side : {Side::kLibrary, Side::kNaive}) {
      const Outcome o = observe(run_of(call), side, {});
      EXPECT_EQ(o.result, c.result);
      EXPECT_EQ(o.text.bytes, c.edited);
      EXPECT_EQ(o.outs[0], c.new_to);
      EXPECT_EQ(o.outs[1], c.new_position);
      EXPECT_TRUE(o.outs[2] == 1 || (c.operation != kBytes && !c.first_flag));
    }
  }
}

// Each heap request is refused in turn, those of the searches included: all is
// done, or the text and its end are as they were.
TEST(ReplaceAll, LeavesTheTextWhenMemoryIsShort) {
  ReplaceAllCall call = {.bytes = "a", .characters = {'a'}};
  for (int i = 0; i < 200; ++i) call.text += "a-b";
  call.to = 600;
  call.parts = {{{'a'}}};
  for (const auto operation :
       {ReplaceAllCall::kBytes, ReplaceAllCall::kCharacters,
        ReplaceAllCall::kPattern}) {
    for (const bool overlays : {false, true}) {
      call.operation = operation;
      call.string.assign(100, 'x');
      call.flags.assign(overlays ? 100 : 0, 0);
      const Outcome done = observe(run_of(call), Side::kLibrary, {});
      int refusals = 0;
      with_each_request_refused([&](const HeapWatch&) {
        const Outcome seen = observe(run_of(call), Side::kLibrary, {});
        if (seen.result == 1) {
          EXPECT_EQ(seen, done);
          return;
        }
        ++refusals;
        EXPECT_EQ(seen.text.bytes, call.text);
        EXPECT_EQ(seen.text.kind, BlockState::Kind::kUnlocked);
        EXPECT_EQ(seen.outs[0], 600);
        EXPECT_TRUE(seen.outs[1] == 600 || seen.outs[1] == 1);
        EXPECT_EQ(seen.outs[2], 1);
      });
      EXPECT_GT(refusals, 1);
    }
  }
}

}  // namespace
}  // namespace quill::test
