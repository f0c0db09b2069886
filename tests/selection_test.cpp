// Selections copied, sorted, ordered, mapped, inverted and extracted, each
// against the naive model of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "blocks/memory_manager.h"
#include "tests/models/selection_model.h"
#include "tests/support/blocks.h"
#include "tests/support/guarded_text.h"
#include "tests/support/heap_watch.h"
#include "tests/support/random_text.h"
#include "tests/support/yield_recorder.h"

namespace quill::test {
namespace {

constexpr std::int32_t kReference = -77;
constexpr std::int32_t kSentinel = 0x5EA75EA7;

// Random selections of a text: any order, overlapping, now and then empty or
// with the end before the start.
Longs random_list(Random& random, int text_length, int selections,
                  int longest) {
  Longs list;
  for (int i = 0; i < selections; ++i) {
    const int start = random.between(0, text_length);
    list.push_back(start);
    list.push_back(std::min(text_length, start + random.between(-1, longest)));
  }
  return list;
}

std::int32_t size_of(const Longs& list) {
  return static_cast<std::int32_t>(list.size());
}

// ---------------------------------------------------------------- copying

struct CopyCase {
  Longs list;
  std::size_t stride;
  std::int32_t capacity;
};

void check_copy(std::string_view text, const CopyCase& c, int stop_at,
                unsigned char answer) {
  const GuardedText guarded(text);
  const auto count = size_of(c.list) / static_cast<std::int32_t>(c.stride);
  YieldRecorder expecting(stop_at, answer);
  const model::Copied want =
      model::copy(text, c.capacity, kSentinel, c.list, count, c.stride,
                  c.stride / 2 - 1, kReference, expecting);

  const auto room = static_cast<std::size_t>(std::max(c.capacity, 0));
  const GuardedText destination(std::string(room, '#'));
  YieldRecorder host(stop_at, answer);
  model::Copied got{0, kSentinel, {}};
  const auto copy = c.stride == 2 ? CopySelectionsTo : CopySuperSelectionsTo;
  got.result = copy(guarded.data(), destination.data(), c.capacity, &got.copied,
                    c.list.data(), count, kReference, host.callback());
  got.bytes = std::string(destination.view().substr(0, want.bytes.size()));
  ASSERT_EQ(got, want) << testing::PrintToString(c.list) << c.capacity;
  ASSERT_EQ(host.calls(), expecting.calls()) << testing::PrintToString(c.list);
  const auto rest = destination.view().substr(want.bytes.size());
  ASSERT_EQ(rest, std::string(rest.size(), '#'));
}

TEST(CopySelections, AsTheModel) {
  Random random(61);
  for (int round = 0; round < 400; ++round) {
    // Lengths on both sides of every size that is copied in a way of its own.
    const std::string text = random_bytes(random, random.between(1, 90));
    const int length = static_cast<int>(text.size());
    const int selections = random.between(0, 9);
    CopyCase c{{}, round % 2 == 0 ? 2u : 4u, random.between(0, 2 * length)};
    c.list = random_list(random, length,
                         selections * static_cast<int>(c.stride) / 2, length);
    if (random.one_in(3)) c.capacity = random.between(1, 12);
    for (const std::int32_t every : kYieldMaxima) {
      const YieldMaxScope scope(every);
      for (const int stop : {kNever, 0, 1}) {
        check_copy(text, c, stop, static_cast<unsigned char>(stop * 2));
      }
    }
  }
}

TEST(CopySelections, KeepTheirRules) {
  struct Case {
    const char* what;
    Longs list;
    std::int32_t capacity;
    std::int32_t result;
    std::int32_t copied;
  };
  const Case cases[] = {
      {"everything fits", {0, 3, 5, 7}, 5, 1, 5},
      {"one that does not fit", {0, 3, 5, 7}, 4, 0, 3},
      {"full before the last", {0, 3, 5, 7}, 3, 1, 3},
      {"full before an empty one", {0, 3, 5, 5}, 3, 1, 3},
      {"no room at all", {0, 3}, 0, 0, kSentinel},
      {"negative room", {0, 3}, -1, 0, kSentinel},
      {"an end before the start covers nothing", {0, 3, 7, 2, 3, 5}, 9, 1, 5},
      {"a start before the text stops it", {0, 3, -2, 2, 3, 5}, 9, 0, 3},
      {"lengths beyond 32 bits", {0, 3, INT32_MIN, INT32_MAX}, 9, 0, 3},
  };
  for (const Case& c : cases) {
    std::string destination(10, '#');
    std::int32_t copied = kSentinel;
    EXPECT_EQ(CopySelectionsTo("abcdefgh", destination.data(), c.capacity,
                               &copied, c.list.data(), size_of(c.list) / 2, 0,
                               YieldRecorder().callback()),
              c.result)
        << c.what;
    EXPECT_EQ(copied, c.copied) << c.what;
  }
}

// A host that puts its next question further away each time is asked again.
TEST(CopySelections, ReadTheIntervalAnewEachTime) {
  static std::int32_t asked;
  asked = 0;
  const YieldMaxScope scope(2);
  const Longs list(20, 0);
  std::int32_t copied = 0;
  char out = 0;
  CopySelectionsTo("a", &out, 1, &copied, list.data(), 10, 0,
                   [](std::int32_t, std::int32_t progress) {
                     ++asked;
                     YieldMax = progress + 3;
                     return true;
                   });
  EXPECT_EQ(asked, 3);  // at 2, 5 and 8
}

// ---------------------------------------------------------------- sorting

using MaskOf = model::Mask;

MaskOf no_mask() { return {}; }

// Folds the alphabet's upper case, and maps to values that no text holds:
// a continuation byte first, a character cut off, nothing.
MaskOf folding_mask() {
  std::vector<std::pair<std::int32_t, std::int32_t>> entries = {
      {packed("A"), packed("a")},
      {packed("\xC3\x89"), packed("\xC3\xA9")},
      {packed(" "), static_cast<std::int32_t>(0x4180u)},
      {packed("\xE2\x82\xAC"), static_cast<std::int32_t>(0xE2808080u)},
      {packed("\xC3\x41"), 0}};
  std::sort(entries.begin(), entries.end());
  MaskOf mask;
  for (const auto& [key, value] : entries) {
    mask.keys.push_back(key);
    mask.values.push_back(value);
  }
  mask.count = size_of(mask.keys);
  return mask;
}

MaskOf lower_case_mask() { return {{packed("A")}, {packed("a")}, 1}; }

// Read as under a mask, but nothing is mapped.
MaskOf negative_mask() { return {{}, {}, -1}; }

int compare_through_export(const GuardedText& text, const std::int32_t* a,
                           const std::int32_t* b, MaskOf& mask) {
  return CompareSelections(a, b, text.data(), mask.keys.data(),
                           mask.values.data(), mask.count);
}

TEST(CompareSelections, AsTheModel) {
  Random random(62);
  MaskOf masks[] = {no_mask(), folding_mask(), negative_mask()};
  for (int round = 0; round < 20000; ++round) {
    const std::string bytes =
        random.one_in(3) ? random_text(random, 12) : random_bytes(random, 12);
    const int length = static_cast<int>(bytes.size());
    const GuardedText text(bytes);
    const Longs pair = random_list(random, length, 2, 8);
    for (MaskOf& mask : masks) {
      ASSERT_EQ(
          compare_through_export(text, pair.data(), pair.data() + 2, mask),
          model::compare(bytes, pair.data(), pair.data() + 2, mask))
          << testing::PrintToString(pair) << testing::PrintToString(bytes)
          << mask.count;
    }
  }
}

TEST(CompareSelections, KeepTheirRules) {
  struct Case {
    const char* what;
    std::string text;
    Longs pair;
    MaskOf mask;
    int want;
  };
  const Case cases[] = {
      {"a prefix comes first", "ababc", {0, 2, 2, 5}, no_mask(), -1},
      {"by code point", "Aa", {0, 1, 1, 2}, no_mask(), 'A' - 'a'},
      {"masked alike", "Aa", {0, 1, 1, 2}, lower_case_mask(), 0},
      {"empty before others", "ab", {1, 1, 0, 2}, no_mask(), -2},
      {"negative lengths", "abc", {2, 0, 3, 0}, no_mask(), 1},
      {"cut characters are equal", "a\xE2zzb", {0, 2, 2, 5}, no_mask(), -25},
      {"cut after a prefix", "a\xE2za\xC3\xA9", {0, 2, 3, 6}, no_mask(), 0},
      {"standing still ends",
       "a\x80\x80\x80",
       {0, 4, 0, 4},
       negative_mask(),
       0},
      {"one stands still, the other ends",
       "a\x80\x80\x80"
       "aa",
       {0, 4, 4, 6},
       negative_mask(),
       2},
      {"stepping back ends", "a\x80\x80\x80", {2, 4, 3, 4}, negative_mask(), 0},
      {"reads before its start",
       "b\x80"
       "a",
       {1, 2, 2, 3},
       negative_mask(),
       1},
      {"starts before the text", "abcdefgh", {-5, 3, 0, 1}, no_mask(), 0},
      {"the same under a mask", "abcdefgh", {-5, 3, 0, 1}, negative_mask(), 0},
      {"lengths kept in sign",
       "a",
       {INT32_MAX, 0, 0, INT32_MAX},
       no_mask(),
       INT32_MIN},
  };
  for (Case c : cases) {
    const GuardedText text(c.text);
    EXPECT_EQ(
        compare_through_export(text, c.pair.data(), c.pair.data() + 2, c.mask),
        c.want)
        << c.what;
  }
}

// The host's comparison sees which elements are compared, and when.
struct Observed {
  char* base;
  std::size_t element_size;
  std::vector<std::pair<std::ptrdiff_t, std::ptrdiff_t>> comparisons;
};
Observed* observed = nullptr;

int compare_first_byte(const void* a, const void* b) {
  return *static_cast<const unsigned char*>(a) / 4 -
         *static_cast<const unsigned char*>(b) / 4;
}

int observing(const void* a, const void* b, char* text, std::int32_t* keys,
              std::int32_t* values, std::int32_t count) {
  EXPECT_EQ(text, observed->base);
  EXPECT_EQ(static_cast<void*>(keys), observed->base);
  EXPECT_EQ(static_cast<void*>(values), observed);
  EXPECT_EQ(count, kReference);
  observed->comparisons.emplace_back(
      static_cast<const char*>(a) - observed->base,
      static_cast<const char*>(b) - observed->base);
  return compare_first_byte(a, b);
}

TEST(SortAnything, MakesTheStepsOfTheHeapSort) {
  Random random(63);
  for (int round = 0; round < 300; ++round) {
    for (const std::size_t size : {1u, 3u, 4u, 8u, 12u, 16u, 21u}) {
      const int count = random.between(0, 40);
      std::string want(size * static_cast<std::size_t>(count), '\0');
      for (char& byte : want) byte = static_cast<char>(random.between(0, 60));
      alignas(16) std::string got = want;

      const auto at = [&](std::uint64_t n) { return &want[(n - 1) * size]; };
      Observed expected{want.data(), size, {}};
      model::heap_sort(
          static_cast<std::uint32_t>(count),
          [&](auto a, auto b) {
            expected.comparisons.emplace_back(at(a) - expected.base,
                                              at(b) - expected.base);
            return compare_first_byte(at(a), at(b));
          },
          [&](auto a, auto b) {
            std::swap_ranges(at(a), at(a) + size, at(b));
          });

      Observed seen{got.data(), size, {}};
      observed = &seen;
      const HeapWatch heap;
      qSortV(got.data(), static_cast<std::uint32_t>(count),
             static_cast<std::uint32_t>(size), observing, got.data(),
             reinterpret_cast<std::int32_t*>(got.data()),
             reinterpret_cast<std::int32_t*>(observed), kReference);
      ASSERT_EQ(got, want);
      ASSERT_EQ(seen.comparisons, expected.comparisons);
      ASSERT_EQ(heap.requests(), 0);
    }
  }
}

Longs sort_through_export(std::string_view bytes, Longs list,
                          std::size_t stride, const MaskOf& mask) {
  const GuardedText text(bytes);
  const auto sort = stride == 2 ? utf8_SortSelections : utf8_SortKeySelections;
  EXPECT_EQ(sort(text.data(), list.data(),
                 static_cast<std::uint32_t>(list.size() * 4), mask.keys.data(),
                 mask.values.data(), mask.count),
            1);
  return list;
}

// Lists of all sizes, of equal and nearly equal texts, well-formed and not.
struct SortInput {
  std::string text;
  Longs list;
};

SortInput random_sort_input(Random& random) {
  const int size =
      random.one_in(8) ? random.between(300, 1000) : random.between(0, 80);
  SortInput input;
  input.text = random.one_in(3) ? random_bytes(random, size / 3 + 8)
                                : random_text(random, size / 3 + 8);
  // Longer texts share long prefixes.
  if (random.one_in(3)) {
    input.text.insert(0, 60, 'a');
    input.text += std::string(60, 'a');
  }
  const int length = static_cast<int>(input.text.size());
  const int longest = random.one_in(2) ? 3 : random.between(1, 70);
  input.list = random_list(random, length, size, longest);
  if (random.one_in(2)) {  // every selection a whole number of characters
    for (std::int32_t& offset : input.list) {
      while (offset > 0 && offset < length &&
             (input.text[static_cast<std::size_t>(offset)] & 0xC0) == 0x80) {
        ++offset;
      }
    }
  }
  return input;
}

TEST(SortSelections, AsTheModel) {
  Random random(64);
  const MaskOf masks[] = {no_mask(), lower_case_mask(), folding_mask(),
                          negative_mask()};
  for (int round = 0; round < 400; ++round) {
    SortInput input = random_sort_input(random);
    const std::size_t stride = random.one_in(2) ? 2 : 4;
    // What is left over at the end stays where it is.
    if (random.one_in(3)) input.list.push_back(kSentinel);
    for (const MaskOf& mask : masks) {
      ASSERT_EQ(sort_through_export(input.text, input.list, stride, mask),
                model::sort(input.text, input.list, stride, mask))
          << testing::PrintToString(input.text) << mask.count;
    }
  }
}

// So many equal texts and so many different ones that a rank and a number
// among equals need more than 32 bits. The heap sort's steps are taken on the
// places that the texts have in order, to be quick about it.
TEST(SortSelections, AsTheModelWhenThereAreMany) {
  Random random(72);
  std::string text;
  for (int i = 0; i < 40'000; ++i) {
    text.push_back(static_cast<char>(random.between('b', 'z')));
  }
  text += 'a';
  std::vector<std::pair<std::string_view, std::int32_t>> texts;
  for (int i = 0; i < 102'000; ++i) {
    const int start = i % 3 == 0 ? i / 3 : 40'000;
    texts.emplace_back(std::string_view(text).substr(
                           static_cast<std::size_t>(start), i % 3 == 0 ? 9 : 1),
                       start);
  }
  std::vector<std::string_view> sorted;
  sorted.reserve(texts.size());
  for (const auto& each : texts) sorted.push_back(each.first);
  std::sort(sorted.begin(), sorted.end());
  std::vector<std::pair<std::ptrdiff_t, std::int32_t>> places;
  Longs list;
  for (const auto& [view, start] : texts) {
    places.emplace_back(
        std::lower_bound(sorted.begin(), sorted.end(), view) - sorted.begin(),
        start);
    list.push_back(start);
    list.push_back(start + static_cast<std::int32_t>(view.size()));
  }
  model::heap_sort(
      static_cast<std::uint32_t>(places.size()),
      [&](auto a, auto b) {
        return static_cast<int>(places[a - 1].first - places[b - 1].first);
      },
      [&](auto a, auto b) { std::swap(places[a - 1], places[b - 1]); });
  const Longs got = sort_through_export(text, list, 2, no_mask());
  for (std::size_t i = 0; i < places.size(); ++i) {
    ASSERT_EQ(got[2 * i], places[i].second) << i;
  }
}

// Each text four bytes longer than another, so that one ends at every level.
TEST(SortSelections, AsTheModelWhenTextsAreLongAlike) {
  const std::string text(1200, 'a');
  Longs list;
  for (int i = 0; i < 300; ++i) {
    list.push_back(i % 2);
    list.push_back(i * 7 % 300 * 4);
  }
  for (const MaskOf& mask : {no_mask(), lower_case_mask()}) {
    EXPECT_EQ(sort_through_export(text, list, 2, mask),
              model::sort(text, list, 2, mask));
  }
}

TEST(SortSelections, AsTheStandardSort) {
  Random random(65);
  for (int round = 0; round < 20; ++round) {
    const std::string text = random_text(random, 2000);
    std::vector<std::string_view> want;
    Longs list;
    for (std::size_t at = 0; at + 30 < text.size(); at += 5) {
      const auto in = [&](std::size_t offset) {
        while ((text[offset] & 0xC0) == 0x80) ++offset;
        return offset;
      };
      const std::size_t start = in(at);
      const std::size_t end =
          in(at + static_cast<std::size_t>(random.between(0, 9)));
      want.push_back(
          std::string_view(text).substr(start, std::max(start, end) - start));
      list.push_back(static_cast<std::int32_t>(start));
      list.push_back(static_cast<std::int32_t>(std::max(start, end)));
    }
    std::stable_sort(want.begin(), want.end());
    list = sort_through_export(text, list, 2, no_mask());
    for (std::size_t i = 0; i < want.size(); ++i) {
      ASSERT_EQ(std::string_view(text).substr(
                    static_cast<std::size_t>(list[2 * i]),
                    static_cast<std::size_t>(list[2 * i + 1] - list[2 * i])),
                want[i]);
    }
  }
}

TEST(SortSelections, NeedNoMemory) {
  Random random(66);
  for (int round = 0; round < 40; ++round) {
    const SortInput input = random_sort_input(random);
    const Longs want = model::sort(input.text, input.list, 2, folding_mask());
    for (int fail_at = 0; fail_at < 8; ++fail_at) {
      const GuardedText text(input.text);
      const MaskOf mask = folding_mask();
      Longs list = input.list;
      const HeapWatch heap(fail_at, true);
      utf8_SortSelections(text.data(), list.data(),
                          static_cast<std::uint32_t>(list.size() * 4),
                          mask.keys.data(), mask.values.data(), mask.count);
      ASSERT_EQ(heap.outstanding(), 0);
      ASSERT_EQ(list, want);
    }
  }
}

// ------------------------------------------------- ordering, maps, inversion

void expect_unlocked(QuillBlock block) {
  ASSERT_NE(block, nullptr);
  EXPECT_FALSE(is_locked(block));
}

void check_order(const Longs& list, std::int32_t text_length,
                 const Longs& want) {
  HeldBlock held(list);
  QuillBlock block = held.block;
  LockBlock(block);
  const HeapWatch heap;
  EXPECT_EQ(OrderSelections(&block, text_length), 1);
  EXPECT_EQ(block, held.block);
  ASSERT_EQ(held.longs(), want)
      << testing::PrintToString(list) << " of " << text_length;
  EXPECT_EQ(GetBlockSize(block), size_of(want) * 4);
  expect_unlocked(block);
}

TEST(OrderSelections, AsTheModel) {
  Random random(67);
  for (int round = 0; round < 3000; ++round) {
    const int length =
        random.one_in(10) ? random.between(1, 20000) : random.between(1, 300);
    const int many = random.one_in(20) ? 2000 : 30;
    const int longest = random.one_in(3) ? length : 9;
    Longs list = random_list(random, length, random.between(0, many), longest);
    if (random.one_in(3)) list = model::order(list, length);
    if (random.one_in(4)) std::sort(list.begin(), list.end());
    if (random.one_in(4)) list.push_back(random.between(0, length));
    if (random.one_in(4) && !list.empty()) {
      list[list.size() / 2] = random.between(-length, 2 * length);
    }
    check_order(list, length, model::order(list, length));
  }
}

TEST(OrderSelections, KeepTheirRules) {
  check_order({5, 9, 0, 3, 2, 4, 7, 7}, 10, {0, 4, 5, 9});
  check_order({0, 5, 5, 9}, 9, {0, 9});
  check_order({0, 5, 6, 9}, 9, {0, 5, 6, 9});
  check_order({3, 3}, 10, {});
  check_order({0, 10}, 10, {0, 10});
  check_order({}, 10, {});
  check_order({9, 7, 4}, 10, {});
  check_order({INT32_MIN, INT32_MAX}, 10, {0, 10});
  check_order({20, 30, 11, 5, -5, -3, 9, 12, 8, 10}, 10, {8, 10});
  // So long a text that the few selections are sorted.
  check_order({INT32_MAX - 1, INT32_MAX, 0, 1, 7, INT32_MAX - 5}, INT32_MAX,
              {0, 1, 7, INT32_MAX - 5, INT32_MAX - 1, INT32_MAX});
}

TEST(OrderSelections, NothingToDo) {
  QuillBlock none = nullptr;
  EXPECT_EQ(OrderSelections(&none, 10), 1);
  const Longs list = {5, 9, 0, 3};
  HeldBlock held(list);
  for (const std::int32_t length : {0, -1}) {
    EXPECT_EQ(OrderSelections(&held.block, length), 1);
    EXPECT_EQ(held.longs(), list);
  }
}

TEST(OrderSelections, FailWithoutMemory) {
  for (const Longs& list : {Longs{5, 9, 0, 3}, Longs{0, 3, 5, 9}}) {
    HeldBlock held(list);
    const HeapWatch heap(0, true);
    EXPECT_EQ(OrderSelections(&held.block, 10), 0);
    EXPECT_EQ(heap.outstanding(), 0);
    EXPECT_EQ(held.longs(), list);
  }
}

// A map of exactly as many bytes as a text of that length needs.
std::string bytes_of_map(const model::Bits& bits, std::int32_t text_length) {
  std::string bytes((static_cast<std::size_t>(text_length) + 9) / 8, '\0');
  for (std::size_t i = 0; i < bits.size(); ++i) {
    const int set = bits[i] ? 1 << i % 8 : 0;
    bytes[i / 8] = static_cast<char>(bytes[i / 8] | set);
  }
  return bytes;
}

model::Bits random_bits(Random& random, std::int32_t text_length, int one_in) {
  model::Bits bits(static_cast<std::size_t>(text_length) + 2);
  bool set = random.one_in(2);
  for (std::size_t i = 0; i < bits.size(); ++i) {
    if (random.one_in(one_in)) set = !set;
    bits[i] = set;
  }
  return bits;
}

TEST(SelectionToMap, AsTheModel) {
  Random random(68);
  for (int round = 0; round < 3000; ++round) {
    const int length = random.between(1, 400);
    const int longest = random.one_in(2) ? 9 : length;
    Longs list = random_list(random, length, random.between(0, 20), longest);
    if (random.one_in(4)) list.push_back(0);
    if (random.one_in(4) && !list.empty()) {
      list[list.size() / 2] = random.between(-length, 2 * length);
    }
    const model::Bits before = random_bits(random, length, 40);
    const GuardedText map(bytes_of_map(before, length));
    const HeldBlock held(list);
    LockBlock(held.block);
    EXPECT_EQ(SelectionToMap(map.data(), length, held.block), 1);
    ASSERT_EQ(map.view(),
              bytes_of_map(model::add_to_map(before, length, list), length))
        << testing::PrintToString(list) << " of " << length;
    expect_unlocked(held.block);
    ASSERT_EQ(held.longs(), list);
  }
}

TEST(SelectionToMap, NothingToDo) {
  char map = '#';
  const HeldBlock held(Longs{0, 1});
  EXPECT_EQ(SelectionToMap(&map, 5, nullptr), 1);
  EXPECT_EQ(SelectionToMap(&map, 0, held.block), 1);
  EXPECT_EQ(map, '#');
}

TEST(MapToSelection, AsTheModel) {
  Random random(69);
  for (int round = 0; round < 3000; ++round) {
    const int length =
        random.one_in(20) ? random.between(1, 9000) : random.between(1, 300);
    const model::Bits bits =
        random_bits(random, length, random.one_in(2) ? 2 : 50);
    std::string bytes = bytes_of_map(bits, length);
    // What lies in the last byte behind the map's bits is not read.
    const int behind = 0xFF << ((length + 1) % 8) << 1;
    bytes.back() = static_cast<char>(bytes.back() | behind);
    const GuardedText map(bytes);
    const Longs want = model::list_of_map(bits, length);
    HeldBlock held;
    std::int32_t count = kSentinel;
    EXPECT_EQ(MapToSelection(map.data(), length, &held.block, &count), 1);
    ASSERT_EQ(held.longs(), want) << length;
    EXPECT_EQ(count, size_of(want));
    ASSERT_EQ(held.block == nullptr, want.empty());
    if (held.block != nullptr) {
      expect_unlocked(held.block);
      EXPECT_EQ(GetBlockSize(held.block), count * 4);
    }
  }
}

TEST(MapToSelection, NothingToDo) {
  const char map = '\xFF';
  QuillBlock list = nullptr;
  std::int32_t count = kSentinel;
  EXPECT_EQ(MapToSelection(&map, 0, &list, &count), 1);
  EXPECT_EQ(count, kSentinel);
}

// 600,000 runs: the list grows beyond its first million longs.
TEST(MapToSelection, FailOrDropWithoutMemory) {
  const int length = 2'400'000;
  model::Bits few(static_cast<std::size_t>(length) + 2);
  few[1] = true;
  model::Bits many = few;
  for (std::size_t i = 0; i < many.size(); ++i) many[i] = i % 4 == 1;
  bool dropped = false;
  for (const model::Bits& bits : {few, many}) {
    const std::string map = bytes_of_map(bits, length);
    const Longs want = model::list_of_map(bits, length);
    for (int fail_at = 0; fail_at < 6; ++fail_at) {
      char* nowhere = nullptr;
      HeldBlock held;
      QuillBlock list = &nowhere;
      std::int32_t count = kSentinel;
      {
        const HeapWatch heap(fail_at, true);
        const auto result = MapToSelection(map.data(), length, &list, &count);
        EXPECT_EQ(heap.outstanding(), result == 1 ? 2 : 0);
        if (result == 0) {
          EXPECT_EQ(list, &nowhere);
          EXPECT_EQ(count, kSentinel);
          continue;
        }
      }
      held.block = list;
      const Longs got = held.longs();
      ASSERT_EQ(size_of(got), count);
      ASSERT_TRUE(std::equal(got.begin(), got.end(), want.begin()));
      EXPECT_TRUE(count == size_of(want) || count == 1'000'000);
      dropped |= count == 1'000'000;
    }
  }
  EXPECT_TRUE(dropped);
}

void check_invert(const Longs& list, std::int32_t start, std::int32_t end,
                  const Longs& want) {
  HeldBlock held(list);
  QuillBlock block = held.block;
  LockBlock(block);
  EXPECT_EQ(InvertSelections(&block, start, end), 1);
  ASSERT_EQ(block, held.block);
  ASSERT_EQ(held.longs(), want)
      << testing::PrintToString(list) << " in " << start << ", " << end;
  EXPECT_EQ(GetBlockSize(block), size_of(want) * 4);
  expect_unlocked(block);
}

TEST(InvertSelections, AsTheModel) {
  Random random(70);
  for (int round = 0; round < 3000; ++round) {
    const int start = random.between(0, 5);
    const int end = start + random.between(0, 60);
    Longs list;
    for (int i = random.between(0, 8); i > 0; --i) {
      list.push_back(random.between(start, end));
      list.push_back(random.between(start, end));
    }
    std::sort(list.begin(), list.end());
    if (!list.empty() && random.one_in(2)) list.front() = start;
    if (!list.empty() && random.one_in(2)) list.back() = end;
    check_invert(list, start, end, model::invert(list, start, end));
  }
}

TEST(InvertSelections, LeaveWhatIsNoCanonicalList) {
  const Longs lists[] = {{2, 4, 6},     {4, 2},         {2, 6, 4, 8},
                         {-1, 4},       {2, 11},        {6, 8, 2, 4},
                         {0, 4, 3, 10}, {0, 10, 10, 11}};
  for (const Longs& list : lists) check_invert(list, 0, 10, list);
  check_invert({2, 4}, 7, 3, {2, 4});
  check_invert({}, 7, 3, {7, 3});
  QuillBlock none = nullptr;
  EXPECT_EQ(InvertSelections(&none, 0, 10), 1);
  EXPECT_EQ(none, nullptr);
}

TEST(InvertSelections, LeaveTheListWithoutMemory) {
  Longs list(2000);
  std::iota(list.begin(), list.end(), 1);
  HeldBlock held(list);
  const HeapWatch heap(0, true);
  EXPECT_EQ(InvertSelections(&held.block, 0, 9999), 1);
  EXPECT_TRUE(heap.failed());
  EXPECT_EQ(held.longs(), list);
  expect_unlocked(held.block);
}

// ---------------------------------------------------------------- extracting

void check_extract(std::string_view bytes, const Longs& list,
                   std::string_view prefix, std::string_view suffix,
                   int stop_at, unsigned char answer) {
  YieldRecorder expecting(stop_at, answer);
  const model::Extracted want =
      model::extract(bytes, list, prefix, suffix, kReference, expecting);
  const GuardedText text(bytes);
  const GuardedText before(prefix);
  const GuardedText after(suffix);
  const HeldBlock held(list);
  QuillBlock sentinel = held.block;
  QuillBlock made = sentinel;
  YieldRecorder host(stop_at, answer);
  const HeapWatch heap;
  const auto result =
      ExtractSelections(text.data(), held.block, before.data(),
                        static_cast<std::int32_t>(prefix.size()), after.data(),
                        static_cast<std::int32_t>(suffix.size()), &made,
                        kReference, host.callback());
  ASSERT_EQ(result, want.result);
  ASSERT_EQ(host.calls(), expecting.calls());
  EXPECT_FALSE(is_locked(held.block));
  if (result == 0) {
    EXPECT_EQ(made, sentinel);
    return;
  }
  ASSERT_EQ(made != nullptr, want.handed_over);
  ASSERT_EQ(bytes_of(made), want.bytes) << testing::PrintToString(list);
  if (made != nullptr) expect_unlocked(made);
  DisposeBlock(made);
  EXPECT_EQ(heap.outstanding(), 0);
}

TEST(ExtractSelections, AsTheModel) {
  Random random(71);
  for (int round = 0; round < 400; ++round) {
    const std::string text = random_bytes(random, random.between(1, 90));
    const int length = static_cast<int>(text.size());
    Longs list = random_list(random, length, random.between(0, 9), length);
    if (random.one_in(3)) list.push_back(0);
    const std::string prefix(static_cast<std::size_t>(random.between(0, 3)),
                             '[');
    const std::string suffix(static_cast<std::size_t>(random.between(0, 70)),
                             ']');
    for (const std::int32_t every : kYieldMaxima) {
      const YieldMaxScope scope(every);
      for (const int stop : {kNever, 0, 1, 2, 8}) {
        check_extract(text, list, prefix, suffix, stop,
                      static_cast<unsigned char>(stop * 2));
      }
    }
  }
}

TEST(ExtractSelections, RefuseWhatCantBeExtracted) {
  struct Case {
    const char* what;
    const char* text;
    Longs list;
    const char* prefix;
    std::int32_t prefix_length;
    std::int32_t want;
  };
  const Case cases[] = {
      {"a negative length is none", "abc", {0, 2}, nullptr, -5, 1},
      {"a start before the text", "abc", {-1, 2}, "", 0, 0},
      {"no text", nullptr, {0, 2}, "", 0, 0},
      {"no text and nothing to take", nullptr, {2, 2}, "", 0, 1},
      {"no prefix", "abc", {0, 2}, nullptr, 1, 0},
      {"larger than a Block", "abc", {0, 1, 0, INT32_MAX}, "", 0, 0},
      {"one long", "abc", {0}, "", 0, 0},
  };
  for (const Case& c : cases) {
    const HeldBlock held(c.list);
    QuillBlock made = held.block;
    EXPECT_EQ(
        ExtractSelections(c.text, held.block, c.prefix, c.prefix_length,
                          nullptr, 0, &made, 0, YieldRecorder().callback()),
        c.want)
        << c.what;
    ASSERT_EQ(made == held.block, c.want == 0) << c.what;
    if (c.want == 1) DisposeBlock(made);
  }
  QuillBlock made = nullptr;
  EXPECT_EQ(ExtractSelections("abc", nullptr, "", 0, "", 0, &made, 0,
                              YieldRecorder().callback()),
            0);
}

TEST(ExtractSelections, FailWithoutMemory) {
  const HeldBlock held(Longs{0, 2});
  for (const int fail_at : {0, 1}) {
    QuillBlock made = held.block;
    const HeapWatch heap(fail_at);
    EXPECT_EQ(ExtractSelections("abc", held.block, "[", 1, "]", 1, &made, 0,
                                YieldRecorder().callback()),
              0);
    EXPECT_EQ(made, held.block);
    EXPECT_EQ(heap.outstanding(), 0);
    EXPECT_FALSE(is_locked(held.block));
  }
}

}  // namespace
}  // namespace quill::test
