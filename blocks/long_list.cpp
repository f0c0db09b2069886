#include "blocks/long_list.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace quill {

bool LongList::start() {
  block_ = new_handle_with_room(kRoomAtOnce);
  return block_ != nullptr;
}

// Only the trimmed size can be seen from outside, so a long list grows by half
// its size while that can be had: the copying stays linear even where the
// heap can't extend the Block in place.
bool LongList::grow() {
  if (longs_ == on_stack_.data()) {
    failed_to_start_ = !make_room(kGrowthLongs);
    return !failed_to_start_;
  }
  const Offset least = room_ + kGrowthLongs;
  const Offset generous = room_ + room_ / 4 * 2;  // whole pairs
  return (generous > least && make_room(generous)) || make_room(least);
}

bool LongList::make_room(Offset longs) {
  if (longs > kMaxLong / 4 || !resize_handle(block_, to_long(longs * 4))) {
    return false;
  }
  const bool first = longs_ == on_stack_.data();
  longs_ = reinterpret_cast<std::int32_t*>(*block_);
  if (first) std::copy_n(on_stack_.data(), count_, longs_);
  HLock(block_);
  room_ = longs;
  return true;
}

Offset LongList::append_pairs(std::span<const std::int32_t> longs) {
  Offset appended = 0;
  for (;;) {
    const Offset fitting =
        std::min(std::ssize(longs) - appended, room_ - count_);
    std::copy_n(longs.data() + appended, fitting, longs_ + count_);
    count_ += fitting;
    appended += fitting;
    if (appended == std::ssize(longs) || !grow()) return appended;
  }
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
