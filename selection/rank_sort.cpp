#include "selection/rank_sort.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "blocks/scratch.h"
#include "selection/comparable_text.h"
#include "selection/rank_heap.h"

namespace quill {
namespace {

using Items = std::span<RankedText>;

constexpr std::size_t kLine = 64;  // bytes in a cache line

// Where texts overlap there can be far more to look through than comparing
// would ever read.
constexpr Offset kMostBytesEach = 4096;

Offset bytes_in(Items items) {
  Offset total = 0;
  for (const RankedText& item : items) total += item.length;
  return total;
}

bool load_plain(const Byte* text, Items items) {
  for (RankedText& item : items) {
    const Byte* const bytes = text + item.start;
    if (!is_comparable(bytes, item.length)) return false;
    item.key = load_key(bytes, item.length);
  }
  return true;
}

// Puts the mapped texts one behind the other.
bool load_mapped(const Byte* text, Items items, MaskTable mask, Byte* mapped) {
  std::uint32_t start = 0;
  for (RankedText& item : items) {
    Byte* const out = mapped + start;
    if (!map_comparable(text + item.start, item.length, mask, out)) {
      return false;
    }
    item.start = start;
    item.key = load_key(out, item.length);
    start += item.length;
  }
  return true;
}

// Takes the heap sort's steps on words of rank and number among equals. Texts
// of one rank lie together before and after, so that the number alone tells
// which of them an element is.
template <class Word>
bool order_equals(Items items, int number_bits) {
  const auto count = items.size();
  constexpr std::size_t kWordsInLine = kLine / sizeof(Word);
  const Scratch<Word> memory(static_cast<Offset>(count + 2 * kWordsInLine));
  if (memory.refused()) return false;
  // Element 0 begins a cache line: children and their like then share one.
  const auto address = reinterpret_cast<std::uintptr_t>(memory.data());
  Word* const words = memory.data() + (kLine - address % kLine) / sizeof(Word);

  std::size_t first = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (items[i].key != items[first].key) first = i;
    words[items[i].index + 1] = static_cast<Word>(items[i].key) << number_bits |
                                static_cast<Word>(i - first);
  }
  RankHeap<Word>(words, count, number_bits).sort();

  const Word numbers = (Word{1} << number_bits) - 1;
  first = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (items[i].key != items[first].key) first = i;
    items[i].start = items[first + (words[i + 1] & numbers)].index;
  }
  for (RankedText& item : items) item.index = item.start;
  return true;
}

int bits_for(std::uint32_t greatest) {
  return static_cast<int>(std::bit_width(greatest));
}

bool order_ranked(Items items, const Ranks& ranks) {
  if (ranks.most_equal == 1) return true;
  const int number_bits = bits_for(ranks.most_equal - 1);
  // Half the memory, while both fit into it.
  if (bits_for(ranks.different - 1) + number_bits <= 32) {
    return order_equals<std::uint32_t>(items, number_bits);
  }
  return order_equals<std::uint64_t>(items, 32);
}

}  // namespace

bool order_by_ranks(const Byte* text, Items items, const Mask& mask) {
  const Offset total = bytes_in(items);
  if (total > kMostBytesEach * std::ssize(items)) return false;
  if (mask.count == 0) {
    return load_plain(text, items) &&
           order_ranked(items, rank_texts(text, items));
  }
  constexpr Offset kMostMapped = std::numeric_limits<std::uint32_t>::max();
  if (total > kMostMapped) return false;
  const Scratch<Byte> mapped(total);
  if (mapped.refused()) return false;
  return load_mapped(text, items, MaskTable(mask, total), mapped.data()) &&
         order_ranked(items, rank_texts(mapped.data(), items));
}

}  // namespace quill
