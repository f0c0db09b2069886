// Arrays of longs, bit sets and byte moves.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>

#include "tests/support/expect.h"

namespace quill::test {
namespace {

// The very steps of the bisection, also where the array isn't ascending.
TEST(BinarySearchLongs, AgreesWithNaiveTwin) {
  for_random_inputs(41, 20'000, [](Input& in) -> std::string {
    Longs array(static_cast<std::size_t>(in.between(0, 40)));
    for (std::int32_t& each : array) each = in.between(-9, 9);
    if (!in.one_in(4)) std::sort(array.begin(), array.end());
    const int key = in.between(-10, 10);
    std::int32_t places[] = {-88, -88};
    const auto count = length_of(array);
    const bool agrees =
        BinarySearchLongs(array.data(), count, key, &places[0]) ==
            naive::BinarySearchLongs(array.data(), count, key, &places[1]) &&
        places[0] == places[1];
    return agrees ? "" : show_fields("array", array, "key", key);
  });
}

// Sizes around those at which a sort changes its method; a quadratic sort would
// take minutes over the long ones.
TEST(SortLongs, SortsEveryShape) {
  std::mt19937 generator(42);
  const auto any = [&] { return static_cast<std::int32_t>(generator()); };
  const std::function<std::int32_t(int, int)> shapes[] = {
      [&](int, int) { return any(); },
      [](int i, int) { return i; },
      [](int i, int) { return -i; },
      [](int, int) { return 5; },
      [&](int, int) { return any() % 3; },
      [](int i, int size) { return std::min(i, size - i); },
      [](int i, int) { return i % 17; },
      [&](int, int) { return 1 << (any() & 30); },
      // In clusters, and nearly ascending.
      [&](int, int) { return any() % 4 * 500'000'000 + any() % 300; },
      [&](int i, int) { return any() % 50 == 0 ? -i : i; },
  };
  for (const int size :
       {0, 1, 2, 3, 9, 23, 24, 25, 64, 127, 128, 129, 500, 5000, 100'000}) {
    for (std::size_t shape = 0; shape < std::size(shapes); ++shape) {
      Longs array;
      for (int i = 0; i < size; ++i) array.push_back(shapes[shape](i, size));
      Longs wanted = array;
      std::sort(wanted.begin(), wanted.end());
      SortLongs(array.data(), 0, size);
      EXPECT_EQ(array, wanted) << "shape " << shape << ", size " << size;
    }
  }
}

TEST(SortLongs, SortsWhatIsOutOfOrderInOnePlace) {
  constexpr std::size_t kSize = 3000;
  Longs wanted(kSize);
  std::iota(wanted.begin(), wanted.end(), -7);
  for (std::size_t i = 1; i < kSize; ++i) {
    Longs array = wanted;
    std::swap(array[i - 1], array[i]);
    SortLongs(array.data(), 0, kSize);
    EXPECT_EQ(array, wanted) << i;
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
