// Reading and counting characters.
#include <gtest/gtest.h>

#include "tests/checks/characters_check.h"
#include "tests/support/expect.h"
#include "tests/support/guarded_text.h"
#include "tests/support/random_inputs.h"

namespace quill::test {
namespace {

TEST(Characters, AgreeWithNaiveTwinsOnRandomCalls) {
  for_random_inputs(21, 20'000, check_characters);
}

TEST(Characters, StopAtEachQuestion) {
  const CharacterCall call = {.text = "h\xC3\xA9llo \x80\xE2\x82\xAC\xF0\x9F"};
  expect_same_at_any_stop(call, {CharacterCall::kCountTask});
}

// At every position and end of every window of up to four bytes: the ends of
// each class and a byte from within.
TEST(Readers, AgreeWithNaiveTwinsOnEveryWindow) {
  using enum CharacterCall::Operation;
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
          for (const auto reader :
               {kNext, kNextValue, kContaining, kPrevious}) {
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

struct Case {
  const char* why;
  CharacterCall::Operation operation;
  const char* text;
  std::int32_t start, end;
  std::int32_t result;
  Longs outs;
  std::int32_t request = 1;
};

CharacterCall call_of(const Case& c) {
  return {c.operation, c.text, c.start, c.end, c.request};
}

const char* const kWord = "h\xC3\xA9l\xE2\x82\xAC\xF0\x9F\x98\x80";

TEST(Readers, FollowTheirRules) {
  using enum CharacterCall::Operation;
  const Case cases[] = {
      {"from inside one", kNext, kWord, 2, 11, 1, {3, -9, 0x6C, 4}},
      {"cut by the end", kNext, kWord, 7, 10, 0, {-9, -9, -9, 10}},
      {"four bytes", kNextValue, kWord, 7, 11, 1, {7, 4, 0x1F600, 11}},
      {"the one around", kContaining, kWord, 6, 11, 1, {4, -9, 0xAC82E2, 7}},
      {"no lead before", kContaining, "\x80\x80z", 1, 3, 1, {2, -9, 0x7A, 3}},
      {"before the text", kContaining, kWord, -7, -5, 0, {-9, -9, -9, -5}},
      {"the one before", kPrevious, kWord, 4, 11, 1, {3, -9, 0x6C, 4}},
      {"none before", kPrevious, kWord, 0, 11, 0, {-9, -9, -9, 11}},
  };
  for (const Case& c : cases) {
    expect_answer(c.why, call_of(c), {.result = c.result, .outs = c.outs});
  }
}

TEST(Counters, FollowTheirRules) {
  using enum CharacterCall::Operation;
  constexpr std::int32_t kMost = 2'147'483'647;
  const Case cases[] = {
      {"a continuation byte counts", kCount, kWord, 2, 11, 1, {4}},
      {"past the second", kCountToOffset, kWord, 0, 11, 1, {2, 3}, 2},
      {"more than there are", kCountToOffset, kWord, 0, 11, 0, {5, 11}, 9},
      {"none is refused", kCountToOffset, kWord, 0, 11, 0, {0, 11}, 0},
      {"cut after some", kCountToOffset, kWord, 0, 6, 0, {0, 6}, 4},
      // Steps that stay where they are, or go back once and then stay: too many
      // for the naive twin.
      {"held", kCountToOffset, "a\x80z", 0, 3, 1, {kMost, 1}, kMost},
      {"back", kCountToOffset, "a\x80\x80z", 2, 4, 1, {kMost, 1}, kMost},
      {"two", kCountToOffset, "\xC3\xA9\x80z", 0, 4, 1, {kMost, 2}, kMost},
  };
  for (const Case& c : cases) {
    const Stated stated = {.result = c.result, .outs = c.outs};
    if (c.request == kMost) {
      expect_answer(c.why, call_of(c), stated, {Side::kLibrary});
    } else {
      expect_answer(c.why, call_of(c), stated);
    }
  }
}

}  // namespace
}  // namespace quill::test
