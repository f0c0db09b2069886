// Masks: lookups against their steps done one by one, the prepared table, the
// sort's order of equal keys, and rewriting text.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numeric>
#include <tuple>
#include <utility>

#include "blocks/memory_manager.h"
#include "quillcore.h"
#include "tests/models/mask_model.h"
#include "tests/support/blocks.h"
#include "tests/support/each_kernel.h"
#include "tests/support/guarded_text.h"
#include "tests/support/heap_watch.h"
#include "tests/support/random_text.h"
#include "utf8/character_map.h"
#include "utf8/characters.h"
#include "utf8/mask_table.h"

namespace quill::test {
namespace {

// A mask with keys of every length, some of them broken characters.
struct RandomMask {
  Longs keys;
  Longs values;

  RandomMask(Random& random, int count, bool sorted) {
    for (int i = 0; i < count; ++i) {
      keys.push_back(random_character(random));
      values.push_back(random.one_in(3) ? random_character(random)
                                        : random.between(0, 127));
    }
    if (sorted) std::sort(keys.begin(), keys.end());
  }
  Mask view() const {
    return {keys.data(), values.data(), static_cast<std::int32_t>(keys.size())};
  }

  static std::int32_t random_character(Random& random) {
    switch (random.between(0, 5)) {
      case 0:
        return random.between(-0x7FFFFFFF, 0x7FFFFFFF);
      case 1:
        return random.between(0xC0, 0xDF) | random.between(0, 255) << 8;
      case 2:
        return packed(random.pick(alphabet()));
      case 3:
        return 0x80E2 | random.between(0, 0xFFFF) << 8;
      default:
        return random.between(0, 127);
    }
  }
};

TEST(MaskTables, AnswerLikeTheMask) {
  Random random(1);
  for (int round = 0; round < 300; ++round) {
    const RandomMask mask(random, random.between(0, 200), !random.one_in(4));
    const std::int32_t bytes = random.pick(Longs{0, 7, 100, 1'000'000});
    const HeapWatch heap;
    MaskTable table(mask.view(), bytes);
    for (int i = 0; i < 400; ++i) {
      const std::int32_t character = !mask.keys.empty() && random.one_in(2)
                                         ? random.pick(mask.keys)
                                         : RandomMask::random_character(random);
      ASSERT_EQ(table.map(character), mask.view().map(character))
          << std::hex << character << ", round " << round;
    }
    EXPECT_EQ(heap.requests(), 0);
  }
}

// Characters that keep their length under many masks: neighbours in ASCII, of
// two bytes, and of three in a few pages.
std::string near_character(Random& random) {
  const auto last = static_cast<char>(random.between(0x80, 0xBF));
  switch (random.between(0, 4)) {
    case 0:
      return {static_cast<char>(random.between(0xC3, 0xC6)), last};
    case 1:
      return {'\xE3', static_cast<char>(random.between(0x80, 0x83)), last};
    case 2:
      return {random.pick(std::vector<char>{'\xE1', '\xF0'}), '\x90', last,
              random.one_in(9) ? 'x' : last};
    default:
      return {static_cast<char>(random.between(0, 127))};
  }
}

void use_near_characters(Random& random, Longs& keys, Longs& values) {
  for (int i = random.between(0, 300); i > 0; --i) {
    const std::string from = near_character(random);
    std::string to = near_character(random);
    while (to.size() != from.size() && !random.one_in(30)) {
      to = near_character(random);
    }
    keys.push_back(packed(from.substr(0, 4)));
    values.push_back(packed(to.substr(0, 4)));
  }
  if (random.one_in(9)) return;
  std::vector<std::pair<std::int32_t, std::int32_t>> pairs;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    pairs.emplace_back(keys[i], values[i]);
  }
  std::stable_sort(pairs.begin(), pairs.end(),
                   [](auto& a, auto& b) { return a.first < b.first; });
  for (std::size_t i = 0; i < keys.size(); ++i) {
    std::tie(keys[i], values[i]) = pairs[i];
  }
}

// How long a run the map makes of a text, character by character: as long as
// each is in order and gives as many bytes as it has.
std::string map_one_by_one(const Mask& mask, std::string_view text,
                           Offset most) {
  std::string mapped;
  const Byte* const bytes = as_bytes(text.data());
  const Offset end = std::ssize(text);
  for (Offset at = 0; at < end && most > 0; --most) {
    const Walk walk = walk_characters(bytes + at, bytes + end, 1);
    if (walk.characters == 0) break;
    const Offset length = walk.next - bytes - at;
    char out[4];
    const std::int32_t value = mask.map(pack(bytes + at, length));
    if (unpack(value, out) != length) break;
    mapped.append(out, static_cast<std::size_t>(length));
    at += length;
  }
  return mapped;
}

// A map's runs are as long as the mask lets them be, once it knows the longer
// characters.
void compare_maps(Random& random) {
  Longs keys;
  Longs values;
  use_near_characters(random, keys, values);
  const Mask whole{keys.data(), values.data(),
                   static_cast<std::int32_t>(keys.size())};
  // A negative count stands for a mask that changes nothing.
  const Mask mask =
      random.one_in(50) ? Mask{keys.data(), values.data(), -2} : whole;
  CharacterMap map;
  map_ascii(mask, map);
  const bool longer = !random.one_in(4);
  if (longer) map_longer(mask, map);
  std::string text;
  const bool ascii = random.one_in(4);
  for (int i = random.between(0, 300); i > 0; --i) {
    const std::string next = near_character(random);
    if (!ascii || next.size() == 1) text += next;
    if (!ascii && random.one_in(400)) text += random_bytes(random, 3);
  }
  const GuardedText guarded(text);
  const Byte* const from = as_bytes(guarded.data());
  const Offset size = std::ssize(text);
  for (int round = 0; round < 4; ++round) {
    const Offset start = random.between(0, static_cast<int>(size));
    const Offset most =
        random.one_in(2) ? size : random.between(0, static_cast<int>(size));
    const GuardedText to(
        std::string(static_cast<std::size_t>(size - start), '?'));
    const MappedRun run =
        map_characters(map, from + start, size - start, to.data(), most);
    const MappedRun plain = map_characters_plainly(
        map, from + start, size - start,
        std::string(static_cast<std::size_t>(size - start), '?').data(), most);
    ASSERT_EQ(run.bytes, plain.bytes);
    ASSERT_EQ(run.characters, plain.characters);
    const std::string want = map_one_by_one(
        mask, text.substr(static_cast<std::size_t>(start)), most);
    ASSERT_EQ(to.view().substr(0, static_cast<std::size_t>(run.bytes)),
              want.substr(0, static_cast<std::size_t>(run.bytes)));
    ASSERT_LE(run.bytes, std::ssize(want));
    // Four bytes with the beginning of a key are a stop.
    const bool at_four =
        run.bytes < size - start && from[start + run.bytes] >= 0xF0;
    if (ascii || (longer && !at_four)) {
      ASSERT_EQ(run.bytes, std::ssize(want));
    }
  }
}

TEST(CharacterMaps, MapRunsAsTheMaskDoes) {
  Random random(9);
  with_each_kernel([&random] {
    for (int round = 0; round < 800; ++round) {
      SCOPED_TRACE(testing::Message() << "round " << round);
      compare_maps(random);
      if (testing::Test::HasFailure()) return;
    }
  });
}

TEST(Masks, MapOneCharacter) {
  const Longs keys = {0x41, 0x41, 0x42};
  const Longs values = {1, 2, 3};
  const Longs unsorted = {0x42, 0x41, 0x41};
  struct Case {
    const char* what;
    const Longs& keys;
    const std::int32_t* values;
    std::int32_t count;
    unsigned char sorted;
    std::int32_t character;
    std::int32_t want;
  };
  const Case cases[] = {
      {"the first of equal keys", keys, values.data(), 3, 1, 0x41, 1},
      {"also in array order", keys, values.data(), 3, 0, 0x41, 1},
      {"no key", keys, values.data(), 3, 1, 0x43, 0x43},
      {"in array order, past the count", keys, values.data(), 2, 0, 0x42, 0x42},
      {"array order finds it", unsorted, values.data(), 3, 2, 0x42, 1},
      {"bisection misses it", unsorted, values.data(), 3, 1, 0x42, 0x42},
      {"no values", keys, nullptr, 3, 1, 0x41, 0x41},
      {"no keys", keys, values.data(), 0, 1, 0x41, 0x41},
      {"fewer than none", keys, values.data(), -1, 0, 0x41, 0x41},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(
        utf8_MaskChar(c.character, c.keys.data(), c.values, c.count, c.sorted),
        c.want)
        << c.what;
  }
}

TEST(Masks, TestMembership) {
  const Longs set = {0x20, 0x2C, 0x2E};
  EXPECT_EQ(utf8_MatchChar(set.data(), 3, 0x2C, 1), 1);
  EXPECT_EQ(utf8_MatchChar(set.data(), 3, 0x2C, 0), 0);
  EXPECT_EQ(utf8_MatchChar(set.data(), 3, 0x41, 2), 1) << "only 1 includes";
  EXPECT_EQ(utf8_MatchChar(nullptr, 0, 0x41, 1), 0);
  EXPECT_EQ(utf8_MatchChar(nullptr, -1, 0x41, 0), 1);
  EXPECT_EQ(utf8_InList(0x2E, set.data(), 3), 1);
  EXPECT_EQ(utf8_InList(0x2E, set.data(), 2), 0);
  EXPECT_EQ(utf8_InList(0x20, set.data(), -1), 0);
}

// Each value is its entry's first place, so that equal keys can be told apart.
struct Entries {
  Longs keys;
  Longs values;

  explicit Entries(const Longs& from) : keys(from), values(from.size()) {
    std::iota(values.begin(), values.end(), 0);
  }
  bool operator==(const Entries&) const = default;
};

void sort(Entries& entries, std::size_t first, std::size_t limit) {
  utf8_SortMask(entries.keys.data(), entries.values.data(),
                static_cast<std::int32_t>(first),
                static_cast<std::int32_t>(limit));
}

TEST(SortedMasks, KeepTheOrderOfEqualKeys) {
  Random random(2);
  for (int round = 0; round < 2000; ++round) {
    const int spread = random.pick(Longs{0, 3, 30, 1'000'000'000});
    Longs keys;
    for (int i = random.between(0, 300); i > 0; --i) {
      keys.push_back(random.between(-spread, spread));
    }
    if (random.one_in(3)) std::sort(keys.begin(), keys.end());
    if (random.one_in(4)) std::reverse(keys.begin(), keys.end());
    const auto limit = static_cast<std::size_t>(
        random.between(0, static_cast<int>(keys.size())));
    const std::size_t first = random.one_in(2) ? 0 : limit / 3;
    Entries got(keys);
    Entries want(keys);
    sort(got, first, limit);
    model::sort_mask(want.keys, want.values, first, limit);
    ASSERT_EQ(got, want) << "round " << round;
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
    Entries got(keys);
    {
      const HeapWatch heap;
      sort(got, 0, keys.size());
      EXPECT_EQ(heap.requests(), 0);
    }
    ASSERT_TRUE(std::is_sorted(got.keys.begin(), got.keys.end()));
    for (std::size_t i = 0; i < keys.size(); ++i) {
      ASSERT_EQ(keys[static_cast<std::size_t>(got.values[i])], got.keys[i]);
    }
  }
}

// The keys in many windows of the search for equal ones: pairs far apart.
TEST(SortedMasks, NoticeEqualKeysAmongMany) {
  Longs keys;
  for (std::int32_t i = 0; i < 9'000; ++i) keys.push_back(i);
  keys.push_back(8'000);
  Entries got(keys);
  Entries want(keys);
  sort(got, 0, keys.size());
  model::sort_mask(want.keys, want.values, 0, keys.size());
  EXPECT_EQ(got, want);
}

TEST(LongArrays, HoldTheMaskedCharacters) {
  Random random(3);
  for (int round = 0; round < 500; ++round) {
    const std::string text = random_bytes(random, random.between(0, 60));
    const GuardedText guarded(text);
    const RandomMask mask(random, random.between(0, 40), true);
    const auto size = static_cast<std::int32_t>(text.size());
    const std::int32_t start = random.between(0, size);
    const std::int32_t end = random.between(start, size);
    Longs want;
    for (std::int64_t at = start; at < end;) {
      const model::Read read = model::next_character(text, at, end);
      if (!read.found) break;
      want.push_back(model::map(mask.keys, mask.values, read.packed));
      at = read.next;
    }
    Longs got(text.size() + 1);
    std::int32_t count = -5;
    const std::int32_t result = utf8_StringToLongArray(
        guarded.data(), start, end, mask.keys.data(), mask.values.data(),
        mask.view().count, got.data(), &count);
    ASSERT_EQ(result, start < end ? 1 : 0);
    ASSERT_EQ(count, start < end ? static_cast<std::int32_t>(want.size()) : -5);
    got.resize(want.size());
    if (result == 1) {
      ASSERT_EQ(got, want) << "round " << round;
    }
  }
}

// One call of either rewriting operation.
struct MaskCall {
  model::Masking of;
  bool whole_text = false;
  std::int32_t start = 0;
  std::int32_t end = 0;
  Longs selections = {};

  std::int32_t operator()(QuillBlock source, QuillBlock* output,
                          QuillYield yield) const {
    const auto count = static_cast<std::int32_t>(of.keys.size());
    if (whole_text) {
      return utf8_MaskStringSelection(
          source, selections.data(),
          static_cast<std::int32_t>(selections.size()), of.keys.data(),
          of.values.data(), count, output, of.reference, yield);
    }
    return utf8_MaskString(source, start, end, of.keys.data(), of.values.data(),
                           count, output, 77, of.reference, yield);
  }
  std::optional<std::string> want(YieldRecorder& host) const {
    return whole_text ? model::mask_selections(of, selections, host)
                      : model::mask_string(of, start, end, host);
  }
};

// A long text, mostly ASCII, and a mask of ASCII ranges moved by a constant.
void use_ranges(Random& random, model::Masking& of) {
  while (of.text.size() < 5000) {
    of.text += random_text(random, random.between(0, 20));
    of.text += std::string(static_cast<std::size_t>(random.between(0, 150)),
                           static_cast<char>(random.between(0, 127)));
  }
  of.keys.clear();
  of.values.clear();
  const std::int32_t ranges = random.between(1, 5);
  for (std::int32_t r = 0; r < ranges; ++r) {
    const std::int32_t first = r * 25 + random.between(0, 12);
    const std::int32_t change = random.between(-first, 160);
    for (std::int32_t key = first; key < first + 12; ++key) {
      of.keys.push_back(key);
      of.values.push_back(key + change);
    }
  }
}

MaskCall random_call(Random& random) {
  MaskCall call;
  call.of.text = random.one_in(3) ? random_bytes(random, random.between(0, 50))
                                  : random_text(random, random.between(0, 200));
  const RandomMask mask(random, random.between(0, 30), true);
  call.of.keys = mask.keys;
  call.of.values = mask.values;
  if (random.one_in(40)) use_ranges(random, call.of);
  if (random.one_in(10)) {
    for (int i = random.between(0, 500); i > 0; --i) {
      call.of.text += near_character(random);
    }
    call.of.keys.clear();
    call.of.values.clear();
    use_near_characters(random, call.of.keys, call.of.values);
  }
  call.of.reference = 42;
  call.whole_text = random.one_in(2);
  const auto size = static_cast<std::int32_t>(call.of.text.size());
  const int outside = random.one_in(10) ? 2 : 0;
  const auto offset = [&] { return random.between(-outside, size + outside); };
  call.start = random.one_in(2) ? 0 : offset();
  call.end = random.one_in(2) ? size : offset();
  for (int i = random.between(0, 8); i > 0; --i) {
    call.selections.push_back(offset());
  }
  if (random.one_in(2)) {
    std::sort(call.selections.begin(), call.selections.end());
  }
  return call;
}

void follow_the_steps(Random& random) {
  int succeeded = 0;
  for (int round = 0; round < 4000; ++round) {
    const MaskCall call = random_call(random);
    const YieldMaxScope scope(kYieldMaxima[round % 6]);
    const int stop_at = random.pick(std::vector<int>{0, 1, 3, kNever});
    const auto answer = random.pick(std::vector<unsigned char>{0, 2, 255});
    YieldRecorder naive(stop_at, answer);
    const std::optional<std::string> want = call.want(naive);
    YieldRecorder host(stop_at, answer);
    HeldBlock source(call.of.text);
    LockBlock(source.block);
    HeldBlock sentinel("x");
    QuillBlock output = sentinel.block;
    const std::int32_t result = call(source.block, &output, host.callback());
    ASSERT_EQ(result, want ? 1 : 0) << "round " << round;
    ASSERT_EQ(host.calls(), naive.calls()) << "round " << round;
    if (result == 0) continue;
    ++succeeded;
    ASSERT_FALSE(is_locked(source.block));
    ASSERT_FALSE(is_locked(output));
    ASSERT_EQ(bytes_of(output), *want) << "round " << round;
    DisposeBlock(output);
  }
  EXPECT_GT(succeeded, 1300);
}

TEST(MaskedTexts, FollowTheSteps) {
  Random random(4);
  with_each_kernel([&random] { follow_the_steps(random); });
}

TEST(MaskedTexts, RefuseWithoutWriting) {
  const Longs keys = {0x61};
  const HeldBlock source("abc");
  const HeldBlock empty("");
  const Longs beyond = {0, 1, 2, 4};
  struct Case {
    const char* what;
    QuillBlock source;
    std::int32_t start;
    std::int32_t end;
    const std::int32_t* keys;
    std::int32_t count;
  };
  const Case cases[] = {
      {"empty range", source.block, 1, 1, keys.data(), 1},
      {"before the text", source.block, -1, 2, keys.data(), 1},
      {"beyond the text", source.block, 0, 4, keys.data(), 1},
      {"far beyond the text", source.block, 0, 2'147'483'647, keys.data(), 1},
      {"no source", nullptr, 0, 3, keys.data(), 1},
      {"no keys", source.block, 0, 3, nullptr, 1},
      {"empty mask", source.block, 0, 3, keys.data(), 0},
  };
  const YieldRecorder host;
  for (const Case& c : cases) {
    QuillBlock output = source.block;
    EXPECT_EQ(utf8_MaskString(c.source, c.start, c.end, c.keys, keys.data(),
                              c.count, &output, 0, 0, host.callback()),
              0)
        << c.what;
    EXPECT_EQ(output, source.block) << c.what;
  }
  const auto mask_selections = [&](QuillBlock of, const Longs& longs) {
    QuillBlock output = source.block;
    const std::int32_t result = utf8_MaskStringSelection(
        of, longs.data(), static_cast<std::int32_t>(longs.size()), keys.data(),
        keys.data(), 1, &output, 0, host.callback());
    EXPECT_EQ(output, source.block);
    return result;
  };
  EXPECT_EQ(mask_selections(empty.block, {}), 0);
  EXPECT_EQ(mask_selections(nullptr, {}), 0);
  EXPECT_EQ(mask_selections(source.block, beyond), 0);
}

// A mask of fewer than no entries is none that is refused: it maps nothing.
TEST(MaskedTexts, TakeANegativeCount) {
  const Longs keys = {0x61};
  const HeldBlock source("abc");
  HeldBlock output;
  const YieldRecorder host;
  EXPECT_EQ(utf8_MaskString(source.block, 0, 3, keys.data(), keys.data(), -1,
                            &output.block, 0, 0, host.callback()),
            1);
  EXPECT_EQ(output.bytes(), "abc");
}

// Characters that grow four times as long, past every step of growth.
TEST(MaskedTexts, Grow) {
  const Longs keys = {0x61};
  const Longs values = {packed("\xF0\x9F\x98\x80")};
  MaskCall call{{std::string(600'000, 'a'), keys, values, 0}};
  call.end = 600'000;
  call.selections = {1, 5, 7, 599'990};
  for (const bool whole_text : {false, true}) {
    call.whole_text = whole_text;
    YieldRecorder host;
    const std::optional<std::string> want = call.want(host);
    HeldBlock source(call.of.text);
    HeldBlock output;
    ASSERT_EQ(call(source.block, &output.block, host.callback()), 1);
    EXPECT_EQ(output.bytes(), want);
  }
}

TEST(MaskedTexts, LeaveNothingBehindWhenMemoryIsShort) {
  MaskCall call{{std::string(1000, 'a'), {0x61}, {0xA9C3}, 0}};
  call.end = 1000;
  call.selections = {0, 900};
  const YieldRecorder host;
  const HeldBlock source(call.of.text);
  for (const bool whole_text : {false, true}) {
    call.whole_text = whole_text;
    bool failed = true;
    for (int at = 0; failed; ++at) {
      const HeapWatch heap(at);
      QuillBlock output = source.block;
      LockBlock(source.block);
      const std::int32_t result = call(source.block, &output, host.callback());
      failed = heap.failed();
      if (at < 2) {
        EXPECT_EQ(output, nullptr) << "there was nothing to store";
      }
      EXPECT_FALSE(at > 1 && is_locked(source.block));
      // Giving memory back may be refused without harm.
      if (result == 1) DisposeBlock(output);
      EXPECT_TRUE(at > 2 || result == 0);
      EXPECT_EQ(heap.outstanding(), 0);
    }
  }
}

}  // namespace
}  // namespace quill::test
