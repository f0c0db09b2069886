// Masks: lookups against their steps done one by one, the prepared table, the
// sort's order of equal keys, and rewriting text.
#include <gtest/gtest.h>

#include <algorithm>

#include "quillcore.h"
#include "tests/support/blocks.h"
#include "tests/support/heap_watch.h"
#include "tests/support/random_text.h"
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

}  // namespace
}  // namespace quill::test
