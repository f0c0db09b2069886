#include "blocks/long_list.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace quill {

bool LongList::start() {
  block_ = NewHandle(0);
  return block_ != nullptr;
}

// Only the trimmed size can be seen from outside, so a long list grows by half
// its size while that can be had: the copying stays linear even where the
// heap can't extend the Block in place.
bool LongList::grow() {
  const bool first = longs_ == on_stack_.data();
  const Offset least = first ? kGrowthLongs : room_ + kGrowthLongs;
  for (const Offset room : {std::max(least, room_ + room_ / 2), least}) {
    if (room > kMaxLong / 4) continue;
    if (!resize_handle(block_, to_long(room * 4))) continue;
    longs_ = reinterpret_cast<std::int32_t*>(*block_);
    if (first) std::copy_n(on_stack_.data(), count_, longs_);
    HLock(block_);
    room_ = room;
    return true;
  }
  failed_to_start_ = first;
  return false;
}

bool LongList::append_pairs(std::span<const std::int32_t> longs) {
  while (!longs.empty()) {
    const Offset fitting = std::min(std::ssize(longs), room_ - count_);
    std::copy_n(longs.data(), fitting, longs_ + count_);
    count_ += fitting;
    longs = longs.subspan(static_cast<std::size_t>(fitting));
    if (!longs.empty() && !grow()) return false;
  }
  return true;
}

QuillBlock LongList::hand_over() {
  if (failed_to_start_ || block_ == nullptr) return nullptr;
  if (!resize_handle(block_, to_long(count_ * 4))) return nullptr;
  if (longs_ == on_stack_.data()) {
    std::memcpy(*block_, longs_, static_cast<std::size_t>(count_) * 4);
  }
  return std::exchange(block_, nullptr);
}

QuillBlock LongList::hand_over_or_none() {
  return count_ == 0 ? nullptr : hand_over();
}

}  // namespace quill
