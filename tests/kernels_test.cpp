// Every set of vector kernels against the portable one: all lengths and
// alignments around the widths of vectors, against pages that can't be read.
#include <gtest/gtest.h>

#include "blocks/byte_kernels.h"
#include "tests/support/alphabet.h"
#include "tests/support/expect.h"
#include "tests/support/guarded_text.h"

namespace quill::test {
namespace {

// Few different bytes, so that sets and anchors hit and miss often.
std::string draw_bytes(Input& in, Offset size) {
  const bool few = in.flag();
  const bool ascii = few && in.flag();
  std::string text;
  while (std::ssize(text) < size) {
    text += !ascii && in.one_in(3) ? in.well_formed(3)
            : few
                ? in.pick({"a", "a", "a", "a", "a", "a", "b"})
                : in.pick({"a", "A", "b", "z", "\x80", "\xC3", "\xE2", "\xF0"});
  }
  return text.substr(0, static_cast<std::size_t>(size));
}

ByteSet draw_set(Input& in) {
  ByteSet set;
  const int kind = in.between(0, 3);
  if (kind == 2) {
    for (int left = in.between(0, 40); left > 0; --left) set.add(in.byte());
    return set;
  }
  set.add(in.pick<Byte>({'a', 'b', 0x80, 0xE2}));
  if (kind == 1) set.add(in.pick<Byte>({'A', 'z', 0xE1}));
  if (kind == 3) set.invert();
  return set;
}

// Compares the answers of each set of kernels on [first, last) with the
// portable ones. Up to `before` bytes before it and `after` bytes behind may be
// looked at. The bytes of the range come back in another order.
std::string compare(Input& in, Byte* first, Byte* last, Offset before,
                    Offset after) {
  std::string differing;
  const auto same = [&](const char* name, auto ask) {
    for (const ByteKernels* kernels : available_kernels()) {
      if (ask(*kernels) == ask(kPortableKernels)) continue;
      differing += std::string(kernels->name) + ' ' + name + '\n';
    }
  };
  const auto same_marks = [&](const char* name, auto mark) {
    same(name, [&](const ByteKernels& k) {
      std::vector<std::uint64_t> words(
          static_cast<std::size_t>(last - first + 63) / 64 + 1, 0x5555);
      mark(k, words.data());
      return words;
    });
  };
  const auto size = static_cast<int>(last - first);
  const Byte byte = in.pick<Byte>({'a', 'b', 'z', 0x80});
  const Byte far = in.pick<Byte>({'a', 'b', 0x80});
  const Offset index = in.between(0, size);
  const ByteSet set = draw_set(in);
  std::vector<Anchor> anchors;
  for (int left = in.between(1, kMostAnchors); left > 0; --left) {
    const Offset offset =
        in.between(-static_cast<int>(before), static_cast<int>(after));
    anchors.push_back(in.flag() ? Anchor(byte, offset)
                                : Anchor(draw_set(in), offset));
  }
  using K = const ByteKernels&;
  using Words = std::uint64_t*;
  same("find_byte", [&](K k) { return k.find_byte(first, last, byte); });
  same("find_byte_backward",
       [&](K k) { return k.find_byte_backward(first, last, byte); });
  same("find_pair",
       [&](K k) { return k.find_pair(first, last, byte, far, after); });
  same("find_non_ascii", [&](K k) { return k.find_non_ascii(first, last); });
  same("count_leads", [&](K k) { return k.count_leads(first, last); });
  same("nth_lead", [&](K k) { return k.nth_lead(first, last, index); });
  same("find_member", [&](K k) { return k.find_member(first, last, set); });
  same("find_member_backward",
       [&](K k) { return k.find_member_backward(first, last, set); });
  same("find_anchored",
       [&](K k) { return k.find_anchored(first, last, anchors); });
  same("find_anchored_backward",
       [&](K k) { return k.find_anchored_backward(first, last, anchors); });
  same_marks("mark_members", [&](K k, Words words) {
    k.mark_members(first, last, set, words);
  });
  same_marks("mark_leads",
             [&](K k, Words words) { k.mark_leads(first, last, words); });
  same_marks("mark_anchored", [&](K k, Words words) {
    k.mark_anchored(first, last, anchors, words);
  });
  const Opening opening{0x20, 'a' | 'a' << 8 | 'b' << 16,
                        std::min(std::max(size - 1, 0), 3)};
  ByteSet any_case = ByteSet::of('a');
  any_case.add('A');
  const std::vector<Anchor> opened = {Anchor(any_case, 0),
                                      Anchor('a', opening.second()),
                                      Anchor('b', opening.last)};
  same_marks("mark_opening", [&](K k, Words to) {
    if (k.mark_opening != nullptr && k.mark_opening(first, last, opening, to)) {
      return;
    }
    kPortableKernels.mark_anchored(first, last - opening.last, opened, to);
  });
  std::vector<std::uint64_t> words(static_cast<std::size_t>(size + 63) / 64);
  kPortableKernels.mark_members(first, last, set, words.data());
  same("list_marks", [&](K k) {
    std::vector<std::uint16_t> numbers(words.size() * 64 + kListSlack);
    numbers.resize(static_cast<std::size_t>(
        k.list_marks(words.data(), std::ssize(words), numbers.data())));
    return numbers;
  });
  std::int32_t* const longs = reinterpret_cast<std::int32_t*>(
      first + (4 - reinterpret_cast<std::uintptr_t>(first) % 4) % 4);
  const Offset long_count = std::max<Offset>(size - 3, 0) / 4;
  const std::int32_t value =
      long_count > 0 && in.flag()
          ? longs[in.between(0, static_cast<int>(long_count) - 1)]
          : 0x61616162;
  same("find_value",
       [&](K k) { return k.find_value(longs, longs + long_count, value); });
  for (const int most : {0, in.between(0, size), size}) {
    same("walk_characters", [&](K k) {
      const Walk walk = k.walk_characters(first, last, most);
      return std::pair(walk.next, walk.characters);
    });
  }
  for (const std::string kind : {"as drawn", "ascending", "but one"}) {
    if (kind == "ascending") std::sort(longs, longs + long_count);
    if (kind == "but one" && long_count > 0) {
      longs[in.between(0, static_cast<int>(long_count) - 1)] = value;
    }
    // The greatest length of a pair, or one less.
    std::int32_t limit = 0;
    for (Offset i = 1; i < long_count; i += 2) {
      const Offset length = Offset{longs[i]} - longs[i - 1];
      if (length <= kMaxLong) limit = std::max(limit, to_long(length));
    }
    if (limit > 0 && in.flag()) --limit;
    same(("survey_pairs, " + kind).c_str(), [&](K k) {
      const PairSurvey found = k.survey_pairs(longs, longs + long_count, limit);
      return std::tuple(found.ascends, found.exceeds, found.total);
    });
  }
  return differing;
}

TEST(Kernels, AgreeWithThePortableOnes) {
  int round = 0;
  // Pages filled to the last byte: both ends of the range can lie against one
  // that can't be read.
  const GuardedText pages(std::string(4096, '?'));
  for_random_inputs(31, 341 * 8, [&](Input& in) {
    const Offset size = round++ / 8;
    const Offset before = in.pick({0, 0, 1, 9});
    const Offset after = in.pick({0, 0, 2, 40});
    const Offset start =
        in.flag() ? 4096 - after - size - before : Offset{in.between(0, 3)};
    const std::string bytes = draw_bytes(in, before + size + after);
    std::copy(bytes.begin(), bytes.end(), pages.data() + start);
    auto* const first = reinterpret_cast<Byte*>(pages.data()) + start + before;
    const std::string differing =
        compare(in, first, first + size, before, after);
    return differing.empty()
               ? differing
               : differing + show_fields("bytes", bytes, "size", size, "before",
                                         before, "after", after);
  });
}

// Counters in vector lanes must not wrap on long stretches.
TEST(Kernels, CountLongStretches) {
  for (const ByteKernels* kernels : available_kernels()) {
    SCOPED_TRACE(kernels->name);
    for (const std::string piece : {"a", "\xC3\xA9", "\xE2\x82\xAC"}) {
      const std::string text = repeated(piece, 300'000);
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

// ASCII and longer characters are gone over in different ways: a walk changes
// from one to the other and stops anywhere.
TEST(Kernels, WalkFromAsciiToOthersAndBack) {
  const std::string text =
      repeated(repeated("\xE2\x82\xAC", 1'000) + repeated("a", 3'000), 3);
  const Byte* const first = as_bytes(text.data());
  const Byte* const last = first + text.size();
  for (const ByteKernels* kernels : available_kernels()) {
    SCOPED_TRACE(kernels->name);
    for (Offset most = 1; most < 12'500; most += 97) {
      EXPECT_EQ(kernels->walk_characters(first, last, most).next,
                kPortableKernels.walk_characters(first, last, most).next);
    }
  }
}

}  // namespace
}  // namespace quill::test
