// Selections copied, compared, sorted, ordered, mapped, inverted and extracted.
#include <gtest/gtest.h>

#include <numeric>

#include "tests/checks/calls.h"
#include "tests/support/alphabet.h"
#include "tests/support/expect.h"
#include "tests/support/guarded_text.h"

namespace quill::test {
namespace {

TEST(Selections, AgreeWithNaiveTwinsOnRandomCalls) {
  for_random_inputs(61, 40'000, check_selection);
}

TEST(CopySelections, KeepTheirRules) {
  const struct {
    const char* why;
    Longs list;
    std::int32_t capacity, result, copied;
  } cases[] = {
      {"one that does not fit", {0, 3, 5, 7}, 4, 0, 3},
      {"full before the last", {0, 3, 5, 7}, 3, 1, 3},
      {"no room at all", {0, 3}, 0, 0, -81},
      {"an end before the start covers nothing", {0, 3, 7, 2, 3, 5}, 9, 1, 5},
      {"a start before the text stops it", {0, 3, -2, 2, 3, 5}, 9, 0, 3},
      {"lengths beyond 32 bits", {0, 3, INT32_MIN, INT32_MAX}, 9, 0, 3},
  };
  for (const auto& c : cases) {
    const SelectionCall call = {.operation = SelectionCall::kCopy,
                                .text = "abcdefgh",
                                .list = c.list,
                                .size = c.capacity};
    expect_answer(c.why, call, {.result = c.result, .outs = {c.copied}});
  }
}

TEST(CompareSelections, KeepTheirRules) {
  const struct {
    const char* why;
    std::string text;
    Longs pair;
    std::int32_t mask_count;  // 1: takes A for a; -1: nothing is mapped
    std::int32_t result;
  } cases[] = {
      {"a prefix comes first", "ababc", {0, 2, 2, 5}, 0, -1},
      {"masked alike", "Aa", {0, 1, 1, 2}, 1, 0},
      {"empty before others", "ab", {1, 1, 0, 2}, 0, -2},
      {"negative lengths", "abc", {2, 0, 3, 0}, 0, 1},
      {"cut characters are equal", "a\xE2zza\xE2z", {0, 2, 4, 7}, 0, 0},
      {"standing still ends", "a\x80\x80\x80", {0, 4, 0, 4}, -1, 0},
      {"one stands still", "z\x80\x80\x80zz", {0, 4, 4, 6}, -1, 2},
      {"reads before its start", "z\x80y", {1, 2, 2, 3}, -1, 1},
      {"starts before the text", "abcdefgh", {-5, 3, 0, 1}, 0, 0},
      {"lengths kept in sign", "a", {INT32_MAX, 0, 0, INT32_MAX}, 0, INT32_MIN},
  };
  for (const auto& c : cases) {
    const SelectionCall call = {.operation = SelectionCall::kCompare,
                                .text = c.text,
                                .list = c.pair,
                                .mask = {{'A'}, {'a'}},
                                .mask_count = c.mask_count};
    expect_answer(c.why, call, {.result = c.result});
  }
}

// So many equal texts and so many different ones that a rank and a number
// among equals need more than 32 bits.
TEST(SortSelections, AgreeWithNaiveTwinOnManySelections) {
  std::mt19937 generator(72);
  SelectionCall call;
  for (int i = 0; i < 40'000; ++i) {
    call.text += static_cast<char>('b' + generator() % 25);
  }
  call.text += 'a';
  for (int i = 0; i < 102'000; ++i) {
    const int start = i % 3 == 0 ? i / 3 : 40'000;
    call.list.insert(call.list.end(), {start, start + (i % 3 == 0 ? 9 : 1)});
  }
  EXPECT_EQ(first_difference(call), "");
}

// Each text four bytes longer than another, so that one ends at every level.
TEST(SortSelections, AgreeWithNaiveTwinOnLongEqualTexts) {
  SelectionCall call = {.text = std::string(1200, 'a')};
  for (int i = 0; i < 300; ++i) {
    call.list.insert(call.list.end(), {i % 2, i * 7 % 300 * 4});
  }
  EXPECT_EQ(first_difference(call), "");
  call.mask = {{'A'}, {'a'}};
  call.mask_count = 1;
  EXPECT_EQ(first_difference(call), "");
}

// Behind any number of others, and before many or none.
TEST(SortSelections, AgreeWithNaiveTwinOnLettersWrittenTooLong) {
  for (const std::size_t before : {0u, 20u, 36u, 52u, 68u, 84u}) {
    for (const std::size_t behind : {0u, 80u}) {
      const std::string some(before, 'a');
      SelectionCall call = {.text = some + "\xC1\xA1"};
      call.text.append(behind, 'a');
      const auto middle = length_of(call.text);
      call.text += some + "z";
      const auto end = length_of(call.text);
      for (int i = 0; i < 30; ++i) {
        call.list.insert(call.list.end(), {0, middle, middle, end});
      }
      EXPECT_EQ(first_difference(call), "") << before << ' ' << behind;
    }
  }
}

TEST(SortSelections, NeedNoMemory) {
  for_random_inputs(66, 2000, [](Input& in) -> std::string {
    const SelectionCall call = draw_selection_call(in);
    if (call.operation < SelectionCall::kSort ||
        call.operation > SelectionCall::kSortAnything) {
      return {};
    }
    const Outcome wanted = outcome_of(call, Side::kNaive, {});
    for (int fail_at = 0; fail_at < 8; ++fail_at) {
      const HeapWatch heap(fail_at, true);
      const Outcome seen = outcome_of(call);
      if (seen != wanted || heap.outstanding() != 0) return call.show();
    }
    return {};
  });
}

TEST(SelectionToMap, AgreesWithNaiveTwinOnShortRunsFarApart) {
  for (int i = 0; i < 6 * 64; ++i) {
    SelectionCall call = {.operation = SelectionCall::kToMap,
                          .size = 2000 + i % 64};
    call.map.resize(static_cast<std::size_t>(call.size + 9) / 8);
    for (int end = call.size + i / 64 % 2; end > 60; end -= 65) {
      const int length = end + 70 > call.size ? 56 + i / 128 : 57;
      call.list.insert(call.list.begin(), {end - length, end});
    }
    ASSERT_EQ(first_difference(call), "");
  }
}

TEST(SelectionSets, KeepTheirRules) {
  const struct {
    const char* why;
    Longs list;
    std::int32_t text_length;
    Longs ordered;
  } cases[] = {
      {"sorted, joined, empty ones left out",
       {5, 9, 0, 3, 2, 4, 7, 7},
       10,
       {0, 4, 5, 9}},
      {"what touches is joined", {0, 5, 5, 9}, 9, {0, 9}},
      {"a gap of one stays", {0, 5, 6, 9}, 9, {0, 5, 6, 9}},
      {"turned round, and a lone long", {9, 7, 4}, 10, {}},
      {"cut to the text", {INT32_MIN, INT32_MAX}, 10, {0, 10}},
      {"all at once", {20, 30, 11, 5, -5, -3, 9, 12, 8, 10}, 10, {8, 10}},
  };
  for (const auto& c : cases) {
    SelectionCall call = {.operation = SelectionCall::kOrder,
                          .list = c.list,
                          .size = c.text_length};
    expect_answer(c.why, call,
                  {.result = 1, .list = unlocked(bytes_in(c.ordered))});
    // The gaps of what is in order are selected instead.
    Longs gaps = c.ordered;
    gaps.insert(gaps.begin(), -1);
    gaps.push_back(c.text_length + 1);
    call = {.operation = SelectionCall::kInvert,
            .list = c.ordered,
            .start = -1,
            .end = c.text_length + 1};
    expect_answer(c.why, call, {.list = unlocked(bytes_in(gaps))});
  }
  // So long a text that the few selections are sorted.
  HeldBlock held(Longs{INT32_MAX - 1, INT32_MAX, 0, 1, 7, INT32_MAX - 5});
  EXPECT_EQ(OrderSelections(&held.block, INT32_MAX), 1);
  EXPECT_EQ(held.longs(),
            (Longs{0, 1, 7, INT32_MAX - 5, INT32_MAX - 1, INT32_MAX}));
}

// 600,000 runs: the list grows beyond its first million longs. Where that is
// refused once, the run that did not fit is missing, and where it is refused
// for good, all that follow.
TEST(MapToSelection, FailsOrDropsWithoutMemory) {
  const SelectionCall call = {.operation = SelectionCall::kFromMap,
                              .size = 2'400'000,
                              .map = std::string(300'001, '\x22')};
  const std::string all = outcome_of(call).text.bytes;
  int gaps = 0;
  int cut = 0;
  with_each_request_refused([&](const HeapWatch& heap) {
    const Outcome o = outcome_of(call);
    const std::string& runs = o.text.bytes;
    if (o.result == 0) {
      EXPECT_TRUE(heap.failed());
      EXPECT_EQ(o.text, BlockState{});
      EXPECT_EQ(o.outs, Outcome().outs);
      return;
    }
    EXPECT_EQ(std::ssize(runs), o.outs[0] * 4);
    if (runs.size() == all.size() - 8) {
      EXPECT_TRUE(runs == all.substr(0, 4'000'000) + all.substr(4'000'008));
      ++gaps;
    } else if (runs != all) {
      EXPECT_TRUE(runs == all.substr(0, 4'000'000));
      ++cut;
    }
  });
  EXPECT_EQ(gaps, 1);
  EXPECT_GT(cut, 0);
}

TEST(ExtractSelections, RefuseWhatCantBeExtracted) {
  const struct {
    const char* why;
    const char* text;
    Longs list;
    std::int32_t prefix_length, result;
  } cases[] = {
      {"a negative length is none", "abc", {0, 2}, -5, 1},
      {"no text and nothing to take", nullptr, {2, 2}, 0, 1},
      {"no text", nullptr, {0, 2}, 0, 0},
      {"no prefix", "abc", {0, 2}, 1, 0},
      {"no prefix and nothing to take", "abc", {2, 2}, 1, 1},
      {"larger than a Block", "abc", {0, 1, 0, INT32_MAX}, 0, 0},
      {"one long", "abc", {0}, 0, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    const HeldBlock held(c.list);
    HeldBlock made(untouched());
    EXPECT_EQ(
        ExtractSelections(c.text, held.block, nullptr, c.prefix_length, nullptr,
                          0, &made.block, 0, YieldRecorder().callback()),
        c.result);
    EXPECT_EQ(made.block == untouched(), c.result == 0);
  }
}

TEST(ExtractSelections, LookAtNoStringsWhereNothingIsTaken) {
  const GuardedText text("abc");
  const char* const unreadable = text.data() + text.view().size();
  const HeldBlock held(Longs(40, 2));
  HeldBlock made(untouched());
  EXPECT_EQ(
      ExtractSelections(text.data(), held.block, unreadable, 5, unreadable, 5,
                        &made.block, 0, YieldRecorder().callback()),
      1);
  EXPECT_EQ(made.bytes(), "");
}

TEST(SelectionLists, StayAsTheyWereWhenMemoryIsShort) {
  SelectionCall calls[] = {
      {.operation = SelectionCall::kOrder, .list = {5, 9, 0, 3}, .size = 10},
      {.operation = SelectionCall::kOrder, .list = {0, 3, 5, 9}, .size = 10},
      {.operation = SelectionCall::kInvert, .list = Longs(2000), .end = 9999},
      {.operation = SelectionCall::kExtract, .text = "abc", .list = {0, 2}}};
  std::iota(calls[2].list.begin(), calls[2].list.end(), 1);
  for (const SelectionCall& call : calls) {
    SCOPED_TRACE(call.operation);
    // Ordering asks for memory before it locks the list.
    Outcome refused;
    refused.result = call.operation == SelectionCall::kInvert ? 1 : 0;
    refused.list = unlocked(bytes_in(call.list));
    refused.buffer = call.text + '|';
    if (call.operation == SelectionCall::kOrder) {
      refused.list.kind = BlockState::Kind::kLocked;
    }
    expect_all_or_nothing(call, {refused});
  }
}

// A long list is inverted piece by piece. One that isn't in order stays as it
// was, wherever that shows.
TEST(InvertSelections, WorkThroughLongLists) {
  const int size = 80'000;
  for (const int low : {0, 1, 2, 32'768, 32'769, size / 2, size - 32'769,
                        size - 32'768, size - 1}) {
    SelectionCall call = {.operation = SelectionCall::kInvert,
                          .list = Longs(size)};
    std::iota(call.list.begin(), call.list.end(), 1);
    // Below the long before it.
    if (low != 0) call.list[static_cast<std::size_t>(low)] = low - 1;
    for (const int start : {0, 1}) {
      for (const int end : {call.list.back(), size + 1}) {
        SCOPED_TRACE(testing::Message() << low << ' ' << start << ' ' << end);
        call.start = start;
        call.end = end;
        EXPECT_TRUE(first_difference(call).empty());
      }
    }
  }
}

}  // namespace
}  // namespace quill::test
