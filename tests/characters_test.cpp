// Reading and counting characters.
#include <gtest/gtest.h>

#include "tests/checks/characters_check.h"
#include "tests/support/guarded_text.h"
#include "tests/support/random_inputs.h"

namespace quill::test {
namespace {

constexpr CharacterCall::Operation kReaders[] = {
    CharacterCall::kNext, CharacterCall::kNextValue, CharacterCall::kContaining,
    CharacterCall::kPrevious};

TEST(Characters, AgreeWithNaiveTwinsOnRandomCalls) {
  for_random_inputs(21, 20'000, check_characters);
}

TEST(Characters, StopAtEachQuestion) {
  const CharacterCall call = {.operation = CharacterCall::kCountTask,
                              .text = "h\xC3\xA9llo \x80\xE2\x82\xAC\xF0\x9F"};
  for (const std::int32_t yield_max : {1, 2, 3}) {
    EXPECT_EQ(first_difference_at_any_stop(call, {yield_max}), "");
  }
}

// At every position and end of every window of up to four bytes: the ends of
// each class and a byte from within.
TEST(Readers, AgreeWithNaiveTwinsOnEveryWindow) {
  constexpr std::array<unsigned char, 14> kBytes = {
      0x00, 0x41, 0x7F, 0x80, 0x9F, 0xBF, 0xC0,
      0xC3, 0xDF, 0xE0, 0xEF, 0xF0, 0xF8, 0xFF};
  std::size_t windows = 1;
  for (std::int32_t size = 0; size <= 4; ++size, windows *= kBytes.size()) {
    const GuardedText text(std::string(static_cast<std::size_t>(size), '?'));
    for (std::size_t window = 0; window < windows; ++window) {
      std::size_t digits = window;
      for (std::int32_t i = 0; i < size; ++i, digits /= kBytes.size()) {
        text.data()[i] = static_cast<char>(kBytes[digits % kBytes.size()]);
      }
      for (std::int32_t end = 0; end <= size; ++end) {
        for (std::int32_t position = 0; position <= size + 1; ++position) {
          for (const auto reader : kReaders) {
            ASSERT_EQ(read_character(Side::kLibrary, reader, text.data(),
                                     position, end),
                      read_character(Side::kNaive, reader, text.data(),
                                     position, end))
                << show(std::string(text.view())) << " reader " << reader
                << " at " << position << ", end " << end;
          }
        }
      }
    }
  }
}

// Answers stated by hand, for the library and for the twins.
TEST(Readers, FollowTheirRules) {
  struct Case {
    const char* why;
    CharacterCall::Operation reader;
    const char* text;
    std::int32_t position, end;
    Reading want;
  };
  const char* const word = "h\xC3\xA9l\xE2\x82\xAC\xF0\x9F\x98\x80";
  const std::int32_t kMinimum = -2147483647 - 1;
  const Case cases[] = {
      {"a packed character",
       CharacterCall::kNext,
       word,
       1,
       11,
       {1, 1, -9, 0xA9C3, 3}},
      {"from inside one to the next",
       CharacterCall::kNext,
       word,
       2,
       11,
       {1, 3, -9, 0x6C, 4}},
      {"its code point",
       CharacterCall::kNextValue,
       word,
       4,
       11,
       {1, 4, 3, 0x20AC, 7}},
      {"of four bytes",
       CharacterCall::kNextValue,
       word,
       7,
       11,
       {1, 7, 4, 0x1F600, 11}},
      {"cut by the end",
       CharacterCall::kNext,
       word,
       7,
       10,
       {0, -9, -9, -9, 10}},
      {"the one around",
       CharacterCall::kContaining,
       word,
       6,
       11,
       {1, 4, -9, 0xAC82E2, 7}},
      {"no lead before",
       CharacterCall::kContaining,
       "\x80\x80z",
       1,
       3,
       {1, 2, -9, 0x7A, 3}},
      {"the one before",
       CharacterCall::kPrevious,
       word,
       4,
       11,
       {1, 3, -9, 0x6C, 4}},
      {"none before",
       CharacterCall::kPrevious,
       word,
       0,
       11,
       {0, -9, -9, -9, 11}},
      {"no text", CharacterCall::kNext, nullptr, 1, 5, {0, -9, -9, -9, 5}},
      {"no text", CharacterCall::kNextValue, nullptr, 1, 5, {0, -9, -9, -9, 5}},
      {"no text",
       CharacterCall::kContaining,
       nullptr,
       1,
       5,
       {0, -9, -9, -9, 5}},
      {"no text", CharacterCall::kPrevious, nullptr, 1, 5, {0, -9, -9, -9, 5}},
      {"before the text",
       CharacterCall::kContaining,
       word,
       kMinimum,
       -5,
       {0, -9, -9, -9, -5}},
  };
  for (const Case& c : cases) {
    for (const Side side : {Side::kLibrary, Side::kNaive}) {
      EXPECT_EQ(read_character(side, c.reader, c.text, c.position, c.end),
                c.want)
          << c.why;
    }
  }
}

TEST(Counters, FollowTheirRules) {
  struct Case {
    const char* why;
    std::string text;
    std::int32_t start, end, result, count;
  };
  const std::string word = "h\xC3\xA9llo";
  const Case cases[] = {
      {"characters, not bytes", word, 0, 6, 1, 5},
      {"a continuation byte counts", word, 2, 6, 1, 4},
      {"turned round", word, 4, 3, 0, 0},
      {"before the text", word, -1, 3, 0, 0},
      {"cut by the end", "\x80\x80\xE2\x82", 0, 4, 1, 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    for (const auto operation :
         {CharacterCall::kCount, CharacterCall::kCountTask}) {
      const CharacterCall call = {operation, c.text, c.start, c.end};
      for (const Side side : {Side::kLibrary, Side::kNaive}) {
        const Outcome o = observe(run_of(call), side, {});
        EXPECT_EQ(o.result, c.result);
        EXPECT_EQ(o.outs[0], c.count);
      }
    }
  }
  std::int32_t count = -5;
  EXPECT_EQ(utf8_CountCharacters(nullptr, 0, 0, &count), 0);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(utf8_CountCharactersTask(nullptr, 0, 0, &count, 0, nullptr), 0);
}

TEST(CountToOffset, FollowsItsRules) {
  struct Case {
    const char* why;
    std::string text;
    std::int32_t start, end, request;
    std::int32_t result, count, offset;
  };
  constexpr std::int32_t kMost = 2'147'483'647;
  const std::string word = "h\xC3\xA9llo";
  const Case cases[] = {
      {"past the second", word, 0, 6, 2, 1, 2, 3},
      {"more than there are", word, 0, 6, 6, 0, 5, 6},
      {"none is refused", word, 0, 6, 0, 0, 0, 6},
      {"from inside a character", word, 2, 6, 1, 1, 1, 3},
      {"from the end", word, 6, 6, 1, 0, 0, 6},
      {"cut after some", "ab\xE2\x82\xAC", 0, 4, 3, 0, 0, 4},
      // Steps that stay where they are, or go back once and then stay: too many
      // for the naive twin.
      {"a stray byte holds", "a\x80z", 0, 3, kMost, 1, kMost, 1},
      {"or throws back", "a\x80\x80\x80z", 3, 5, kMost, 1, kMost, 1},
      {"behind a character of two", "\xC3\xA9\x80z", 0, 4, kMost, 1, kMost, 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const CharacterCall call = {CharacterCall::kCountToOffset, c.text, c.start,
                                c.end, c.request};
    for (const Side side : {Side::kLibrary, Side::kNaive}) {
      if (side == Side::kNaive && c.request == kMost) continue;
      const Outcome o = observe(run_of(call), side, {});
      EXPECT_EQ(o.result, c.result);
      EXPECT_EQ(o.outs[0], c.count);
      EXPECT_EQ(o.outs[1], c.offset);
    }
  }
  std::int32_t count = 1;
  std::int32_t offset = -88;
  EXPECT_EQ(utf8_CountToOffset(nullptr, 0, 5, &count, &offset), 0);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(offset, 5);
}

}  // namespace
}  // namespace quill::test
