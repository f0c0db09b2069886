// What tests expect of calls: that a family's check finds nothing on seeded
// bytes; answers stated by hand, of the library and of the naive twin that it
// is compared with; and all or nothing where the heap refuses a request.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/support/compare.h"
#include "tests/support/heap_watch.h"
#include "tests/support/input.h"

namespace quill::test {

// As libFuzzer does for a fuzz target: runs the check on one input after
// another, until it has something to report.
template <class Check>
void for_random_inputs(std::uint32_t seed, int rounds, Check check) {
  std::mt19937 generator(seed);
  std::vector<std::uint8_t> bytes(4096);
  for (int round = 0; round < rounds; ++round) {
    for (std::uint8_t& byte : bytes) {
      byte = static_cast<std::uint8_t>(generator());
    }
    Input in(bytes);
    const std::string difference = check(in);
    ASSERT_TRUE(difference.empty()) << "round " << round << difference;
  }
}

// What a test states of an outcome; the rest is not looked at.
struct Stated {
  std::optional<std::int32_t> result = {};
  Longs outs = {};  // the first of them
  std::optional<BlockState> list = {};
  std::optional<BlockState> text = {};
};

template <class Call>
void expect_answer(const char* why, const Call& call, const Stated& stated,
                   std::initializer_list<Side> sides = {Side::kLibrary,
                                                        Side::kNaive}) {
  for (const Side side : sides) {
    SCOPED_TRACE(testing::Message() << why << ", side " << show(side));
    Outcome o = outcome_of(call, side);
    o.outs.resize(stated.outs.size());
    EXPECT_EQ(o.result, stated.result.value_or(o.result));
    EXPECT_EQ(o.outs, stated.outs);
    EXPECT_EQ(o.list, stated.list.value_or(o.list));
    EXPECT_EQ(o.text, stated.text.value_or(o.text));
  }
}

// With each request refused in turn the library does all the same, where it can
// do without, or leaves one of the outcomes in `refused`.
template <class Call>
void expect_all_or_nothing(const Call& call,
                           const std::vector<Outcome>& refused) {
  const Outcome done = outcome_of(call, Side::kLibrary, {0});
  int refusals = 0;
  with_each_request_refused([&](const HeapWatch& heap) {
    const Outcome seen = outcome_of(call, Side::kLibrary, {0});
    if (seen == done) return;
    ++refusals;
    EXPECT_TRUE(heap.failed());
    EXPECT_TRUE(std::find(refused.begin(), refused.end(), seen) !=
                refused.end())
        << show(seen);
  });
  EXPECT_GT(refusals, 0);
}

// Where a text is one match after the other, of `longs` longs a byte, and all
// make a list that grows: with the first requests refused there is none. With a
// later one refused it keeps what it has room for, and the search ends at the
// match that didn't fit, or `passed` bytes behind its start.
template <class Call>
void expect_what_fits(const Call& call, int longs, int passed) {
  int cut_short = 0;
  with_each_request_refused([&](const HeapWatch& heap) {
    const Outcome o = outcome_of(call, Side::kLibrary, {0});
    const std::int32_t size = length_of(call.text);
    const bool is_cut = o.result == 1 && o.outs[0] < size * longs;
    cut_short += is_cut ? 1 : 0;
    EXPECT_EQ(o.list.kind, o.result == 1 ? BlockState::Kind::kUnlocked
                                         : BlockState::Kind::kNull);
    EXPECT_EQ(std::ssize(o.list.bytes), o.outs[0] * 4);
    EXPECT_EQ(o.outs[1], is_cut ? o.outs[0] / longs + passed : size);
    EXPECT_TRUE(heap.failed() || (o.result == 1 && !is_cut));
    EXPECT_TRUE(!is_cut || o.outs[0] % 1'000'000 == 0);
  });
  EXPECT_GT(cut_short, 0);
}

}  // namespace quill::test
