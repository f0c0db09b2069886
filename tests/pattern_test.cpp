// Range patterns: one part, one pattern, and every search for them.
#include <gtest/gtest.h>

#include "tests/checks/calls.h"
#include "tests/support/alphabet.h"
#include "tests/support/expect.h"

namespace quill::test {
namespace {

TEST(Patterns, AgreeWithNaiveTwinsOnRandomCalls) {
  for_random_inputs(31, 40'000, check_pattern);
}

TEST(PatternSearch, FindsWhatTheTableSays) {
  const struct {
    const char* why;
    RangeParts parts;
    std::string text;
    Longs found;
  } cases[] = {
      {"threes of anything", {{{}, 1, 3, 0}}, "abcdefg", {0, 3, 3, 6, 6, 7}},
      {"never gives back", {{{'n', 'o'}}, {{'n'}, 1, 1}}, "nonno", {}},
      {"empty ones, each once", {{{'b'}, 0}}, "abba", {0, 0, 1, 3, 3, 3}},
      {"empty before strays, then past the end",
       {{{'b'}, 0}},
       "a\x80\x80",
       {0, 0}},
      {"on the strays before it", {{{'n', 'o'}}}, " \x80no", {1, 4}},
      {"a lone byte jumps into a character",
       {{{'n'}, 1, 1}},
       "\xE2no n",
       {1, 2, 4, 5}},
      {"an include byte of 2 does not", {{{'n'}, 1, 1, 2}}, "\xE2no n", {4, 5}},
  };
  for (const auto& c : cases) {
    PatternCall call = {.text = c.text, .parts = c.parts};
    expect_answer(
        c.why, call,
        {.outs = {length_of(c.found), call.to},
         .list = c.found.empty() ? kNoBlock : unlocked(bytes_in(c.found))});
    call.operation = PatternCall::kCount;
    expect_answer(c.why, call, {.outs = {length_of(c.found) / 2}});
  }
}

// The characters from each first code point to its last.
Longs characters(std::initializer_list<std::pair<int, int>> ranges) {
  Longs all;
  for (auto [c, last] : ranges) {
    for (; c <= last; ++c) {
      const int tails = c < 0x80 ? 0 : c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
      const int marks[] = {0, 0xC0, 0xE0, 0xF0};
      std::string bytes(1, static_cast<char>(marks[tails] | c >> 6 * tails));
      for (int i = tails; i-- > 0;) {
        bytes += static_cast<char>(0x80 | (c >> 6 * i & 0x3F));
      }
      all.push_back(packed(bytes));
    }
  }
  return all;
}

// Texts long enough for the tables of long ranges, and sets that fill them in
// every way: whole lead bytes, parts of them, more kinds than are grouped.
TEST(PatternSearch, AgreesWithNaiveTwinsOnManyScripts) {
  const Longs all = characters({{0x20, 0x7E},
                                {0xE0, 0xFE},
                                {0x391, 0x3C9},
                                {0x401, 0x451},
                                {0x7F0, 0x7FF},
                                {0x1040, 0x1050},
                                {0x3041, 0x30FA},
                                {0x4DF0, 0xA010},
                                {0x1F5F0, 0x1F650}});
  Longs sets[] = {
      characters({{'a', 'z'}, {'A', 'Z'}}),
      characters({{0x410, 0x44F}, {0x401, 0x401}, {0x451, 0x451}}),
      characters({{0x4E00, 0x9FFF}}),
      characters({{0x3041, 0x3096}, {0x30A1, 0x30FA}, {'0', '9'}}),
      characters({{0x780, 0x7FF}, {0x1000, 0x1FFF}, {0x4E01, 0x4E01}}),
      characters({{0xE0, 0xFE},
                  {0x391, 0x3C9},
                  {0x410, 0x44F},
                  {0x7F0, 0x7F8},
                  {0x1042, 0x1049},
                  {0x3051, 0x30B0}}),
      characters({{0x1F600, 0x1F64F}, {0x20AC, 0x20AC}, {'!', '/'}}),
      characters({{0xE0, 0xFE},
                  {0x101, 0x101},
                  {0x142, 0x142},
                  {0x391, 0x3C9},
                  {0x410, 0x44F},
                  {0x5D0, 0x5EA},
                  {0x7F0, 0x7F8}}),
  };
  const RangePart kinds[] = {{{}, 1, 0, 1},  {{}, 2, 0, 0}, {{}, 1, 3, 1},
                             {{}, 2, 40, 0}, {{}, 0, 2, 1}, {{}, 1, 0, 0},
                             {{}, 2, 40, 1}};
  std::mt19937 generator(5150);
  for (const bool has_strays : {false, true}) {
    PatternCall call;
    while (call.text.size() < 40'000) {
      // Runs of what lies together; often of the scripts with few characters.
      std::size_t at = generator() % (all.size() - 60);
      if (generator() % 4 != 0) at %= 400;
      for (std::size_t left = generator() % 60; left > 0; --left) {
        naive::append_character(call.text, all[at + left]);
      }
      if (has_strays) call.text += strays()[generator() % strays().size()];
    }
    call.to = length_of(call.text);
    for (Longs& set : sets) {
      std::sort(set.begin(), set.end());
      for (RangePart part : kinds) {
        part.set = set;
        call.parts = {part};
        if (generator() % 2 == 0) call.parts.push_back({{' '}, 1, 2, 0});
        call.part_count = length_of(call.parts);
        for (const auto operation :
             {PatternCall::kFindAll, PatternCall::kFindPrevious}) {
          call.operation = operation;
          ASSERT_EQ(first_difference(call, {part.minimum == 1 ? 300 : 10000}),
                    "");
        }
      }
    }
  }
}

// Runs that end about the borders of words and windows, with and without the
// next part behind them.
TEST(PatternSearch, FollowsRunsAcrossBorders) {
  PatternCall call = {.parts = {{{'a'}}, {{'b'}}}};
  for (const std::size_t before : {0u, 1u, 62u, 63u, 64u, 65u}) {
    for (const std::size_t length :
         {1u, 2u, 63u, 64u, 65u, 127u, 128u, 700u, 2100u}) {
      SCOPED_TRACE(testing::Message() << before << ' ' << length);
      const std::string run(length, 'a');
      call.text = std::string(before, '.') + run + "b" + run + "." + run + "b" +
                  std::string(30, '.') + run;
      call.to = length_of(call.text);
      EXPECT_EQ(first_difference(call), "");
    }
  }
}

// The host is due among matches that are taken many at once.
TEST(PatternSearch, AsksAmongMatchesTakenAtOnce) {
  for (const auto operation : {PatternCall::kFindAll, PatternCall::kCount}) {
    const PatternCall call = {.operation = operation,
                              .text = repeated("a.", 20'000),
                              .parts = {{{'a'}}}};
    for (const std::int32_t yield_max : {2050, 2051, 3000}) {
      EXPECT_EQ(first_difference(call, {yield_max}), "");
      EXPECT_EQ(first_difference(call, {yield_max, 1}), "");
    }
  }
}

// What is known of the first places is neither more than was looked at, nor
// true of the places inside.
TEST(PatternSearch, TriesEachPlaceBehindPartsOfOneLength) {
  const PatternCall calls[] = {
      // More characters than are looked at.
      {.text = repeated(".aaaaaab.aaaaaaab", 1000),
       .parts = {{{'a'}, 7, 7}, {{'b'}}}},
      // A match inside a failed attempt.
      {.text = repeated(".aabbbc", 1000),
       .parts = {
           {{'a'}, 1, 1}, {{'a', 'b'}, 1, 1}, {{'b'}, 1, 2}, {{'c'}, 1, 1}}}};
  for (const PatternCall& call : calls) EXPECT_EQ(first_difference(call), "");
}

// Attempts that all run on over the same text: it would take hours if each
// went all the way.
TEST(PatternSearch, StaysLinearOnOpenRuns) {
  const RangeParts run = {{{'a'}}, {{'b'}, 1, 1}};
  const RangeParts bracket = {{{'a'}, 1, 1}, {{'b'}, 0, 0, 0}, {{'b'}, 1, 1}};
  const RangeParts optional = {{{'b'}, 0}};
  const std::string letters(1 << 18, 'a');
  const std::string strays(1 << 18, '\x80');
  const std::pair<const std::string&, const RangeParts&> cases[] = {
      {letters, run},
      {letters, bracket},
      {strays, run},
      {strays, bracket},
      {strays, optional}};
  for (const auto& [text, parts] : cases) {
    PatternCall call = {.text = text, .parts = parts};
    const Outcome all = outcome_of(call);
    EXPECT_EQ(all.list.kind, BlockState::Kind::kNull);
    EXPECT_EQ(all.outs[1], 1 << 18);
    call.operation = PatternCall::kFindPrevious;
    const Outcome last = outcome_of(call);
    EXPECT_EQ(std::ssize(last.asked), (1 << 18) / 10000);
  }
}

TEST(PatternLists, ReportShortMemory) {
  const RangeParts parts = {{{'a'}, 1, 1}};
  PatternCall call = {
      .text = std::string(600'000, 'a'), .parts = parts, .key = parts};
  expect_what_fits(call, 2, 1);
  call.operation = PatternCall::kFindKeys;
  expect_what_fits(call, 4, 1);
}

TEST(SortPattern, ReportsShortMemory) {
  const PatternCall call = {.operation = PatternCall::kSort,
                            .text = "banana",
                            .parts = {{{'a'}, 1, 1}}};
  with_each_request_refused([&](const HeapWatch& heap) {
    const Outcome o = outcome_of(call);
    EXPECT_EQ(o.outs[0], 6);
    EXPECT_EQ(o.text.kind, BlockState::Kind::kUnlocked);
    EXPECT_TRUE(o.result == 1 || heap.failed());
  });
}

}  // namespace
}  // namespace quill::test
