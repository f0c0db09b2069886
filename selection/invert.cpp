// Turning a canonical list into its complement within a range, in place.
//
// Read as one ascending run of boundaries, the complement is the same run with
// the range's own bounds added at its ends, or taken away where the list
// already has them there.
//
// The boundaries move by one place in pieces, each after a look at whether it
// ascends, while it is in a near cache. Where one doesn't, those before
// it move back, and the list is as it was.
#include <algorithm>
#include <cstring>

#include "blocks/block_lock.h"
#include "quillcore.h"
#include "selection/selection_list.h"

using namespace quill;

namespace {

using Longs = std::span<std::int32_t>;

// Longs in a piece. With fewer, the system that fetches memory ahead, upwards,
// has more pieces to find.
constexpr std::size_t kPiece = 1 << 15;

void move_longs(const std::int32_t* source, std::int32_t* destination,
                std::size_t count) {
  std::memmove(destination, source, count * sizeof(std::int32_t));
}

// Moves the first `count` longs up, the last of them first. There is room
// behind the list where they are all of it.
bool move_up(Longs list, std::size_t count) {
  const std::int32_t last = list.empty() ? 0 : list.back();
  for (std::size_t end = count; end > 0;) {
    const std::size_t start = end - std::min(end, kPiece);
    const std::size_t behind = std::min(end + 1, list.size());
    if (!survey(list.subspan(start, behind - start)).ascends) {
      move_longs(list.data() + end + 1, list.data() + end, count - end);
      list.back() = last;
      return false;
    }
    move_longs(list.data() + start, list.data() + start + 1, end - start);
    end = start;
  }
  return true;
}

// Moves all longs but the first down, over the first.
bool move_down(Longs list) {
  const std::int32_t first = list.front();
  for (std::size_t start = 1; start < list.size();) {
    const std::size_t end = std::min(start + kPiece, list.size());
    if (!survey(list.subspan(start - 1, end - start + 1)).ascends) {
      move_longs(list.data(), list.data() + 1, start - 1);
      list.front() = first;
      return false;
    }
    move_longs(list.data() + start, list.data() + start - 1, end - start);
    start = end;
  }
  return true;
}

// Whether the list's boundaries are those of whole selections within the range,
// as long as they ascend.
bool can_be_inverted(Longs list, Offset byte_count, std::int32_t range_start,
                     std::int32_t range_end) {
  return byte_count % 8 == 0 && (list.empty() || (list.front() >= range_start &&
                                                  list.back() <= range_end));
}

// Adds both bounds. What can't be had leaves the list as it was.
void add_bounds(BlockLock& block, std::int32_t range_start,
                std::int32_t range_end) {
  const Offset byte_count = block.size();
  if (!block.resize(byte_count + 8)) return;
  const Longs list = block.longs();
  const std::size_t count = list.size() - 2;
  if (!move_up(list.first(count), count)) {
    // Shrinking can't fail.
    return static_cast<void>(block.resize(byte_count));
  }
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

  if (!has_start) {
    if (move_up(list, list.size() - 1)) list.front() = range_start;
    return;
  }
  if (!move_down(list)) return;
  if (!has_end) {
    list.back() = range_end;
    return;
  }
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
