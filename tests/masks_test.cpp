// Masks: lookups, the order in which a sort leaves equal keys, and rewriting
// text.
#include <gtest/gtest.h>

#include <numeric>

#include "tests/checks/masks_check.h"
#include "tests/support/alphabet.h"
#include "tests/support/heap_watch.h"
#include "tests/support/random_inputs.h"

namespace quill::test {
namespace {

TEST(Masks, AgreeWithNaiveTwinsOnRandomCalls) {
  for_random_inputs(4, 20'000, check_masks);
}

TEST(Masks, StopAtEachQuestion) {
  MaskCall call = {.text = "ab \xC3\xA9 abba \xE2\x82\xAC ba",
                   .mask = {{'a', 'b'}, {'A', 0xA9C3}},
                   .longs = {0, 3, 5, 11, 13, 17}};
  for (const auto operation :
       {MaskCall::kRewrite, MaskCall::kRewriteSelections}) {
    call.operation = operation;
    for (const std::int32_t yield_max : {1, 2, 3}) {
      EXPECT_EQ(first_difference_at_any_stop(call, {yield_max}), "");
    }
  }
}

// Answers stated by hand, here and in the next two, for library and twins.
TEST(Masks, MapOneCharacter) {
  const Mask ordered = {{0x41, 0x41, 0x42}, {1, 2, 3}};
  const Mask unordered = {{0x42, 0x41, 0x41}, {1, 2, 3}};
  struct Case {
    const char* what;
    const Mask& mask;
    std::int32_t count;
    std::int32_t character;
    Longs want;  // bisected, in array order, in the list, in and out of the set
  };
  const Case cases[] = {
      {"the first of equal keys", ordered, 3, 0x41, {1, 1, 1, 1, 0}},
      {"no key", ordered, 3, 0x43, {0x43, 0x43, 0, 0, 1}},
      {"past the count", ordered, 2, 0x42, {0x42, 0x42, 0, 0, 1}},
      {"bisection misses it", unordered, 3, 0x42, {0x42, 1, 1}},
      {"fewer keys than none", ordered, -1, 0x41, {0x41, 0x41, 0, 0, 1}},
  };
  for (const Case& c : cases) {
    const MaskCall call = {
        .mask = c.mask, .mask_count = c.count, .longs = {c.character}};
    for (const Side side : {Side::kLibrary, Side::kNaive}) {
      EXPECT_EQ(observe(run_of(call), side, {}).outs, c.want) << c.what;
    }
  }
  EXPECT_EQ(utf8_MaskChar(0x41, ordered.key_data(), nullptr, 3, 1), 0x41);
  EXPECT_EQ(utf8_MaskChar(0x41, nullptr, ordered.value_data(), 3, 0), 0x41);
}

TEST(Masks, RewriteByTheirRules) {
  struct Case {
    const char* what;
    MaskCall call;
    BlockState want;
  };
  const BlockState untouched = {};
  const auto text = [](const char* bytes) {
    return BlockState{BlockState::Kind::kUnlocked, bytes};
  };
  constexpr auto kRewrite = MaskCall::kRewrite;
  constexpr auto kSelected = MaskCall::kRewriteSelections;
  const Mask mask = {{'a', 'b'}, {0x8100C3, 'B'}};
  const Case cases[] = {
      {"zero bytes and strays are left out",
       {kRewrite,
        "a\x80"
        "bc",
        mask},
       text("\xC3\x81"
            "Bc")},
      {"a negative count maps nothing", {kRewrite, "ab", mask, -1}, text("ab")},
      {"an empty mask is refused", {kRewrite, "ab", {}}, untouched},
      {"an empty range", {kRewrite, "ab", mask, 2, {}, 1, 1}, untouched},
      {"before the text", {kRewrite, "ab", mask, 2, {}, -1, 1}, untouched},
      {"beyond the text", {kRewrite, "ab", mask, 2, {}, 0, 3}, untouched},
      {"half a character",
       {kRewrite, "b\xC3\xA9", mask, 2, {}, 0, 2},
       {BlockState::Kind::kNull}},
      {"only selections",
       {kSelected, "bbbb", mask, 2, {1, 2, 3, 4}},
       text("bBbB")},
      {"what is done stays done",
       {kSelected, "bbbb", mask, 2, {2, 3, 0, 4}},
       text("bbBB")},
      {"a lone last long", {kSelected, "bb", mask, 2, {0, 1, 99}}, text("Bb")},
      {"a selection beyond the text",
       {kSelected, "bb", mask, 2, {0, 3}},
       untouched},
      {"an empty text", {kSelected, "", mask}, untouched},
  };
  for (const Case& c : cases) {
    for (const Side side : {Side::kLibrary, Side::kNaive}) {
      EXPECT_EQ(observe(run_of(c.call), side, {}).text, c.want) << c.what;
    }
  }
  QuillBlock output = test::untouched();
  EXPECT_EQ(utf8_MaskString(nullptr, 0, 1, mask.key_data(), mask.value_data(),
                            2, &output, 0, 0, nullptr),
            0);
  EXPECT_EQ(utf8_MaskStringSelection(nullptr, nullptr, 0, mask.key_data(),
                                     mask.value_data(), 2, &output, 0, nullptr),
            0);
  EXPECT_EQ(output, test::untouched());
}

// Characters that grow four times as long, past every step of growth.
TEST(MaskedTexts, Grow) {
  MaskCall call = {.text = std::string(600'000, 'a'),
                   .mask = {{'a'}, {packed("\xF0\x9F\x98\x80")}},
                   .longs = {1, 5, 7, 599'990}};
  for (const auto operation :
       {MaskCall::kRewrite, MaskCall::kRewriteSelections}) {
    call.operation = operation;
    EXPECT_EQ(first_difference(call), "");
  }
}

TEST(MaskedTexts, LeaveNothingBehindWhenMemoryIsShort) {
  MaskCall call = {.text = std::string(1000, 'a'),
                   .mask = {{'a'}, {0xA9C3}},
                   .longs = {0, 900}};
  for (const auto operation :
       {MaskCall::kRewrite, MaskCall::kRewriteSelections}) {
    call.operation = operation;
    const Outcome whole = observe(run_of(call), Side::kNaive, {0});
    with_each_request_refused([&](const HeapWatch& heap) {
      const Outcome o = observe(run_of(call), Side::kLibrary, {0});
      // Giving memory back may be refused without harm.
      if (o.result == 1) {
        EXPECT_EQ(o, whole);
      } else {
        EXPECT_TRUE(heap.failed());
        EXPECT_EQ(o.text.kind, BlockState::Kind::kNull);
      }
    });
  }
}

// Orders that drive a plain quicksort of this kind quadratic: these would not
// end in a test's time.
TEST(SortedMasks, ComeInAnyOrder) {
  constexpr std::int32_t kCount = 100'000;
  Longs up(kCount);
  std::iota(up.begin(), up.end(), -kCount / 2);
  Longs pipe;
  for (std::int32_t i = 0; i < kCount; i += 2) pipe.push_back(i * 20'000);
  for (std::int32_t i = kCount - 1; i > 0; i -= 2) pipe.push_back(i * 20'000);
  Longs rotated = up;
  std::rotate(rotated.begin(), rotated.begin() + 1, rotated.end());
  Longs nearly_down(up.rbegin(), up.rend());
  std::swap(nearly_down[5], nearly_down[6]);
  for (const Longs& keys :
       {up, Longs(up.rbegin(), up.rend()), pipe, rotated, nearly_down}) {
    Longs sorted = keys;
    Longs values(keys.size());
    std::iota(values.begin(), values.end(), 0);
    const HeapWatch heap;
    utf8_SortMask(sorted.data(), values.data(), 0, kCount);
    EXPECT_EQ(heap.requests(), 0);
    ASSERT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
    for (std::size_t i = 0; i < keys.size(); ++i) {
      ASSERT_EQ(keys[static_cast<std::size_t>(values[i])], sorted[i]);
    }
  }
}

// The keys in many windows of the search for equal ones: pairs far apart.
TEST(SortedMasks, NoticeEqualKeysAmongMany) {
  MaskCall call = {.operation = MaskCall::kSort, .end = 9'001};
  call.mask.keys.resize(9'000);
  std::iota(call.mask.keys.begin(), call.mask.keys.end(), 0);
  call.mask.keys.push_back(8'000);
  EXPECT_EQ(first_difference(call), "");
}

}  // namespace
}  // namespace quill::test
