// The three replace-alls.
#include <gtest/gtest.h>

#include "tests/checks/calls.h"
#include "tests/support/alphabet.h"
#include "tests/support/expect.h"

namespace quill::test {
namespace {

TEST(ReplaceAll, AgreesWithNaiveTwinsOnRandomCalls) {
  for_random_inputs(53, 30'000, check_replace_all);
}

TEST(ReplaceAll, KeepsItsRules) {
  using enum ReplaceAllCall::Operation;
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
      {"no match", kBytes, "ab", 'x', "Y", 1, 2, 1, 0, "ab", 2, 1},
      {"but an overlay", kBytes, "ab", 'x', "Y", 0, 2, 1, 1, "ab", 2, 1},
      {"none", kCharacters, "ab", 'x', "Y", 1, 2, 1, 1, "ab", 2, 1},
      {"none", kPattern, "ab", 'x', "Y", 1, 2, 1, 1, "ab", 2, 2},
      {"overlaid", kCharacters, "bab", 'a', "XY", 0, 3, 1, 1, "baYb", 4, 2},
      {"a run", kPattern, "baab", 'a', "X", 1, 4, 1, 1, "bXb", 3, 3},
      {"beyond", kBytes, "ab", 'a', "X", 1, 3, 1, 0, "ab", 3, 3},
      {"a position that would not fit", kBytes, "ab", 'b', "XX", 1, 2,
       2147483647, 0, "ab", 2, 2147483647},
      {"one that just fits", kBytes, "ab", 'b', "XX", 1, 2, 2147483646, 1,
       "aXX", 3, 2147483647},
  };
  for (const auto& c : cases) {
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
    // Only an overlay's result is a Block of its own.
    Longs outs = {c.new_to, c.new_position};
    if (c.operation == kBytes || c.first_flag == 1) outs.push_back(1);
    expect_answer(
        c.why, call,
        {.result = c.result, .outs = outs, .text = unlocked(c.edited)});
  }
}

TEST(ReplaceAll, LeavesTheTextWhenMemoryIsShort) {
  ReplaceAllCall call = {.text = repeated("a-b", 600),
                         .bytes = "a",
                         .characters = {'a'},
                         .parts = {{{'a'}}}};
  for (const auto operation :
       {ReplaceAllCall::kBytes, ReplaceAllCall::kCharacters,
        ReplaceAllCall::kPattern}) {
    for (const bool overlays : {false, true}) {
      call.operation = operation;
      call.string.assign(100, 'x');
      call.flags.assign(overlays ? 100 : 0, 0);
      // Refused in the search, or in the insertion.
      Outcome refused;
      refused.result = 0;
      refused.outs = {600, 600, 1, -84};
      refused.text = unlocked(call.text);
      Outcome not_inserted = refused;
      not_inserted.outs[1] = 1;
      expect_all_or_nothing(call, {refused, not_inserted});
    }
  }
}

}  // namespace
}  // namespace quill::test
