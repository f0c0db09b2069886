// Every set of vector kernels against the portable one: all lengths and
// alignments around the widths of vectors, against pages that can't be read.
#include <gtest/gtest.h>

#include <cstring>

#include "blocks/byte_kernels.h"
#include "tests/support/guarded_text.h"
#include "tests/support/random_text.h"

namespace quill::test {
namespace {

// Few different bytes, so that sets and anchors hit and miss often.
void fill(Random& random, Byte* bytes, Offset size) {
  const std::vector<Byte> from =
      random.one_in(2)
          ? std::vector<Byte>{'a', 'A', 'b', 'z', 0x80, 0xC3, 0xE2, 0xF0}
          : std::vector<Byte>{'a', 'a', 'a', 'a', 'a', 'a', 'b'};
  const bool ascii = from.size() == 7 && random.one_in(2);
  std::string text;
  while (std::ssize(text) < size) {
    text += !ascii && random.one_in(3)
                ? random_text(random, 3)
                : std::string(1, static_cast<char>(random.pick(from)));
  }
  if (size > 0) std::memcpy(bytes, text.data(), static_cast<std::size_t>(size));
}

ByteSet random_set(Random& random) {
  ByteSet set;
  switch (random.between(0, 3)) {
    case 0:
      set.add(random.pick<Byte>({'a', 'b', 0x80, 0xE2}));
      break;
    case 1:
      set.add('a');
      set.add(random.pick<Byte>({'A', 'z', 0xE1}));
      break;
    case 2:
      for (int i = random.between(0, 40); i > 0; --i) {
        set.add(static_cast<Byte>(random.between(0, 255)));
      }
      break;
    default:
      set.add(random.pick<Byte>({'a', 'b', 0x80, 0xE2}));
      set.invert();
  }
  return set;
}

std::vector<std::uint64_t> marks_of(Offset size, auto mark) {
  std::vector<std::uint64_t> words(static_cast<std::size_t>(size + 63) / 64 + 1,
                                   0x5555);
  mark(words.data());
  return words;
}

// Compares the answers of one set of kernels on one range with the portable
// ones. Anchors look up to `before` bytes before and `after` bytes behind it.
void compare(const ByteKernels& k, Random& random, const Byte* first,
             const Byte* last, Offset before, Offset after) {
  const ByteKernels& p = kPortableKernels;
  const Offset size = last - first;
  const Byte byte = random.pick<Byte>({'a', 'b', 'z', 0x80});
  EXPECT_EQ(k.find_byte(first, last, byte), p.find_byte(first, last, byte));
  EXPECT_EQ(k.find_byte_backward(first, last, byte),
            p.find_byte_backward(first, last, byte));
  const Byte other = random.pick<Byte>({'a', 'b', 0x80});
  EXPECT_EQ(k.find_pair(first, last, byte, other, after),
            p.find_pair(first, last, byte, other, after));
  EXPECT_EQ(k.find_non_ascii(first, last), p.find_non_ascii(first, last));
  EXPECT_EQ(k.count_leads(first, last), p.count_leads(first, last));
  const Offset index = random.between(0, static_cast<int>(size));
  EXPECT_EQ(k.nth_lead(first, last, index), p.nth_lead(first, last, index));

  const auto* const longs = reinterpret_cast<const std::int32_t*>(
      first + (4 - reinterpret_cast<std::uintptr_t>(first) % 4) % 4);
  const Offset long_count = std::max<Offset>(size - 3, 0) / 4;
  const std::int32_t value =
      long_count > 0 && random.one_in(2)
          ? longs[random.between(0, static_cast<int>(long_count) - 1)]
          : 0x61616162;
  EXPECT_EQ(k.find_value(longs, longs + long_count, value),
            p.find_value(longs, longs + long_count, value));

  const ByteSet set = random_set(random);
  EXPECT_EQ(k.find_member(first, last, set), p.find_member(first, last, set));
  EXPECT_EQ(k.find_member_backward(first, last, set),
            p.find_member_backward(first, last, set));
  const auto marks = [&](const ByteKernels& kernels, auto mark) {
    return marks_of(size, [&](std::uint64_t* words) { mark(kernels, words); });
  };
  const auto members = [&](const ByteKernels& kernels, std::uint64_t* words) {
    kernels.mark_members(first, last, set, words);
  };
  EXPECT_EQ(marks(k, members), marks(p, members));
  const auto leads = [&](const ByteKernels& kernels, std::uint64_t* words) {
    kernels.mark_leads(first, last, words);
  };
  EXPECT_EQ(marks(k, leads), marks(p, leads));

  std::vector<Anchor> anchors;
  for (int count = random.between(1, kMostAnchors); count > 0; --count) {
    const Offset offset =
        random.between(-static_cast<int>(before), static_cast<int>(after));
    anchors.push_back(random.one_in(2) ? Anchor(byte, offset)
                                       : Anchor(random_set(random), offset));
  }
  EXPECT_EQ(k.find_anchored(first, last, anchors),
            p.find_anchored(first, last, anchors));
  EXPECT_EQ(k.find_anchored_backward(first, last, anchors),
            p.find_anchored_backward(first, last, anchors));
  const auto anchored = [&](const ByteKernels& kernels, std::uint64_t* words) {
    kernels.mark_anchored(first, last, anchors, words);
  };
  EXPECT_EQ(marks(k, anchored), marks(p, anchored));

  const std::vector<std::uint64_t> words = marks(p, members);
  const auto listed = [&](const ByteKernels& kernels) {
    std::vector<std::uint16_t> numbers(words.size() * 64 + kListSlack);
    numbers.resize(static_cast<std::size_t>(
        kernels.list_marks(words.data(), std::ssize(words), numbers.data())));
    return numbers;
  };
  EXPECT_EQ(listed(k), listed(p));

  for (const Offset most :
       {Offset{0}, Offset{random.between(0, static_cast<int>(size))}, size}) {
    const Walk seen = k.walk_characters(first, last, most);
    const Walk wanted = p.walk_characters(first, last, most);
    EXPECT_EQ(seen.next, wanted.next) << "most " << most;
    EXPECT_EQ(seen.characters, wanted.characters) << "most " << most;
  }
}

TEST(Kernels, AgreeWithThePortableOnes) {
  for (const ByteKernels* kernels : available_kernels()) {
    SCOPED_TRACE(kernels->name);
    Random random(31);
    // Pages filled to the last byte: both ends of the range can lie against
    // one that can't be read.
    const GuardedText pages(std::string(4096, '?'));
    Byte* const begin = reinterpret_cast<Byte*>(pages.data());
    for (int size = 0; size <= 340; ++size) {
      for (int round = 0; round < 8; ++round) {
        const Offset before = random.pick<int>({0, 0, 1, 9});
        const Offset after = random.pick<int>({0, 0, 2, 40});
        const bool at_end = random.one_in(2);
        Byte* const first = at_end ? begin + 4096 - after - size
                                   : begin + before + random.between(0, 3);
        fill(random, first - before, before + size + after);
        SCOPED_TRACE(testing::Message()
                     << testing::PrintToString(std::string(
                            reinterpret_cast<char*>(first - before),
                            static_cast<std::size_t>(before + size + after)))
                     << " size " << size << " before " << before << " after "
                     << after);
        compare(*kernels, random, first, first + size, before, after);
        if (HasFailure()) return;
      }
    }
  }
}

// Counters in vector lanes must not wrap on long stretches.
TEST(Kernels, CountLongStretches) {
  for (const ByteKernels* kernels : available_kernels()) {
    SCOPED_TRACE(kernels->name);
    for (const std::string piece : {"a", "\xC3\xA9", "\xE2\x82\xAC"}) {
      std::string text;
      while (text.size() < 300'000) text += piece;
      const Byte* const first = as_bytes(text.data());
      const Byte* const last = first + text.size();
      const Offset characters = std::ssize(text) / std::ssize(piece);
      EXPECT_EQ(kernels->count_leads(first, last), characters);
      EXPECT_EQ(kernels->walk_characters(first, last, 1'000'000).characters,
                characters);
      EXPECT_EQ(kernels->nth_lead(first, last, characters - 1),
                last - piece.size());
    }
  }
}

}  // namespace
}  // namespace quill::test
