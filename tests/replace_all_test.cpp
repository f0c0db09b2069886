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
