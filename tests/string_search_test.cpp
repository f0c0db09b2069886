// Comparing characters, testing break characters, and searching for strings.
#include <gtest/gtest.h>

#include "tests/checks/calls.h"
#include "tests/support/alphabet.h"
#include "tests/support/expect.h"

namespace quill::test {
namespace {

TEST(StringSearch, AgreesWithNaiveTwinOnRandomCalls) {
  for_random_inputs(20, 20'000, check_string_search);
}

TEST(StringSearch, FollowsItsRules) {
  struct Case {
    const char* what;
    const char* text;
    const char* pattern;
    std::optional<Longs> breaks;
    unsigned char invert;
    Longs want;
  };
  const Longs space = {0x20};
  const Case cases[] = {
      {"under a mask", "h\xC3\xA9l", "el", {}, 0, {1, 4}},
      {"never overlapping", "aaaaa", "aa", {}, 0, {0, 2, 2, 4}},
      {"a stray inside", "xh\x80\x80lx", "hl", {}, 0, {1, 5}},
      {"under a lead byte", "\xE2hl", "h", {}, 0, {1, 2}},
      {"a whole word", "a cat cats", "cat", space, 0, {2, 5}},
      {"inside one", "a cat xcats", "cat", space, 1, {7, 10}},
      {"inverted without a set", "cat", "cat", Longs{}, 1, {0, 3}},
      {"open in first place", "\xE4\xB8\xADlal", "?l", {}, 0, {0, 4, 4, 6}},
  };
  for (const Case& c : cases) {
    StringSearch call = {.text = c.text,
                         .pattern = spell(c.pattern),
                         .mask = {{0xA9C3}, {'e'}},
                         .breaks = c.breaks,
                         .invert = c.invert};
    if (c.pattern[0] == '?') call.flags = Flags{0, 1};
    expect_answer(
        c.what, call,
        {.outs = {length_of(c.want), call.end},
         .list = c.want.empty() ? kNoBlock : unlocked(bytes_in(c.want))});
  }
}

// After a few tries what the second character begins with is looked at, too:
// also behind a long first one, behind strays, and cut off by the end.
TEST(StringSearch, LooksAtTheSecondCharacter) {
  const struct {
    const char* pattern;
    const char* miss;  // repeated
    const char* rest;
  } cases[] = {
      {"ab", "ac",
       "Ab a\x80\x80"
       "B a"},
      {"\xC3\xA9"
       "b",
       "\xC3\xA9"
       "c",
       "\xC3\xA9\x80"
       "b\xC3\xA9"},
      {"a\xC3\xA9", "a",
       "a\xC3\xA9"
       "a\xC3"},
      {"ea", "ee",
       "\xC3\xA9"
       "a ea"},
      {"ea", "ee", "\xC3.a"},
  };
  for (const auto& c : cases) {
    for (const int misses : {1, 7, 8, 200, 400}) {
      StringSearch call = {.pattern = spell(c.pattern)};
      for (int i = 0; i < misses; ++i) call.text += c.miss;
      call.text += c.rest;
      call.end = length_of(call.text);
      EXPECT_EQ(first_difference(call), "");
      call.mask = {{'A', 'B', packed("\xC3."), 0xA9C3}, {'a', 'b', 'e', 'e'}};
      call.mask_count = call.mask.count();
      EXPECT_EQ(first_difference(call), "");
    }
  }
}

// Where only strays precede a match, the edge of the text is offset 0, which a
// forward search passes over and a backward search tries.
TEST(StringSearch, BackwardsTriesContinuationBytesAtTheStart) {
  StringSearch call = {.operation = StringSearch::kFindPrevious,
                       .text = "\200\200a ",
                       .pattern = spell("a"),
                       .breaks = Longs{0x20}};
  expect_answer("backward", call, {.result = 1, .outs = {0, 0}});
  call.operation = StringSearch::kFind;
  expect_answer("forward", call, {.result = 0});
}

// In texts where the first character is frequent, so that order is proved or
// strays are sought before anchors behind it are trusted.
TEST(StringSearch, FindsTornMatchesInLongTexts) {
  struct Case {
    const char* what;
    const char* filler;
    const char* pattern;
    const char* torn;
    Mask mask = {};
  };
  const Case cases[] = {
      {"one byte a character", "a\u00E9", "abz", "ab\x80z"},
      {"one, where whole matches are frequent", "abzaa\u00E9", "abzaa",
       "abza\x80"
       "a"},
      {"two", "\u0416\u044F", "\u0416\u0429", "\u0416\x80\x80\u0429"},
      {"three", "\u3042\u3044", "\u3042\u30A1", "\u3042\xBF\u30A1"},
      {"a rare lead byte", "\u3042\u3044", "\u3042\u4041", "\u3042\xBF\u4041"},
      {"two, out of order where a mask maps it",
       "\u0416\u044F",
       "\u0416\u0429",
       "\320A\u0429",
       {{packed("\320A")}, {packed("\u0416")}}},
      {"four", "\U0001F600 ", "\U0001F600\U0001F601",
       "\U0001F600\x80\U0001F601"},
      {"several", "\u0416 ", "\u0416-\u0429", "\u0416-\x80\u0429"},
      {"several under a mask",
       "kzzzz\u00E9",
       "kzyxw",
       "\u212A\x80zyxw",
       {{packed("\u212A")}, {packed("k")}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    StringSearch call = {.pattern = spell(c.pattern), .mask = c.mask};
    const std::string orderly = repeated(c.filler, 4000);
    for (std::size_t i = 1; i <= 16; ++i) {
      call.text += orderly.substr(0, orderly.size() * i / 16) + c.torn;
    }
    call.end = length_of(call.text);
    for (const auto operation :
         {StringSearch::kFindAll, StringSearch::kFindPrevious}) {
      call.operation = operation;
      EXPECT_EQ(first_difference(call), "");
    }
    // Between longer characters.
    call.operation = StringSearch::kFindAll;
    call.breaks = Longs{0xA9C3};
    call.break_count = 1;
    EXPECT_EQ(first_difference(call), "");
  }
}

// The bytes behind the range complete it.
TEST(StringSearch, FindsNoMatchCutOffInLongTexts) {
  StringSearch call = {.operation = StringSearch::kFindAll,
                       .pattern = spell("zyaaaa")};
  while (call.text.size() < 40'000) call.text += "aaaa zyaaaa \xC3\xA9";
  call.text += "zyaaaa";
  for (std::int32_t cut = 0; cut < 6; ++cut) {
    SCOPED_TRACE(cut);
    call.end = length_of(call.text) - cut;
    EXPECT_EQ(first_difference(call), "");
  }
}

// Thick at the text's end and perhaps cut off there; the shorter one, but for a
// byte, between the places that a sample is taken from. Where they are listed
// many at a time the host can stop that, too.
TEST(StringSearch, ListsThickMatches) {
  StringSearch call = {.pattern = spell("\u4E2D"), .nth = 50};
  for (const std::size_t bytes : {180U, 12'000U}) {
    call.text = repeated(".", 40'013) + repeated("\u4E2D", bytes);
    for (std::int32_t cut = 0; cut < 3; ++cut) {
      call.end = length_of(call.text) - cut;
      for (const auto operation :
           {StringSearch::kFindAll, StringSearch::kFindNth}) {
        call.operation = operation;
        EXPECT_EQ(first_difference(call), "");
        EXPECT_EQ(first_difference(call, {.yield_max = 1'030, .stop_at = 39}),
                  "");
      }
    }
  }
}

// A long pattern whose only rare character comes late, in text that agrees with
// all the others.
TEST(StringSearch, TellsLongPatternsByTheirEnds) {
  for (const int length : {25, 64, 255, 256, 300}) {
    SCOPED_TRACE(length);
    const std::string many(static_cast<std::size_t>(length), 'a');
    StringSearch call = {.operation = StringSearch::kFindAll,
                         .pattern = spell(many + "b"),
                         .mask = {{'A'}, {'a'}}};
    for (const char* const end : {"b", "Ab", "\xC3\xA9", "b", "\200b", "b"}) {
      call.text += std::string(12'000, 'a') + end;
    }
    call.end = length_of(call.text);
    for (const std::int32_t mask_count : {1, 0}) {
      call.mask_count = mask_count;
      for (const auto operation :
           {StringSearch::kFindAll, StringSearch::kFindPrevious}) {
        call.operation = operation;
        EXPECT_EQ(first_difference(call), "");
      }
    }
  }
}

// Near enough to be listed, too far apart to be marked at once: whether they
// match is decided one by one.
TEST(StringSearch, TellsMatchesFromNearMissesInLongTexts) {
  StringSearch call = {.operation = StringSearch::kFindAll,
                       .pattern = spell("abcd")};
  const char* const pieces[] = {" abcd ", "xabcd ", " abcdx",
                                " abcx ", " xbcd ", "\u00E9abcd "};
  for (std::size_t i = 0; call.text.size() < 60'000; ++i) {
    call.text += std::string(i * 37 % 500, i % 40 == 0 ? 'a' : '.');
    call.text += pieces[i % 6 % (i < 200 ? 5 : 6)];
  }
  call.end = length_of(call.text);
  EXPECT_EQ(first_difference(call), "");
  EXPECT_EQ(first_difference(call, {64}), "");
  call.breaks = spell(" .");
  for (const bool invert : {false, true}) {
    call.invert = invert ? 1 : 0;
    EXPECT_EQ(first_difference(call), "");
  }
}

// A run of ASCII is searched by bytes alone, but for the side before its first.
// The gaps bring that to each place against the stretches that a text is taken
// in.
TEST(StringSearch, LooksAtTheSideBeforeARun) {
  StringSearch call = {.pattern = spell("abcd"), .breaks = Longs{' ', 0xA9C3}};
  for (std::size_t gap = 490; gap < 520; ++gap) {
    call.text +=
        repeated("abcd ", 9'000) + "\u00E9" + std::string(gap, '.') + "\u00E9";
  }
  call.end = length_of(call.text);
  EXPECT_EQ(first_difference(call), "");
}

// So many members that they are indexed, ASCII and the rest apart.
TEST(BreakChars, CountUpToTheLastOfAscii) {
  StringSearch call = {.text = repeated("a\x7F", 30'000),
                       .pattern = spell("a"),
                       .breaks = Longs(5000, 'b')};
  call.breaks->back() = 0x7F;
  EXPECT_EQ(first_difference(call), "");
}

TEST(StringSearch, OutlivesShortMemory) {
  StringSearch call = {.text = std::string(1'100'000, 'a'),
                       .pattern = spell("a"),
                       .breaks = Longs(5000, 'a')};
  expect_what_fits(call, 2, 1);
  // Listed many at a time.
  call.text = repeated("ab", 2'200'000);
  call.end = length_of(call.text);
  call.pattern = spell("ab");
  call.pattern_count = 2;
  call.breaks->back() = 'b';
  expect_what_fits(call, 1, 2);
}

}  // namespace
}  // namespace quill::test
