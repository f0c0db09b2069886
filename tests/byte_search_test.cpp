// Searching for byte strings and swapping them.
#include <gtest/gtest.h>

#include "search/two_way.h"
#include "tests/checks/calls.h"
#include "tests/support/alphabet.h"
#include "tests/support/expect.h"

namespace quill::test {
namespace {

TEST(ByteSearch, AgreesWithNaiveTwinOnRandomCalls) {
  for_random_inputs(11, 20'000, check_byte_search);
}

TEST(ByteSearch, FollowsItsRules) {
  const struct {
    const char* why;
    const char* text;
    std::int32_t start, end;
    const char* pattern;
    const char* replacement;
    Longs found;
    const char* swapped;
  } cases[] = {
      {"never overlapping", "aaaaa", 0, 5, "aa", "ab", {0, 2, 2, 4}, "ababa"},
      {"cut by the end", "abcabc", 0, 5, "bc", "XY", {1, 3}, "aXYabc"},
      {"behind a partial one", "ccd", 0, 3, "cd", "dz", {1, 3}, "cdz"},
      {"the range alone", "ababab", 1, 5, "ab", "a-", {2, 4}, "aba-ab"},
  };
  for (const auto& c : cases) {
    ByteSearch call = {ByteSearch::kFindAll, c.text, c.start, c.end, c.pattern,
                       c.replacement};
    expect_answer(c.why, call,
                  {.result = 1,
                   .outs = {length_of(c.found), c.end},
                   .list = unlocked(bytes_in(c.found))});
    call.operation = ByteSearch::kSwap;
    for (const Side side : {Side::kLibrary, Side::kNaive}) {
      EXPECT_EQ(outcome_of(call, side).buffer, c.swapped) << c.why;
    }
  }
}

// A range in which the host is due at the last offset, or just not, and more
// near misses than are looked at before anything is counted.
TEST(ByteSearch, AsksAtTheLastOffset) {
  std::string text;
  for (int i = 0; i < 12; ++i) text += "ayb";
  for (const std::string end : {"ayc", "axb"}) {
    for (const auto operation : {ByteSearch::kFind, ByteSearch::kFindByte}) {
      const ByteSearch call = {
          .operation = operation, .text = text + end, .pattern = "axb"};
      for (const std::int32_t due : {33, 36, 38, 39, 40}) {
        EXPECT_EQ(first_difference(call, {due}), "");
      }
    }
  }
}

// Every needle over two letters in texts that nearly repeat it, asked for in
// stretches as the host's questions make them.
TEST(LinearSearch, FindsWhatThereIs) {
  for_random_inputs(5, 5000, [](Input& in) -> std::string {
    const std::string needle = in.letters(in.between(2, 10), 2);
    std::string text;
    while (text.size() < 80) {
      text += needle.substr(static_cast<std::size_t>(in.between(0, 1)));
      if (in.one_in(3)) text.back() = in.pick({'a', 'a', 'a', 'c'});
    }
    TwoWay search(as_bytes(needle.data()), std::ssize(needle));
    const Byte* const begin = as_bytes(text.data());
    const Offset last = std::ssize(text) - std::ssize(needle) + 1;
    for (Offset at = 0; at < last;) {
      const Offset limit = std::min<Offset>(at + in.between(1, 30), last);
      const Offset found = search.find(begin + at, begin + limit) - begin;
      const auto wanted =
          std::min(text.find(needle, static_cast<std::size_t>(at)),
                   static_cast<std::size_t>(limit));
      if (std::cmp_not_equal(found, wanted)) {
        return show_fields("needle", needle, "text", text, "from", at);
      }
      at = found < limit ? found + std::ssize(needle) : limit;
    }
    return {};
  });
}

// Texts on which a filter by two bytes fails at every offset. Were the work
// not bounded, the long ones would take hours.
TEST(ByteSearch, IsLinearOnPeriodicTexts) {
  const std::string as(63, 'a');
  const std::pair<std::string, std::string> small[] = {
      {repeated(as + "c", 40'000), as + "a"},
      {repeated("a", 40'000), as + "b" + as},
      {repeated("ab", 40'000) + "aab", repeated("ab", 500) + "b"},
      {repeated("a", 20'000) + "b" + repeated("a", 20'000), as + "ba"},
      {repeated(as + "b" + as, 90'000), repeated(as + "b" + as, 3000)},
  };
  for (const auto& [text, pattern] : small) {
    for (const auto operation : {ByteSearch::kFind, ByteSearch::kFindAll}) {
      const ByteSearch call = {
          .operation = operation, .text = text, .pattern = pattern};
      for (const std::int32_t yield_max : {1, 7, 100, 10000}) {
        ASSERT_EQ(first_difference(call, {yield_max}), "");
      }
    }
  }
  const std::string half(1'000'000, 'a');
  for (const std::string& pattern :
       {half + "b" + half, half + "b", "b" + half}) {
    const ByteSearch call = {.operation = ByteSearch::kFindAll,
                             .text = half + half + half + half + half,
                             .pattern = pattern};
    for (const std::int32_t yield_max : {1, 10000}) {
      const Outcome seen = outcome_of(call, Side::kLibrary, {yield_max});
      EXPECT_TRUE(seen.list.bytes.empty());
      EXPECT_EQ(std::ssize(seen.asked), 5'000'000 / yield_max);
    }
  }
}

// Matches that are listed many at a time are counted one by one.
TEST(FindStrAll, AsksBetweenCloseMatches) {
  for (const char* const pattern : {"a", "ab", "aba"}) {
    const ByteSearch call = {.operation = ByteSearch::kFindAll,
                             .text = repeated("ababac", 9'000),
                             .pattern = pattern};
    for (const std::int32_t yield_max : {601, 1000}) {
      EXPECT_EQ(first_difference(call, {yield_max, 20}), "") << pattern;
    }
  }
}

TEST(FindStrAll, ReportsShortMemory) {
  const ByteSearch call = {.operation = ByteSearch::kFindAll,
                           .text = std::string(1'200'000, 'a'),
                           .pattern = "a"};
  expect_what_fits(call, 2, 0);
}

}  // namespace
}  // namespace quill::test
