// A Block of longs being filled by a search, then trimmed and handed over.
//
// The first longs are collected on the stack, so that a search with few
// matches makes no large Block. When they no longer fit, the Block gets
// 4,000,000 bytes, and each time it is full half as much again, or 4,000,000
// more where that can't be had. What was appended before a growth that could
// not be had stays in the list.
//
// The list owns the Block until it is handed over.
#pragma once

#include <array>
#include <span>

#include "blocks/base.h"
#include "blocks/memory_manager.h"

namespace quill {

class LongList {
 public:
  static constexpr Offset kGrowthLongs = 1'000'000;

  LongList() = default;
  ~LongList() { DisposeHandle(block_); }
  LongList(const LongList&) = delete;
  LongList& operator=(const LongList&) = delete;

  // Makes the Block. False when memory is short.
  [[nodiscard]] bool start();

  // Appends a (start, end) pair. False when the list can't grow; it is then
  // left as it was.
  [[nodiscard]] bool append(Offset start, Offset end) {
    if (count_ + 2 > room_ && !grow()) return false;
    longs_[count_] = to_long(start);
    longs_[count_ + 1] = to_long(end);
    count_ += 2;
    return true;
  }

  // Appends a record of two pairs, in the same way.
  [[nodiscard]] bool append_record(Offset first_start, Offset first_end,
                                   Offset second_start, Offset second_end) {
    if (count_ + 4 > room_ && !grow()) return false;
    return append(first_start, first_end) && append(second_start, second_end);
  }

  // Appends the longs of whole pairs up to one for which the list can't grow,
  // and returns how many longs that were.
  [[nodiscard]] Offset append_pairs(std::span<const std::int32_t> longs);

  Offset long_count() const { return count_; }

  // False once the first full-sized Block could not be had: the whole search
  // then counts as one whose list could not be made.
  bool failed_to_start() const { return failed_to_start_; }

  // Hands the Block over, 4 bytes a long; an empty list is a Block of 0 bytes.
  // Null when memory is short.
  QuillBlock hand_over();

  // The same, but an empty list is no Block at all.
  QuillBlock hand_over_or_none();

 private:
  [[nodiscard]] bool grow();
  [[nodiscard]] bool make_room(Offset longs);

  static constexpr Offset kOnStack = 256;
  static constexpr std::uint16_t kRoomAtOnce = 128;  // bytes, of most lists

  QuillBlock block_ = nullptr;
  std::array<std::int32_t, kOnStack> on_stack_;  // undefined until appended to
  std::int32_t* longs_ = on_stack_.data();
  Offset count_ = 0;
  Offset room_ = kOnStack;
  bool failed_to_start_ = false;
};

}  // namespace quill
