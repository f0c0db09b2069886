// Arrays of longs, bit sets and byte moves.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>

#include "tests/support/blocks.h"
#include "tests/support/random_text.h"

namespace quill::test {
namespace {

TEST(BinarySearchLongs, TellsThePlace) {
  struct Case {
    const char* why;
    Longs array;
    std::int32_t key, found, index;
  };
  const Longs repeated = {2, 4, 4, 4, 9};
  const Case cases[] = {
      {"the first of equal ones", repeated, 4, 1, 1},
      {"between", repeated, 5, 0, 4},
      {"below all", repeated, 1, 0, 0},
      {"above all", repeated, 10, 0, 5},
      {"negative before positive", {-5, 3}, -5, 1, 0},
      {"signed", {-7, 65}, 65, 1, 1},
      {"below a negative one", {-7, 65}, -8, 0, 0},
      {"the only one", {7}, 7, 1, 0},
      {"in none", {}, 7, 0, 0},
      // On an array that isn't ascending the steps of the bisection show.
      {"out of order, on the way", {9, 1, 5, 3, 2}, 5, 1, 2},
      {"out of order, missed", {9, 1, 5, 3, 2}, 9, 0, 5},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    std::int32_t index = -88;
    EXPECT_EQ(BinarySearchLongs(c.array.data(),
                                static_cast<std::int32_t>(c.array.size()),
                                c.key, &index),
              c.found);
    EXPECT_EQ(index, c.index);
  }
  std::int32_t index = -88;
  EXPECT_EQ(BinarySearchLongs(nullptr, -1, 7, &index), 0);
  EXPECT_EQ(index, 0);
}

// The very steps of the bisection, also where the array isn't ascending.
TEST(BinarySearchLongs, AgreesWithItsSteps) {
  Random random(41);
  for (int round = 0; round < 20000; ++round) {
    Longs array;
    for (int i = random.between(1, 40); i > 0; --i) {
      array.push_back(random.between(-9, 9));
    }
    if (!random.one_in(4)) std::sort(array.begin(), array.end());
    const int key = random.between(-10, 10);
    std::size_t low = 0;
    std::size_t high = array.size() - 1;
    while (low < high) {
      const std::size_t middle = (low + high) / 2;
      if (key > array[middle]) {
        low = middle + 1;
      } else {
        high = middle;
      }
    }
    const bool less = array[low] < key;
    std::int32_t index = -88;
    ASSERT_EQ(
        BinarySearchLongs(array.data(), static_cast<std::int32_t>(array.size()),
                          key, &index),
        array[low] == key ? 1 : 0)
        << testing::PrintToString(array) << " " << key;
    ASSERT_EQ(index, static_cast<std::int32_t>(low) + (less ? 1 : 0));
  }
}

void expect_sorted(Longs array, const char* what) {
  Longs wanted = array;
  std::sort(wanted.begin(), wanted.end());
  SortLongs(array.data(), 0, static_cast<std::int32_t>(array.size()));
  EXPECT_EQ(array, wanted) << what << ", " << array.size() << " elements";
}

// Sizes around those at which a sort changes its method; a quadratic sort would
// take minutes over the long ones.
TEST(SortLongs, SortsEveryShape) {
  Random random(42);
  constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
  for (const int size :
       {0, 1, 2, 3, 9, 23, 24, 25, 64, 127, 128, 129, 500, 5000, 100'000}) {
    Longs array(static_cast<std::size_t>(size));
    const auto with = [&](const char* what, auto value) {
      for (int i = 0; i < size; ++i) {
        array[static_cast<std::size_t>(i)] = value(i);
      }
      expect_sorted(array, what);
    };
    with("random", [&](int) { return random.between(kLowest, 2147483647); });
    with("ascending", [](int i) { return i; });
    with("descending", [](int i) { return -i; });
    with("equal", [](int) { return 5; });
    with("few values", [&](int) { return random.between(-1, 2); });
    with("organ pipe", [&](int i) { return std::min(i, size - i); });
    with("saw", [](int i) { return i % 17; });
    with("powers of two", [&](int) { return 1 << random.between(0, 30); });
    with("in clusters", [&](int) {
      return random.between(-3, 3) * 500'000'000 + random.between(0, 300);
    });
    with("nearly ascending", [&](int i) { return random.one_in(50) ? -i : i; });
  }
}

TEST(SortLongs, SortsTheRangeAlone) {
  Longs array = {3, -1, 2, 2, 0};
  SortLongs(array.data(), 1, 3);
  EXPECT_EQ(array, (Longs{3, -1, 2, 2, 0}));
  SortLongs(array.data(), 0, 2);
  EXPECT_EQ(array, (Longs{-1, 3, 2, 2, 0}));
  for (const int limit : {-3, 0, 2, 3}) SortLongs(array.data(), 2, limit);
  EXPECT_EQ(array, (Longs{-1, 3, 2, 2, 0}));
  SortLongs(array.data(), 0, 5);
  EXPECT_EQ(array, (Longs{-1, 0, 2, 2, 3}));
}

TEST(Longs, Swap) {
  std::int32_t a = 1;
  std::int32_t b = -2;
  SwapLongs(&a, &b);
  EXPECT_EQ(a, -2);
  EXPECT_EQ(b, 1);
  SwapLongs(&a, &a);
  EXPECT_EQ(a, -2);
}

TEST(Bits, AreCountedFromTheLeastSignificant) {
  for (const char fill : {'\0', '\xFF'}) {
    for (std::int32_t bit = 0; bit < 24; ++bit) {
      char bits[3] = {fill, fill, fill};
      const auto changed = static_cast<char>(fill ^ 1 << bit % 8);
      (fill == 0 ? BitSet : BitClear)(bits, bit);
      EXPECT_EQ(BitTest(bits, bit), fill == 0 ? 1 : 0);
      for (std::int32_t byte = 0; byte < 3; ++byte) {
        EXPECT_EQ(bits[byte], byte == bit / 8 ? changed : fill) << bit;
      }
      (fill == 0 ? BitClear : BitSet)(bits, bit);
      EXPECT_EQ(bits[bit / 8], fill);
    }
  }
}

TEST(MoveBytes, MovesAsThroughABuffer) {
  const std::string text = "abcdefghijklmnopqrstuvwxyz";
  for (const int to : {0, 3, 10}) {
    for (const int count : {-5, 0, 1, 9}) {
      std::string moved = text;
      std::string wanted = text;
      if (count > 0) {
        wanted.replace(static_cast<std::size_t>(to),
                       static_cast<std::size_t>(count), text, 5,
                       static_cast<std::size_t>(count));
      }
      MoveBytes(moved.data() + 5, moved.data() + to, count);
      EXPECT_EQ(moved, wanted) << count << " bytes to " << to;
    }
  }
}

}  // namespace
}  // namespace quill::test
