// Blocks, byte moves, arrays of longs and bits.
#include <algorithm>
#include <memory>
#include <random>

#include "bench/support/bench.h"

namespace quill::bench {
namespace {

constexpr std::int32_t kMillion = 1'000'000;

Longs random_longs(std::int32_t count) {
  std::mt19937 random(7);
  Longs longs(static_cast<std::size_t>(count));
  for (std::int32_t& value : longs) {
    value = static_cast<std::int32_t>(random());
  }
  return longs;
}

void add_memory_cases() {
  for (const std::int32_t size : {100, 4'000'000}) {
    const std::string suffix = "/" + size_name(static_cast<std::size_t>(size));
    add(
        "NewBlock/and_dispose" + suffix, 1,
        [=] {
          Held held;
          held.block = NewBlock(size);
          return GetBlockSize(held.block) == size;
        },
        [=] { DisposeBlock(NewBlock(size)); });
    add(
        "NewBlockClear/and_dispose" + suffix, 1,
        [=] {
          Held held;
          held.block = NewBlockClear(size);
          return std::count(held.bytes().begin(), held.bytes().end(), '\0') ==
                 size;
        },
        [=] { DisposeBlock(NewBlockClear(size)); });
    add(
        "ResizeBlock/half_and_back" + suffix, 2,
        [=] {
          Held held(std::string(static_cast<std::size_t>(size), 'q'));
          ResizeBlock(held.block, size / 2);
          return GetBlockSize(held.block) == size / 2;
        },
        [held = std::make_shared<Held>(
             std::string(static_cast<std::size_t>(size), 'q')),
         size] {
          ResizeBlock(held->block, size / 2);
          ResizeBlock(held->block, size);
        });
  }
  const auto held = std::make_shared<Held>(std::string(100, 'q'));
  add(
      "GetBlockSize/any", 1, [=] { return GetBlockSize(held->block) == 100; },
      [=] { benchmark::DoNotOptimize(GetBlockSize(held->block)); });
  add(
      "LockBlock/with_UnlockBlock", 1,
      [=] { return LockBlock(held->block) == *held->block; },
      [=] {
        benchmark::DoNotOptimize(LockBlock(held->block));
        UnlockBlock(held->block);
      });
  add(
      "UnlockBlock/alone", 1, [=] { return held->block != nullptr; },
      [=] { UnlockBlock(held->block); });
  add(
      "DisposeBlock/of_null", 1, [] { return true; },
      [] { DisposeBlock(nullptr); });
  const auto grow_active = [](std::int32_t from, std::int32_t to) {
    QuillBlock active = NewBlock(from);
    char* contents = LockBlock(active);
    std::int32_t capacity = from;
    const bool grown =
        ResizeActiveBlock(&active, &capacity, &contents, to) == 1;
    if (grown) DisposeBlock(active);
    return grown && capacity == to;
  };
  add(
      "ResizeActiveBlock/one_step", 1,
      [=] { return grow_active(kMillion, 2 * kMillion); },
      [=] { grow_active(kMillion, 2 * kMillion); });
}

void add_move_cases() {
  const auto move = [](Span text) {
    MoveBytes(text.data, const_cast<char*>(text.data) + 1, text.end - 1);
    return 0;
  };
  add_scan("MoveBytes/overlapping", all('q'), move,
           [](std::string_view) { return 0; });
}

// A random array is sorted anew each time: the copy is part of the time.
void add_sort_case(const std::string& name, const Longs& longs) {
  const auto sorted = [longs] {
    Longs copy = longs;
    SortLongs(copy.data(), 0, static_cast<std::int32_t>(copy.size()));
    return copy;
  };
  add(
      name, static_cast<std::int64_t>(longs.size()),
      [=] {
        const Longs ours = sorted();
        return std::is_sorted(ours.begin(), ours.end());
      },
      [=] { benchmark::DoNotOptimize(sorted().data()); });
}

void add_long_cases() {
  for (const std::int32_t count : {100, kMillion}) {
    const std::string suffix = "/" + std::to_string(count);
    Longs longs = random_longs(count);
    add_sort_case("SortLongs/random" + suffix, longs);
    std::sort(longs.begin(), longs.end());
    add_sort_case("SortLongs/ascending" + suffix, longs);

    const Longs keys = random_longs(1024);
    const auto found = [longs, keys](std::size_t i) {
      std::int32_t index = 0;
      BinarySearchLongs(longs.data(), static_cast<std::int32_t>(longs.size()),
                        keys[i], &index);
      return index;
    };
    add(
        "BinarySearchLongs/random_keys" + suffix, 1024,
        [=] {
          return found(5) ==
                 std::lower_bound(longs.begin(), longs.end(), keys[5]) -
                     longs.begin();
        },
        [=] {
          for (std::size_t i = 0; i < keys.size(); ++i) {
            benchmark::DoNotOptimize(found(i));
          }
        });
  }
  add_sort_case("SortLongs/equal/1000000", Longs(kMillion, 7));
  add(
      "SwapLongs/pair", 1,
      [] {
        std::int32_t first = 1;
        std::int32_t second = 2;
        SwapLongs(&first, &second);
        return first == 2 && second == 1;
      },
      [first = 1, second = 2]() mutable { SwapLongs(&first, &second); });
}

void add_bit_cases() {
  static char bits[128] = {};
  const auto every = [](auto&& operation) {
    return [operation] {
      for (std::int32_t bit = 0; bit < 1024; ++bit) operation(bit);
    };
  };
  const auto works = [] {
    BitSet(bits, 9);
    const bool set = BitTest(bits, 9) == 1;
    BitClear(bits, 9);
    return set && BitTest(bits, 9) == 0;
  };
  add("BitSet/all", 1024, works, every([](auto bit) { BitSet(bits, bit); }));
  add("BitTest/all", 1024, works,
      every([](auto bit) { benchmark::DoNotOptimize(BitTest(bits, bit)); }));
  add("BitClear/all", 1024, works,
      every([](auto bit) { BitClear(bits, bit); }));
}

}  // namespace

void add_block_cases() {
  add_memory_cases();
  add_move_cases();
  add_long_cases();
  add_bit_cases();
}

}  // namespace quill::bench
