// Reading and counting characters.
#include <gtest/gtest.h>

#include "tests/checks/calls.h"
#include "tests/support/expect.h"
#include "tests/support/guarded_text.h"

namespace quill::test {
namespace {

TEST(Characters, AgreeWithNaiveTwinsOnRandomCalls) {
  for_random_inputs(21, 20'000, check_characters);
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

TEST(Characters, FollowTheirRules) {
  using enum CharacterCall::Operation;
  constexpr std::int32_t kMost = 2'147'483'647;
  const char* const word = "h\xC3\xA9l\xE2\x82\xAC\xF0\x9F\x98\x80";
  const struct {
    const char* why;
    CharacterCall::Operation operation;
    const char* text;
    std::int32_t start, end;
    std::int32_t result;
    Longs outs;
    std::int32_t request = 1;
  } cases[] = {
      {"from inside one", kNext, word, 2, 11, 1, {3, -9, 0x6C, 4}},
      {"cut by the end", kNext, word, 7, 10, 0, {-9, -9, -9, 10}},
      {"four bytes", kNextValue, word, 7, 11, 1, {7, 4, 0x1F600, 11}},
      {"the one around", kContaining, word, 6, 11, 1, {4, -9, 0xAC82E2, 7}},
      {"no lead before", kContaining, "\x80\x80z", 1, 3, 1, {2, -9, 0x7A, 3}},
      {"before the text", kContaining, word, -7, -5, 0, {-9, -9, -9, -5}},
      {"the one before", kPrevious, word, 4, 11, 1, {3, -9, 0x6C, 4}},
      {"none before", kPrevious, word, 0, 11, 0, {-9, -9, -9, 11}},
      {"a continuation byte counts", kCount, word, 2, 11, 1, {4}},
      {"past the second", kCountToOffset, word, 0, 11, 1, {2, 3}, 2},
      {"more than there are", kCountToOffset, word, 0, 11, 0, {5, 11}, 9},
      {"none is refused", kCountToOffset, word, 0, 11, 0, {0, 11}, 0},
      {"cut after some", kCountToOffset, word, 0, 6, 0, {0, 6}, 4},
      // Steps that stay where they are, or go back once and then stay: too many
      // for the naive twin.
      {"held", kCountToOffset, "a\x80z", 0, 3, 1, {kMost, 1}, kMost},
      {"back", kCountToOffset, "a\x80\x80z", 2, 4, 1, {kMost, 1}, kMost},
      {"two", kCountToOffset, "\xC3\xA9\x80z", 0, 4, 1, {kMost, 2}, kMost},
  };
  for (const auto& c : cases) {
    const CharacterCall call = {c.operation, c.text, c.start, c.end, c.request};
    const Stated stated = {.result = c.result, .outs = c.outs};
    expect_answer(c.why, call, stated, {Side::kLibrary});
    if (c.request != kMost) {
      expect_answer(c.why, call, stated, {Side::kNaive});
    }
  }
}

}  // namespace
}  // namespace quill::test
