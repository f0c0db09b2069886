#include <algorithm>
#include <climits>
#include <string>

#include "tests/models/naive.h"
#include "tests/support/blocks.h"

namespace quill::naive {
namespace {

using test::Longs;

// Copies the last pair of every `stride` longs.
Long copy_pairs(const char* text, char* destination, Long capacity,
                Long* copied, const Long* pairs, Long count, int stride,
                Long reference, QuillYield yield) {
  if (capacity < 1) return 0;
  *copied = 0;
  for (Long done = 0; done < count && *copied < capacity;) {
    const Long* const pair = pairs + std::int64_t{stride} * ++done - 2;
    const std::int64_t start = pair[0];
    const std::int64_t length = std::max<std::int64_t>(pair[1] - start, 0);
    if (length > capacity - *copied) return 0;
    if (length > 0 && start < 0) return 0;
    for (std::int64_t i = start; i < start + length; ++i) {
      destination[(*copied)++] = text[i];
    }
    // The count is never set back.
    if (done == YieldMax && !ask(reference, done, yield)) return 1;
  }
  return 1;
}

// The next character, its code point in place of its bytes.
Character read_compared(const char* text, Long position, Long end,
                        const Long* mask_keys, const Long* mask_values,
                        Long mask_count) {
  Character read = {};
  Long next = 0;
  Long length = 0;
  const auto decode = [&](const char* bytes, Long from, Long to) {
    return utf8_GetNextCharValue(bytes, from, to, &read.start, &length,
                                 &read.packed, &next) == 1;
  };
  if (mask_count == 0) {
    read.was_read = decode(text, position, end);
    read.next = next;
    return read;
  }
  read = containing_character(text, position, end);
  if (!read.was_read) return read;
  const Long mapped =
      utf8_MaskChar(read.packed, mask_keys, mask_values, mask_count, 1);
  // A mask may give what is no character.
  read.was_read = decode(reinterpret_cast<const char*>(&mapped), 0, 4);
  return read;
}

void sort_pairs(const char* text, Long* longs, std::uint32_t count,
                std::uint32_t size, const Long* mask_keys,
                const Long* mask_values, Long mask_count) {
  naive::qSortV(longs, count, size, naive::CompareSelections,
                const_cast<char*>(text), const_cast<Long*>(mask_keys),
                const_cast<Long*>(mask_values), mask_count);
}

bool is_set(const char* map, Long bit) {
  return (map[bit / 8] >> bit % 8 & 1) != 0;
}

}  // namespace

Long CopySelectionsTo(const char* text, char* destination, Long capacity,
                      Long* copied, const Long* selections, Long count,
                      Long reference, QuillYield yield) {
  return copy_pairs(text, destination, capacity, copied, selections, count, 2,
                    reference, yield);
}

Long CopySuperSelectionsTo(const char* text, char* destination, Long capacity,
                           Long* copied, const Long* records, Long count,
                           Long reference, QuillYield yield) {
  return copy_pairs(text, destination, capacity, copied, records, count, 4,
                    reference, yield);
}

int CompareSelections(const void* first, const void* second, char* text,
                      Long* mask_keys, Long* mask_values, Long mask_count) {
  const auto* a = static_cast<const Long*>(first);
  const auto* b = static_cast<const Long*>(second);
  const std::int64_t length_a = std::int64_t{a[1]} - a[0];
  const std::int64_t length_b = std::int64_t{b[1]} - b[0];
  const auto by_length = static_cast<int>(
      std::clamp<std::int64_t>(length_a - length_b, INT_MIN, INT_MAX));
  if (length_a <= 0 || length_b <= 0) return by_length;
  Long in_a = a[0];
  Long in_b = b[0];
  // Who reads for longer stands still.
  for (std::int64_t step = 0; step <= length_a + length_b + 4; ++step) {
    if (in_a >= a[1] || in_b >= b[1]) return by_length;
    const Character of_a =
        read_compared(text, in_a, a[1], mask_keys, mask_values, mask_count);
    const Character of_b =
        read_compared(text, in_b, b[1], mask_keys, mask_values, mask_count);
    if (!of_a.was_read || !of_b.was_read) return 0;
    if (of_a.packed != of_b.packed) {
      return of_a.packed - of_b.packed;
    }
    in_a = of_a.next;
    in_b = of_b.next;
  }
  return 0;
}

// The heap sort's steps on elements 1 to count.
void qSortV(void* base, std::uint32_t count, std::uint32_t element_size,
            QuillCompare compare, char* text, Long* mask_keys,
            Long* mask_values, Long mask_count) {
  const auto at = [&](std::uint64_t n) {
    return static_cast<char*>(base) + (n - 1) * element_size;
  };
  const auto order = [&](std::uint64_t a, std::uint64_t b) {
    return compare(at(a), at(b), text, mask_keys, mask_values, mask_count);
  };
  const auto swap = [&](std::uint64_t a, std::uint64_t b) {
    std::swap_ranges(at(a), at(a) + element_size, at(b));
  };
  if (count <= 1) return;
  std::uint64_t l = count / 2 + 1;
  std::uint64_t r = count;
  while (true) {
    if (l > 1) {
      --l;
    } else {
      swap(1, r);
      --r;
      if (r == 1) return;
    }
    std::uint64_t i = l;
    std::uint64_t j = 2 * l;
    while (j <= r) {
      if (j < r && order(j, j + 1) < 0) ++j;
      if (order(i, j) >= 0) break;
      swap(i, j);
      i = j;
      j = 2 * j;
    }
  }
}

Long utf8_SortSelections(const char* text, Long* selections,
                         std::uint32_t byte_count, const Long* mask_keys,
                         const Long* mask_values, Long mask_count) {
  sort_pairs(text, selections, byte_count / 8, 8, mask_keys, mask_values,
             mask_count);
  return 1;
}

Long utf8_SortKeySelections(const char* text, Long* records,
                            std::uint32_t byte_count, const Long* mask_keys,
                            const Long* mask_values, Long mask_count) {
  sort_pairs(text, records, byte_count / 16, 16, mask_keys, mask_values,
             mask_count);
  return 1;
}

Long OrderSelections(QuillBlock* list, Long text_length) {
  if (*list == nullptr || text_length < 1) return 1;
  std::string map(static_cast<std::size_t>(text_length) / 8 + 2, '\0');
  SelectionToMap(map.data(), text_length, *list);
  test::HeldBlock ordered;
  Long long_count = 0;
  MapToSelection(map.data(), text_length, &ordered.block, &long_count);
  test::set_bytes(*list, ordered.bytes());
  return 1;
}

Long SelectionToMap(char* map, Long text_length, QuillBlock list) {
  if (list == nullptr || text_length < 1) return 1;
  const Longs longs = test::longs_of(list);
  for (std::size_t i = 0; i + 1 < longs.size(); i += 2) {
    const Long end = std::min(longs[i + 1], text_length);
    for (Long byte = std::max(longs[i], 0); byte < end; ++byte) {
      char& eight = map[(byte + 1) / 8];
      eight = static_cast<char>(eight | 1 << (byte + 1) % 8);
    }
  }
  UnlockBlock(list);
  return 1;
}

Long MapToSelection(const char* map, Long text_length, QuillBlock* list,
                    Long* long_count) {
  if (text_length < 1) return 1;
  Longs found;
  bool inside = false;
  for (Long bit = 0; bit < text_length + 2; ++bit) {
    if (is_set(map, bit) != inside) found.push_back(bit - 1);
    inside = is_set(map, bit);
  }
  if (inside) found.push_back(text_length + 1);
  *list = found.empty() ? nullptr : test::block_of(found);
  *long_count = test::length_of(found);
  return 1;
}

Long InvertSelections(QuillBlock* list, Long range_start, Long range_end) {
  if (*list == nullptr) return 1;
  UnlockBlock(*list);
  Longs longs = test::longs_of(*list);
  if (longs.size() % 2 != 0) return 1;
  const bool is_empty = longs.empty();
  longs.insert(longs.begin(), range_start);
  longs.push_back(range_end);
  if (!is_empty && !std::is_sorted(longs.begin(), longs.end())) return 1;
  if (longs.size() > 2) {
    if (longs[0] == longs[1]) longs.erase(longs.begin(), longs.begin() + 2);
    const std::size_t size = longs.size();
    if (size > 1 && longs[size - 1] == longs[size - 2]) longs.resize(size - 2);
  }
  test::set_bytes(*list, test::bytes_in(longs));
  return 1;
}

Long ExtractSelections(const char* text, QuillBlock list, const char* prefix,
                       Long prefix_length, const char* suffix,
                       Long suffix_length, QuillBlock* result, Long reference,
                       QuillYield yield) {
  const Longs longs = test::longs_of(list);
  if (longs.size() < 2) return 0;
  UnlockBlock(list);
  const bool lacks = (prefix == nullptr && prefix_length > 0) ||
                     (suffix == nullptr && suffix_length > 0);
  for (std::size_t i = 0; i + 1 < longs.size(); i += 2) {
    if (longs[i] >= longs[i + 1]) continue;
    if (longs[i] < 0 || text == nullptr || lacks) return 0;
  }
  std::string out;
  Meter meter(reference, yield);
  for (std::size_t i = 0; i + 1 < longs.size() && meter.go_on; i += 2) {
    if (longs[i] < longs[i + 1]) {
      if (prefix_length > 0) out.append(prefix, prefix + prefix_length);
      out.append(text + longs[i], text + longs[i + 1]);
      if (suffix_length > 0) out.append(suffix, suffix + suffix_length);
    }
    meter.tick(static_cast<std::int64_t>(i) + 2);
  }
  *result = meter.go_on ? test::block_of(out) : nullptr;
  return 1;
}

}  // namespace quill::naive
