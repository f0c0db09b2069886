// Breaks: widening a selection and the two break lists, against their steps
// done one by one.
#include <gtest/gtest.h>

#include "blocks/memory_manager.h"
#include "quillcore.h"
#include "tests/models/break_model.h"
#include "tests/support/blocks.h"
#include "tests/support/each_kernel.h"
#include "tests/support/guarded_text.h"
#include "tests/support/heap_watch.h"
#include "tests/support/random_text.h"

namespace quill::test {
namespace {

using model::WidenedSelection;

std::int32_t count_of(const Longs& longs) {
  return static_cast<std::int32_t>(longs.size());
}

std::int32_t find_breaks(const model::Widening& of, WidenedSelection& selection,
                         QuillYield yield) {
  return utf8_FindBreaks(
      of.text.data(), of.lower_bound, of.end, of.backward.members.data(),
      count_of(of.backward.members), of.backward.flag,
      of.forward.members.data(), count_of(of.forward.members), of.forward.flag,
      &selection.start, &selection.end, &selection.break_found, of.reference,
      yield);
}

model::CharacterClass random_class(Random& random) {
  model::CharacterClass one;
  one.flag = random.pick(std::vector<unsigned char>{0, 1, 2});
  for (int i = random.between(0, 6); i > 0; --i) {
    one.members.push_back(packed(random.pick(alphabet())));
  }
  return one;
}

TEST(FindBreaks, FollowsTheSteps) {
  Random random(1);
  int widened = 0;
  for (int round = 0; round < 10'000; ++round) {
    const std::string text = random.one_in(3)
                                 ? random_bytes(random, random.between(0, 30))
                                 : random_text(random, random.between(0, 30));
    const GuardedText guarded(text);
    const auto size = static_cast<std::int32_t>(text.size());
    const auto offset = [&] { return random.between(-2, size + 2); };
    model::Widening of{guarded.view()};
    of.lower_bound = random.one_in(2) ? 0 : offset();
    of.end = random.between(0, size);
    of.backward = random_class(random);
    of.forward = random_class(random);
    of.reference = 9;
    const WidenedSelection before{offset(), offset(), 7};
    const YieldMaxScope scope(kYieldMaxima[round % 6]);
    const int stop_at = random.pick(std::vector<int>{0, 1, 3, kNever});
    WidenedSelection want = before;
    WidenedSelection got = before;
    YieldRecorder naive(stop_at, 2);
    const bool result = model::find_breaks(of, want, naive);
    YieldRecorder host(stop_at, 2);
    ASSERT_EQ(find_breaks(of, got, host.callback()), result ? 1 : 0)
        << "round " << round;
    ASSERT_EQ(got, want) << "round " << round;
    ASSERT_EQ(host.calls(), naive.calls()) << "round " << round;
    widened += result ? 1 : 0;
  }
  EXPECT_GT(widened, 3000);
}

// Where a host keeps both ends in one variable, the forward search begins
// where the backward one ended.
TEST(FindBreaks, StartsForwardFromWhatTheHostNowHolds) {
  const std::string text = "ab cd";
  const Longs space = {0x20};
  std::int32_t both = 4;
  unsigned char found = 0;
  const YieldRecorder host;
  EXPECT_EQ(utf8_FindBreaks(text.data(), 0, 5, space.data(), 1, 0, space.data(),
                            1, 1, &both, &both, &found, 0, host.callback()),
            1);
  EXPECT_EQ(both, 3);
  EXPECT_EQ(found, 1);
}

struct ListKind {
  const char* name;
  decltype(&utf8_ComputeBreaks) compute;
  decltype(&model::breaks) model;
};
const ListKind kKinds[] = {
    {"characters", utf8_ComputeBreaks, model::breaks},
    {"spaces", utf8_ComputeSpaceBreaks, model::space_breaks},
};

// Lines, words and stray bytes in an uneven mixture.
std::string random_lines(Random& random) {
  std::string text;
  const int malformed = random.pick(std::vector<int>{3, 60, 100'000});
  for (int pieces = random.between(0, 60); pieces > 0; --pieces) {
    text += random_text(random, random.between(0, 5));
    text += std::string(
        static_cast<std::size_t>(random.one_in(8) ? random.between(0, 90) : 0),
        'w');
    if (random.one_in(3)) {
      text +=
          random.pick(std::vector<std::string>{" ", " ", "\r\n", "\n", "\r"});
    }
    if (random.one_in(malformed)) text += random_bytes(random, 3);
  }
  return text;
}

void follow_the_steps(Random& random) {
  int made = 0;
  for (int round = 0; round < 8'000; ++round) {
    const ListKind& kind = kKinds[round % 2];
    std::string text = random_lines(random);
    if (random.one_in(60)) {
      for (int i = 0; i < 12; ++i) text += random_lines(random);
    }
    const auto size = static_cast<std::int32_t>(text.size());
    model::Breaking of{text};
    of.start = random.one_in(2) ? 0 : random.between(-1, size);
    of.end = random.one_in(2) ? size : random.between(0, size + 1);
    of.unit = random.one_in(2) ? random.between(0, 6) : random.between(1, 100);
    of.reference = 5;
    const YieldMaxScope scope(kYieldMaxima[(round / 2) % 6]);
    const int stop_at = random.pick(std::vector<int>{0, 1, 3, kNever});
    YieldRecorder naive(stop_at, 255);
    const std::optional<Longs> want = kind.model(of, naive);
    YieldRecorder host(stop_at, 255);
    const HeldBlock block(text);
    LockBlock(block.block);
    QuillBlock list = block.block;
    std::int32_t count = -3;
    SCOPED_TRACE(testing::Message() << kind.name << ", round " << round);
    const std::int32_t result =
        kind.compute(block.block, of.start, of.end, of.unit, &list, &count, 5,
                     host.callback());
    ASSERT_EQ(result, want ? 1 : 0);
    ASSERT_EQ(host.calls(), naive.calls());
    if (!want) {
      ASSERT_EQ(list, block.block);
      ASSERT_EQ(count, -3);
      continue;
    }
    ++made;
    ASSERT_FALSE(is_locked(block.block));
    ASSERT_FALSE(is_locked(list));
    ASSERT_EQ(count, count_of(*want));
    ASSERT_EQ(GetBlockSize(list), count * 4);
    ASSERT_EQ(longs_of(list), *want);
    DisposeBlock(list);
  }
  EXPECT_GT(made, 4000);
}

TEST(BreakLists, FollowTheSteps) {
  Random random(2);
  with_each_kernel([&random] { follow_the_steps(random); });
}

// Lists that outgrow their first capacity, which counts on full lines.
TEST(BreakLists, Grow) {
  std::string text;
  while (text.size() < 1'500'000) text += "a bcdefghi";
  const HeldBlock block(text);
  const YieldRecorder host;
  YieldRecorder naive;
  const auto size = static_cast<std::int32_t>(text.size());
  HeldBlock list;
  std::int32_t count = 0;
  ASSERT_EQ(utf8_ComputeSpaceBreaks(block.block, 0, size, 10, &list.block,
                                    &count, 0, host.callback()),
            1);
  EXPECT_EQ(list.longs(), model::space_breaks({text, 0, size, 10, 0}, naive));
}

TEST(BreakLists, LeaveNothingBehindWhenMemoryIsShort) {
  const HeldBlock block("a bcde f ghij kl");
  const YieldRecorder host;
  for (const ListKind& kind : kKinds) {
    for (int at = 0; at < 2; ++at) {
      const HeapWatch heap(at);
      QuillBlock list = block.block;
      std::int32_t count = -3;
      LockBlock(block.block);
      EXPECT_EQ(kind.compute(block.block, 0, 16, 4, &list, &count, 0,
                             host.callback()),
                0);
      EXPECT_EQ(list, block.block);
      EXPECT_EQ(count, -3);
      EXPECT_EQ(heap.outstanding(), 0);
    }
  }
}

TEST(BreakLists, RefuseWhatCannotBe) {
  const HeldBlock block("abc");
  const YieldRecorder host;
  for (const ListKind& kind : kKinds) {
    QuillBlock list = block.block;
    std::int32_t count = -3;
    const auto refused = [&](QuillBlock text, std::int32_t start,
                             std::int32_t end, std::int32_t unit) {
      return kind.compute(text, start, end, unit, &list, &count, 0,
                          host.callback()) == 0 &&
             list == block.block && count == -3;
    };
    EXPECT_TRUE(refused(nullptr, 0, 3, 1));
    EXPECT_TRUE(refused(block.block, 0, 4, 1));
    EXPECT_TRUE(refused(block.block, -1, 3, 1));
    EXPECT_TRUE(refused(block.block, 3, 3, 1));
    EXPECT_TRUE(refused(block.block, 2'147'483'647, -2'147'483'647, 1));
    EXPECT_TRUE(refused(block.block, 0, 3, 0));
  }
}

}  // namespace
}  // namespace quill::test
