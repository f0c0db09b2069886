// Blocks: sizes, contents across resizes, lock state, and short memory.
#include "tests/support/blocks.h"

#include <gtest/gtest.h>

#include "blocks/memory_manager.h"
#include "tests/support/heap_watch.h"

namespace quill::test {
namespace {

TEST(Blocks, KeepContentsAcrossResizes) {
  for (const int size : {0, 1, 100, 4'000'000}) {
    HeldBlock held(std::string(static_cast<std::size_t>(size), 'q'));
    for (const int next : {size + 1, size / 2, 0, 5'000'000, 3}) {
      const std::string before = held.bytes();
      EXPECT_EQ(ResizeBlock(held.block, next), held.block);
      ASSERT_EQ(GetBlockSize(held.block), next);
      const auto kept = std::min(before.size(), held.bytes().size());
      EXPECT_EQ(held.bytes().substr(0, kept), before.substr(0, kept));
    }
  }
}

TEST(Blocks, FollowTheirRules) {
  const HeldBlock empty("");
  EXPECT_NE(LockBlock(empty.block), nullptr) << "an empty one has an address";
  for (const std::size_t size : {0U, 1U, 512U, 513U, 300'000U}) {
    DisposeBlock(block_of(std::string(size, 'x')));  // memory in use before
    const HeldBlock clear(NewBlockClear(static_cast<std::int32_t>(size)));
    EXPECT_EQ(clear.bytes(), std::string(size, '\0'));
  }

  EXPECT_EQ(NewBlock(-1), nullptr);
  EXPECT_EQ(NewBlockClear(-1), nullptr);
  EXPECT_EQ(GetBlockSize(nullptr), 0);
  EXPECT_EQ(ResizeBlock(nullptr, 4), nullptr);
  DisposeBlock(nullptr);

  const HeldBlock held("abc");
  EXPECT_EQ(LockBlock(held.block), *held.block);
  EXPECT_EQ(ResizeBlock(held.block, -1), held.block);
  EXPECT_EQ(held.bytes(), "abc");
  LockBlock(held.block);
  ResizeBlock(held.block, 2);
  EXPECT_FALSE(is_locked(held.block));
}

TEST(Blocks, ShortMemoryLeavesThemAsTheyWere) {
  HeldBlock held("abc");
  {
    const HeapWatch heap(0, true);
    EXPECT_EQ(NewBlock(5), nullptr);
    EXPECT_EQ(ResizeBlock(held.block, 1000), held.block);
    EXPECT_EQ(heap.outstanding(), 0);
  }
  EXPECT_EQ(held.bytes(), "abc");
}

TEST(ActiveBlocks, ResizeAsTheContractSays) {
  HeldBlock held("abcdef");
  char* contents = LockBlock(held.block);
  char* const before = contents;
  std::int32_t capacity = 6;

  EXPECT_EQ(ResizeActiveBlock(&held.block, &capacity, &contents, 6), 1);
  EXPECT_TRUE(is_locked(held.block)) << "the same size touches nothing";
  EXPECT_EQ(contents, before);

  EXPECT_EQ(ResizeActiveBlock(&held.block, &capacity, &contents, 3), 1);
  EXPECT_EQ(capacity, 3);
  EXPECT_EQ(GetBlockSize(held.block), 3);

  EXPECT_EQ(ResizeActiveBlock(&held.block, &capacity, &contents, 900), 1);
  EXPECT_EQ(contents, *held.block);
  EXPECT_EQ(std::string(contents, 3), "abc");
  EXPECT_TRUE(is_locked(held.block));

  QuillBlock none = nullptr;
  EXPECT_EQ(ResizeActiveBlock(&none, &capacity, &contents, 901), 0);
}

TEST(ActiveBlocks, AreGoneOnceGrowthWasRefused) {
  const HeapWatch heap(1, true);
  QuillBlock block = NewBlock(3);
  char* contents = LockBlock(block);
  std::int32_t capacity = 3;
  EXPECT_EQ(ResizeActiveBlock(&block, &capacity, &contents, 1000), 0);
  EXPECT_EQ(heap.outstanding(), 0);
}

}  // namespace
}  // namespace quill::test
