// Counting characters and stepping over them, against models that go character
// by character.
#include <gtest/gtest.h>

#include "tests/models/characters_model.h"
#include "tests/support/blocks.h"
#include "tests/support/each_kernel.h"
#include "tests/support/guarded_text.h"
#include "tests/support/random_text.h"

namespace quill::test {
namespace {

// Texts in order, out of order, and in order with a fault in the middle of a
// long stretch.
std::string random_case(Random& random) {
  const int characters = random.pick<int>({0, 2, 7, 30, 60, 150, 700});
  if (random.one_in(3)) return random_text(random, characters);
  if (random.one_in(2)) return random_bytes(random, characters);
  return random_text(random, characters / 2) + random_bytes(random, 2) +
         random_text(random, characters / 2);
}

TEST(Counters, AgreeWithModels) {
  with_each_kernel([] {
    Random random(21);
    for (int round = 0; round < 2000; ++round) {
      const std::string bytes = random_case(random);
      const GuardedText held(bytes);
      const auto size = static_cast<std::int32_t>(bytes.size());
      const std::int32_t start = random.one_in(2) ? 0 : random.between(0, size);
      const std::int32_t end =
          random.one_in(2) ? size : random.between(0, size);
      SCOPED_TRACE(testing::PrintToString(bytes));
      SCOPED_TRACE(testing::Message() << start << " to " << end);

      std::int32_t count = -5;
      std::int32_t wanted = -6;
      ASSERT_EQ(utf8_CountCharacters(held.data(), start, end, &count),
                model_count(bytes.data(), start, end, &wanted));
      ASSERT_EQ(count, wanted);

      for (const int request : {-1, 0, 1, 2, wanted - 1, wanted, wanted + 1,
                                random.between(0, size + 1), 3 * size + 9}) {
        std::int32_t seen[2] = {request, -88};
        std::int32_t modelled[2] = {request, -88};
        ASSERT_EQ(
            utf8_CountToOffset(held.data(), start, end, &seen[0], &seen[1]),
            model_count_to_offset(bytes.data(), start, end, &modelled[0],
                                  &modelled[1]))
            << "for " << request;
        ASSERT_EQ(seen[0], modelled[0]) << "for " << request;
        ASSERT_EQ(seen[1], modelled[1]) << "for " << request;
      }
    }
  });
}

TEST(Counters, AskTheHostAsModelsDo) {
  with_each_kernel([] {
    Random random(22);
    for (int round = 0; round < 800; ++round) {
      const std::string bytes = random_case(random);
      const GuardedText held(bytes);
      const auto size = static_cast<std::int32_t>(bytes.size());
      for (const std::int32_t yield_max : kYieldMaxima) {
        const int stop_at = random.one_in(2) ? kNever : random.between(0, 9);
        const auto answer = random.pick<unsigned char>({0, 2, 255});
        const int change_at = random.one_in(3) ? random.between(0, 3) : kNever;
        const auto run = [&](auto count_task) {
          const YieldMaxScope scope(yield_max);
          YieldRecorder host(stop_at, answer);
          host.change_maximum(change_at, 3);
          std::int32_t count = -5;
          const std::int32_t result = count_task(&count, host);
          return std::make_tuple(result, count, host.calls());
        };
        ASSERT_EQ(run([&](std::int32_t* count, YieldRecorder& host) {
                    return utf8_CountCharactersTask(held.data(), 0, size, count,
                                                    9, host.callback());
                  }),
                  run([&](std::int32_t* count, YieldRecorder& host) {
                    return model_count_task(bytes.data(), 0, size, count, 9,
                                            host);
                  }))
            << testing::PrintToString(bytes) << " every " << yield_max;
      }
    }
  });
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
      {"within one", word, 1, 3, 1, 1},
      {"a continuation byte counts", word, 2, 6, 1, 4},
      {"none", word, 6, 6, 1, 0},
      {"turned round", word, 4, 3, 0, 0},
      {"before the text", word, -1, 3, 0, 0},
      {"stray bytes count one each",
       "\x80\x80"
       "A",
       0, 3, 1, 3},
      {"cut by the end", "\xE2\x82", 0, 2, 1, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    std::int32_t count = -5;
    EXPECT_EQ(utf8_CountCharacters(c.text.data(), c.start, c.end, &count),
              c.result);
    EXPECT_EQ(count, c.count);
    const YieldRecorder host;
    EXPECT_EQ(utf8_CountCharactersTask(c.text.data(), c.start, c.end, &count, 0,
                                       host.callback()),
              c.result);
    EXPECT_EQ(count, c.count);
  }
  std::int32_t count = -5;
  EXPECT_EQ(utf8_CountCharacters(nullptr, 0, 0, &count), 0);
  EXPECT_EQ(count, 0);
}

TEST(CountToOffset, FollowsItsRules) {
  struct Case {
    const char* why;
    std::string text;
    std::int32_t start, end, request;
    std::int32_t result, count, offset;
  };
  const std::string word = "h\xC3\xA9llo";
  const Case cases[] = {
      {"past the second", word, 0, 6, 2, 1, 2, 3},
      {"all", word, 0, 6, 5, 1, 5, 6},
      {"more than there are", word, 0, 6, 6, 0, 5, 6},
      {"none is refused", word, 0, 6, 0, 0, 0, 6},
      {"from inside a character", word, 2, 6, 1, 1, 1, 3},
      {"from the end", word, 6, 6, 1, 0, 0, 6},
      {"before the text", word, -1, 6, 1, 0, 0, 6},
      {"cut by the end", "\xE2\x82\xAC", 0, 2, 1, 0, 0, 2},
      {"cut after some", "ab\xE2\x82\xAC", 0, 4, 3, 0, 0, 4},
      // Steps that stay where they are, or go back once and then stay.
      {"a stray byte holds", "a\x80z", 0, 3, 2147483647, 1, 2147483647, 1},
      {"or throws back", "a\x80\x80\x80z", 3, 5, 2147483647, 1, 2147483647, 1},
      {"behind a character of two", "\xC3\xA9\x80z", 0, 4, 2000000000, 1,
       2000000000, 2},
      {"no lead before", "\x80\x80z", 0, 3, 1, 1, 1, 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const GuardedText text(c.text);
    std::int32_t count = c.request;
    std::int32_t offset = -88;
    EXPECT_EQ(utf8_CountToOffset(text.data(), c.start, c.end, &count, &offset),
              c.result);
    EXPECT_EQ(count, c.count);
    EXPECT_EQ(offset, c.offset);
  }
  std::int32_t count = 1;
  std::int32_t offset = -88;
  EXPECT_EQ(utf8_CountToOffset(nullptr, 0, 5, &count, &offset), 0);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(offset, 5);
}

}  // namespace
}  // namespace quill::test
