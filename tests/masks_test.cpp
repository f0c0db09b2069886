// Masks: lookups, the order in which a sort leaves equal keys, and rewriting
// text.
#include <gtest/gtest.h>

#include <numeric>

#include "tests/checks/calls.h"
#include "tests/support/alphabet.h"
#include "tests/support/expect.h"

namespace quill::test {
namespace {

TEST(Masks, AgreeWithNaiveTwinsOnRandomCalls) {
  for_random_inputs(4, 20'000, check_masks);
}

TEST(Masks, MapNothingWithoutKeysOrValues) {
  const Longs longs = {0x41, 0x42, 0x43};
  EXPECT_EQ(utf8_MaskChar(0x41, longs.data(), nullptr, 3, 1), 0x41);
  EXPECT_EQ(utf8_MaskChar(0x41, nullptr, longs.data(), 3, 0), 0x41);
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

// Values about the borders of what is written as one byte, as two, and as more.
TEST(MaskedTexts, MapCommonCharactersToAnything) {
  MaskCall call = {.operation = MaskCall::kRewrite,
                   .text = repeated("aaa\xC3\xA9\xC3\xA9", 9000),
                   .mask = {{'a', 0xA9C3}, {}}};
  for (const std::int32_t value : {0, 0x80, 0xFF, 0x100, 0xFFFF, 0x10000,
                                   0x100C3, 0xFFFFFF, 0x1000000, -1}) {
    call.mask.values = {value, value};
    EXPECT_EQ(first_difference(call), "");
  }
}

// Keys in no order, equal ones, and some without a gap: what is prepared for
// the ASCII characters finds what the bisection finds.
TEST(MaskedTexts, BisectInAnyOrder) {
  const Longs arrays[] = {
      {std::numeric_limits<std::int32_t>::max(), 0, 50, 60, 70},
      {'b', 'b', 'c', 'c', 'c'},
      {'c', 'b', 'b', 'a', 'd'},
      {-5, 'a', 'c', 'b', 0xA9C3},
      {'a', 0xA9C3, 'c', -5, 'd'},
      {-5, 'a', 'b', 'c', 0xA9C3},
      {125, 126, 127, 128, 129},
      {-3, -2, -1, 0, 1},
      {-5, -4, 0xA9C3, 0xAAC3, 0xABC3},
      {-5, -4, 0x80C0, 0xBFDF, 0x1BFDF},
  };
  MaskCall call;
  for (int i = 0; i < 8; ++i) {  // the ends of those of two bytes
    call.text += "\xC0\x80\xDF\xBF";
    call.longs.insert(call.longs.end(), {0x80C0, 0xBFDF});
  }
  for (std::int32_t letter = 0; letter < 128; ++letter) {
    call.text += static_cast<char>(letter);
    call.longs.push_back(letter);
  }
  call.end = length_of(call.text);
  for (const Longs& keys : arrays) {
    call.mask = {keys, {'1', '2', '3', '4', 0xA9C3}};
    call.mask_count = call.mask.count();
    for (const auto operation : {MaskCall::kUseTable, MaskCall::kRewrite}) {
      call.operation = operation;
      EXPECT_EQ(first_difference(call), "");
    }
  }
}

// Keys that are neighbours are prepared many at once: as many as fit anywhere,
// and with one that breaks the row, by its key or by the length of its value.
TEST(MaskedTexts, MapNeighboursInRowsOfEveryLength) {
  MaskCall call = {.operation = MaskCall::kRewrite};
  for (int letter = 127; letter >= 0; --letter) {
    call.text += static_cast<char>(letter);
  }
  call.end = 128;
  for (const std::int32_t count : {1, 2, 15, 16, 17, 26, 31, 32, 33, 64, 128}) {
    for (const std::int32_t first : {0, 1, 40, 65, 128 - count}) {
      if (first + count > 128) continue;
      const auto size = static_cast<std::size_t>(count);
      Mask mask = {Longs(size), Longs(size)};
      std::iota(mask.keys.begin(), mask.keys.end(), first);
      std::iota(mask.values.begin(), mask.values.end(), 255 - count);
      call.mask_count = count;
      call.mask = mask;
      ASSERT_EQ(first_difference(call), "") << count << " from " << first;
      for (const std::size_t at : {std::size_t{0}, size / 2, size - 1}) {
        call.mask = mask;
        call.mask.values[at] = 0x180;
        ASSERT_EQ(first_difference(call), "") << count << " from " << first;
        call.mask = mask;
        call.mask.keys[at] += at == 0 ? -1 : 1;
        ASSERT_EQ(first_difference(call), "") << count << " from " << first;
      }
    }
  }
}

// Many selections close together, as are masked at once: of every length about
// whole blocks, past what is copied at once and up to the end, with characters
// among them that end that, and with lists that turn back.
TEST(MaskedTexts, MaskManySelections) {
  const Mask keeps = {{'a', 'b', 0xA9C3}, {'A', 0x80, 0x89C3}};
  const Mask grows = {{'a', 0xA9C3}, {'A', 'E'}};
  MaskCall call = {.operation = MaskCall::kRewriteSelections};
  for (const std::size_t size : {200U, 70'000U}) {
    for (const std::size_t wide_every : {1'000'000U, 500U, 7U}) {
      call.text.clear();
      while (call.text.size() < size) {
        call.text += call.text.size() % wide_every < 3 && wide_every <= size
                         ? "\xC3\xA9"
                         : "ab";
      }
      for (const int length : {0, 1, 2, 16, 62, 64, 66, 130}) {
        call.longs.clear();
        for (int at = 0; at + length <= length_of(call.text);
             at += length + 2 + at % 6) {
          call.longs.insert(call.longs.end(), {at, at + length});
        }
        for (const Mask& mask : {keeps, grows}) {
          call.mask = mask;
          call.mask_count = mask.count();
          ASSERT_EQ(first_difference(call), "") << length << " of " << size;
        }
        if (call.longs.size() > 20) std::swap(call.longs[8], call.longs[14]);
        ASSERT_EQ(first_difference(call), "") << length << " of " << size;
      }
    }
  }
}

TEST(MaskedTexts, LeaveNothingBehindWhenMemoryIsShort) {
  MaskCall call = {.text = std::string(1000, 'a'),
                   .mask = {{'a'}, {0xA9C3}},
                   .longs = {0, 900}};
  for (const auto operation :
       {MaskCall::kRewrite, MaskCall::kRewriteSelections}) {
    call.operation = operation;
    Outcome refused;
    refused.result = 0;
    refused.outs = {0};
    refused.text = kNoBlock;
    Outcome at_once = refused;  // with the text still locked
    at_once.outs = {1};
    expect_all_or_nothing(call, {refused, at_once});
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
