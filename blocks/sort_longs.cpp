// Sorting longs in place: the elements are spread over buckets by their
// highest bits that differ, bucket by bucket again, until a few are left, which
// are sorted by counting for each how many come before it.
//
// Nothing depends on an order of comparisons, so no input is worse than linear
// in (elements x bits), and sorted ranges, ascending or descending, are seen
// on the pass that looks for the bits.
#include "blocks/sort_longs.h"

#include <algorithm>
#include <array>
#include <bit>

#include "blocks/byte_scan.h"

namespace quill {
namespace {

using Longs = std::span<std::int32_t>;

// Up to here comparing all with all is the fastest: it needs no branch, and
// compilers make vectors of it.
constexpr std::size_t kFew = 64;

void sort_few(Longs longs) {
  std::array<std::int32_t, kFew> values;
  std::array<std::int32_t, kFew> ranks;
  const std::size_t count = longs.size();
  std::copy(longs.begin(), longs.end(), values.begin());
  std::fill_n(ranks.begin(), count, 0);
  for (std::size_t i = 0; i + 1 < count; ++i) {
    const std::int32_t value = values[i];
    std::int32_t not_below = 0;
    for (std::size_t j = i + 1; j < count; ++j) {
      const std::int32_t before = value <= values[j] ? 1 : 0;
      ranks[j] += before;
      not_below += before;
    }
    ranks[i] += static_cast<std::int32_t>(count - 1 - i) - not_below;
  }
  for (std::size_t i = 0; i < count; ++i) {
    longs[static_cast<std::size_t>(ranks[i])] = values[i];
  }
}

struct Survey {
  std::int32_t least;
  std::int32_t greatest;
  bool ascending;
  bool descending;
};

Survey survey(Longs longs) {
  std::int32_t least = longs[0];
  std::int32_t greatest = longs[0];
  std::int32_t falls = 0;
  std::int32_t rises = 0;
  for (std::size_t i = 1; i < longs.size(); ++i) {
    least = std::min(least, longs[i]);
    greatest = std::max(greatest, longs[i]);
    falls |= longs[i] < longs[i - 1] ? 1 : 0;
    rises |= longs[i] > longs[i - 1] ? 1 : 0;
  }
  return {least, greatest, falls == 0, rises == 0};
}

// Which bucket an element belongs to: some bits of its distance from the least
// element.
struct Digit {
  std::uint32_t least;
  int shift;

  std::size_t of(std::int32_t value) const {
    return (static_cast<std::uint32_t>(value) - least) >> shift;
  }
};

constexpr int kMostBits = 8;
constexpr std::size_t kMostBuckets = std::size_t{1} << kMostBits;
using Places = std::array<std::uint32_t, kMostBuckets>;

// Four tables, so that equal neighbours don't wait for one counter.
void count_digits(Longs longs, Digit digit, std::size_t buckets,
                  Places& counts) {
  std::array<Places, 3> others;
  std::fill_n(counts.begin(), buckets, 0);
  for (Places& other : others) std::fill_n(other.begin(), buckets, 0);
  std::size_t i = 0;
  for (; i + 4 <= longs.size(); i += 4) {
    ++counts[digit.of(longs[i])];
    ++others[0][digit.of(longs[i + 1])];
    ++others[1][digit.of(longs[i + 2])];
    ++others[2][digit.of(longs[i + 3])];
  }
  for (; i < longs.size(); ++i) ++counts[digit.of(longs[i])];
  for (const Places& other : others) {
    for (std::size_t bucket = 0; bucket < buckets; ++bucket) {
      counts[bucket] += other[bucket];
    }
  }
}

// Where every bucket holds one value only, the counts say it all.
void write_values(Longs longs, std::int32_t least, std::size_t buckets,
                  const Places& counts) {
  auto next = longs.begin();
  for (std::size_t bucket = 0; bucket < buckets; ++bucket) {
    const auto value = static_cast<std::int32_t>(
        static_cast<std::uint32_t>(least) + static_cast<std::uint32_t>(bucket));
    next = std::fill_n(next, counts[bucket], value);
  }
}

// Swaps every element to its bucket. In each turn the unsettled elements of
// each bucket are sent where they belong, so each swap settles at least one.
// `next` is where each bucket's first unsettled element is.
void settle(Longs longs, Digit digit, std::size_t buckets, Places& next,
            const Places& ends) {
  for (bool settled = false; !settled;) {
    settled = true;
    for (std::size_t bucket = 0; bucket < buckets; ++bucket) {
      for (std::uint32_t i = next[bucket]; i < ends[bucket]; ++i) {
        const std::uint32_t place = next[digit.of(longs[i])]++;
        std::swap(longs[i], longs[place]);
      }
      settled = settled && next[bucket] == ends[bucket];
    }
  }
}

// About 16 elements to a bucket, so that few are left the next time.
int digit_bits(std::size_t count, int width) {
  const int wanted = static_cast<int>(std::bit_width(count)) - 4;
  return std::min({wanted, kMostBits, width});
}

void sort_bucket(Longs longs);

void spread(Longs longs, const Survey& found) {
  const std::uint32_t range = static_cast<std::uint32_t>(found.greatest) -
                              static_cast<std::uint32_t>(found.least);
  const int width = static_cast<int>(std::bit_width(range));
  const int bits = digit_bits(longs.size(), width);
  const Digit digit{static_cast<std::uint32_t>(found.least), width - bits};
  const std::size_t buckets = (range >> digit.shift) + std::size_t{1};

  Places ends;
  count_digits(longs, digit, buckets, ends);
  if (digit.shift == 0) return write_values(longs, found.least, buckets, ends);
  Places next;
  std::uint32_t sum = 0;
  for (std::size_t bucket = 0; bucket < buckets; ++bucket) {
    next[bucket] = sum;
    sum += ends[bucket];
    ends[bucket] = sum;
  }
  settle(longs, digit, buckets, next, ends);
  std::uint32_t start = 0;
  for (std::size_t bucket = 0; bucket < buckets; ++bucket) {
    sort_bucket(longs.subspan(start, ends[bucket] - start));
    start = ends[bucket];
  }
}

void sort_bucket(Longs longs) {
  if (longs.size() <= kFew) return sort_few(longs);
  const Survey found = survey(longs);
  if (found.ascending) return;
  if (found.descending) return std::reverse(longs.begin(), longs.end());
  spread(longs, found);
}

// Goes on as long as nothing falls, a piece at a time: arrays out of order
// mostly show it soon, and in order they take no more than the reading.
bool ascends(Longs longs) {
  constexpr std::size_t kPiece = 1024;
  for (std::size_t at = 0; at + 1 < longs.size(); at += kPiece) {
    const Longs piece =
        longs.subspan(at, std::min(kPiece + 1, longs.size() - at));
    const std::int32_t* const first = piece.data();
    if (!survey_pairs(first, first + piece.size(), 0).ascends) return false;
  }
  return true;
}

// A whole array this short is not worth counting anything in.
constexpr std::size_t kShort = 256;

}  // namespace

void sort_longs(std::span<std::int32_t> longs) {
  if (longs.size() <= kShort) return std::sort(longs.begin(), longs.end());
  if (!ascends(longs)) sort_bucket(longs);
}

}  // namespace quill
