// Turning a canonical list into its complement within a range, in place.
//
// Read as one ascending run of boundaries, the complement is the same run with
// the range's own bounds added at its ends, or taken away where the list
// already has them there.
#include <cstring>

#include "blocks/block_lock.h"
#include "quillcore.h"
#include "selection/selection_list.h"

using namespace quill;

namespace {

using Longs = std::span<std::int32_t>;

// Every pair is looked at, without a way out in between: the loop then works
// on vectors.
bool ascends(Longs boundaries) {
  int descents = 0;
  for (std::size_t i = 1; i < boundaries.size(); ++i) {
    descents |= static_cast<int>(boundaries[i - 1] > boundaries[i]);
  }
  return descents == 0;
}

// Whether the list's boundaries ascend within the range, whole selections all
// of them. An empty list does in any range.
bool can_be_inverted(Longs list, Offset byte_count, std::int32_t range_start,
                     std::int32_t range_end) {
  if (byte_count % 8 != 0) return false;
  if (list.empty()) return true;
  return list.front() >= range_start && list.back() <= range_end &&
         ascends(list);
}

void move_longs(const std::int32_t* source, std::int32_t* destination,
                std::size_t count) {
  std::memmove(destination, source, count * sizeof(std::int32_t));
}

// Adds both bounds. What can't be had leaves the list as it was.
void add_bounds(BlockLock& block, std::int32_t range_start,
                std::int32_t range_end) {
  const std::size_t count = block.longs().size();
  if (!block.resize(block.size() + 8)) return;
  const Longs list = block.longs();
  move_longs(list.data(), list.data() + 1, count);
  list.front() = range_start;
  list.back() = range_end;
}

void invert(BlockLock& block, std::int32_t range_start,
            std::int32_t range_end) {
  const Longs list = block.longs();
  if (!can_be_inverted(list, block.size(), range_start, range_end)) return;
  const bool has_start = !list.empty() && list.front() == range_start;
  const bool has_end = !list.empty() && list.back() == range_end;
  if (!has_start && !has_end) return add_bounds(block, range_start, range_end);

  const std::size_t others = list.size() - 1;
  if (!has_start) {
    move_longs(list.data(), list.data() + 1, others);
    list.front() = range_start;
    return;
  }
  move_longs(list.data() + 1, list.data(), others);
  if (!has_end) {
    list.back() = range_end;
    return;
  }
  // Shrinking can't fail.
  static_cast<void>(block.resize(block.size() - 8));
}

}  // namespace

std::int32_t InvertSelections(QuillBlock* list, std::int32_t range_start,
                              std::int32_t range_end) {
  if (*list == nullptr) return 1;
  BlockLock block(*list);
  invert(block, range_start, range_end);
  return 1;
}
