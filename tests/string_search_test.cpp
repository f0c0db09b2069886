// Comparing characters, testing break characters, and searching for strings.
#include <gtest/gtest.h>

#include "tests/checks/string_search_check.h"
#include "tests/support/alphabet.h"
#include "tests/support/expect.h"
#include "tests/support/random_inputs.h"

namespace quill::test {
namespace {

TEST(StringSearch, AgreesWithNaiveTwinOnRandomCalls) {
  for_random_inputs(20, 20'000, check_string_search);
}

TEST(StringSearch, StopsAtEachQuestion) {
  StringSearch call = {.text = "a cat \xC3\xA9 and Cats \x80 the cat",
                       .pattern = spell("cat"),
                       .breaks = Longs{0x20},
                       .nth = 3};
  for (const bool masked : {false, true}) {  // the two ways of searching
    if (masked) call.mask = {{'C'}, {'c'}};
    call.mask_count = call.mask.count();
    expect_same_at_any_stop(
        call,
        {StringSearch::kFind, StringSearch::kFindPrevious,
         StringSearch::kFindNth, StringSearch::kCount, StringSearch::kFindAll});
  }
}

TEST(CompareCharacters, FollowTheirRules) {
  const char* const hel = "h\xC3\xA9l";
  struct Case {
    const char* what;
    const char* text;
    std::int32_t position;
    const char* pattern;
    std::optional<Flags> flags;
    std::int32_t want;
    std::int32_t next;  // -81: untouched
  };
  const Case cases[] = {
      {"from inside a character", hel, 2, "\xC3\xA9l", {}, 0, 4},
      {"any flag but 1 is open", hel, 0, "??l", Flags{2, 255, 1}, 1, 4},
      {"a stray is skipped", "h\x80l", 0, "hl", {}, 1, 3},
      {"a cut character", "a\xE2\x82", 0, "a?", Flags{1, 0}, 0, 3},
      {"an empty pattern anywhere", hel, 99, "", {}, 1, -81},
      {"before the text", hel, -1, "h", {}, 0, 4},
      {"what follows does not matter", hel, 0, "h", {}, 1, 1},
  };
  for (const Case& c : cases) {
    const StringSearch call = {.operation = StringSearch::kCompareSelection,
                               .text = c.text,
                               .pattern = spell(c.pattern),
                               .flags = c.flags,
                               .start = c.position};
    expect_answer(c.what, call, {.result = c.want, .outs = {c.next}});
  }
}

TEST(BreakChars, FollowTheirRules) {
  struct Case {
    const char* what;
    const char* text;
    std::int32_t end, match_start, match_end, break_count;
    unsigned char edge;
    Longs sides;
  };
  const Case cases[] = {
      {"start of the text", "a b", 3, 0, 1, 1, 1, {1, 1}},
      {"the edge byte is copied", "a b", 3, 0, 1, 1, 7, {7, 1}},
      {"end of the range, text goes on", "a b", 1, 0, 1, 1, 0, {0, 0}},
      {"start of a later range", "a b", 3, 2, 3, 1, 0, {1, 0}},
      {"nothing but strays before", "\x80\x80 ", 3, 2, 2, 1, 1, {0, 1}},
      {"a cut character after", " \xE2\x82", 3, 1, 1, 1, 1, {1, 0}},
      {"before the text", " ", 1, -1, -1, 1, 1, {0, 0}},
      {"beyond the text", " ", 1, 2, 2, 1, 1, {0, 0}},
  };
  for (const Case& c : cases) {
    StringSearch call = {.operation = StringSearch::kTestBreaks,
                         .text = c.text,
                         .breaks = Longs{0x20},
                         .edge = c.edge,
                         .start = c.match_start,
                         .end = c.end,
                         .match_end = c.match_end};
    call.break_count = c.break_count;
    expect_answer(c.what, call, {.outs = c.sides});
  }
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
  };
  for (const auto& c : cases) {
    for (const int misses : {1, 7, 8, 200, 400}) {
      StringSearch call = {.pattern = spell(c.pattern)};
      for (int i = 0; i < misses; ++i) call.text += c.miss;
      call.text += c.rest;
      call.end = length_of(call.text);
      EXPECT_EQ(first_difference(call), "");
      call.mask = {{'A', 'B', 0xA9C3}, {'a', 'b', 'e'}};
      call.mask_count = call.mask.count();
      EXPECT_EQ(first_difference(call), "");
    }
  }
}

// Where only strays precede a match, the edge of the text is offset 0, which a
// forward search passes over and a backward search tries.
TEST(StringSearch, BackwardsTriesContinuationBytesAtTheStart) {
  StringSearch call = {.operation = StringSearch::kFindPrevious,
                       .text =
                           "\x80\x80"
                           "a ",
                       .pattern = spell("a"),
                       .breaks = Longs{0x20}};
  expect_answer("backward", call, {.result = 1, .outs = {0, 0}});
  call.operation = StringSearch::kFind;
  expect_answer("forward", call, {.result = 0});
}

// The host finds a match already written, or 0 and the range's end.
TEST(StringSearch, WritesAMatchBeforeTheHostIsAsked) {
  const StringSearch call = {
      .operation = StringSearch::kFind, .text = "xxa", .pattern = spell("a")};
  const Outcome o = outcome_of(call, Side::kLibrary, {1});
  EXPECT_EQ(o.outs_when_asked,
            (Longs{0, 3, -83, -84, 0, 3, -83, -84, 2, 3, -83, -84}));
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
      {"one byte a character", "a\xC3\xA9", "abz", "ab\x80z"},
      {"two", "\xD0\x96\xD1\x8F", "\xD0\x96\xD0\xA9",
       "\xD0\x96\x80\x80\xD0\xA9"},
      {"three", "\xE3\x81\x82\xE3\x81\x84", "\xE3\x81\x82\xE3\x82\xA1",
       "\xE3\x81\x82\xBF\xE3\x82\xA1"},
      {"three, of which a lead byte is rare", "\xE3\x81\x82\xE3\x81\x84",
       "\xE3\x81\x82\xE4\x81\x81", "\xE3\x81\x82\xBF\xE4\x81\x81"},
      {"two, out of order where a mask maps it",
       "\xD0\x96\xD1\x8F",
       "\xD0\x96\xD0\xA9",
       "\xD0"
       "A\xD0\xA9",
       {{packed("\xD0"
                "A")},
        {packed("\xD0\x96")}}},
      {"four", "\xF0\x9F\x98\x80 ", "\xF0\x9F\x98\x80\xF0\x9F\x98\x81",
       "\xF0\x9F\x98\x80\x80\xF0\x9F\x98\x81"},
      {"several", "\xD0\x96 ", "\xD0\x96-\xD0\xA9", "\xD0\x96-\x80\xD0\xA9"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    StringSearch call = {.pattern = spell(c.pattern), .mask = c.mask};
    std::string orderly;
    while (orderly.size() < 4000) orderly += c.filler;
    for (std::size_t i = 1; i <= 16; ++i) {
      call.text += orderly.substr(0, orderly.size() * i / 16) + c.torn;
    }
    call.end = length_of(call.text);
    for (const auto operation :
         {StringSearch::kFindAll, StringSearch::kFindPrevious}) {
      call.operation = operation;
      EXPECT_EQ(first_difference(call), "");
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
    EXPECT_EQ(first_difference(call), "");
    call.operation = StringSearch::kFindPrevious;
    EXPECT_EQ(first_difference(call), "");
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
  call.breaks = spell(" .");
  for (const bool invert : {false, true}) {
    call.invert = invert ? 1 : 0;
    EXPECT_EQ(first_difference(call), "");
  }
}

// So many members that they are indexed, ASCII and the rest apart.
TEST(BreakChars, CountUpToTheLastOfAscii) {
  StringSearch call = {.pattern = spell("a"), .breaks = Longs(5000, 'b')};
  call.breaks->back() = 0x7F;
  while (call.text.size() < 30'000) call.text += "a\x7F";
  call.end = length_of(call.text);
  EXPECT_EQ(first_difference(call), "");
}

TEST(StringSearch, OutlivesShortMemory) {
  StringSearch call = {.pattern = spell("a"), .breaks = Longs(5000, 'a')};
  for (const std::string& text :
       {std::string("bab"), std::string(1'100'000, 'a')}) {
    call.text = text;
    call.end = length_of(text);
    with_each_request_refused([&](const HeapWatch& heap) {
      const Outcome o = outcome_of(call, Side::kLibrary, {0});
      const Longs list = longs_in(o.list.bytes);
      EXPECT_EQ(o.outs[0], std::ssize(list));
      EXPECT_EQ(o.list.kind, list.empty() ? BlockState::Kind::kNull
                                          : BlockState::Kind::kUnlocked);
      EXPECT_TRUE(o.result == 1 || (list.empty() && o.outs[1] == call.end));
      const bool whole = !heap.failed() || o.outs[1] == call.end;
      // The match that found no room ends where the search stopped.
      const std::int32_t matches = whole ? call.end : o.outs[1] - 1;
      EXPECT_EQ(o.outs[0], o.result == 0 || text == "bab" ? 0 : 2 * matches);
    });
  }
}

}  // namespace
}  // namespace quill::test
