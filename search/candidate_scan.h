// The positions at which all anchors hold, in ascending order.
//
// Where they are rare, each call looks for the next one. Where the last one is
// close, a window of positions is marked at once and its bits are handed out,
// so that dense candidates cost no scan each.
#pragma once

#include <algorithm>
#include <bit>
#include <span>

#include "blocks/byte_scan.h"

namespace quill {

class CandidateScan {
 public:
  // The anchors outlive the scan.
  explicit CandidateScan(std::span<const Anchor> anchors) : anchors_(anchors) {}

  // The first candidate in [first, limit), or `limit`. Asked with `first`
  // ascending. What the anchors see from `first` up to the highest limit so
  // far must not change between two calls.
  const Byte* next(const Byte* first, const Byte* limit) {
    if (first >= marked_last_ && first < limit && is_close(first)) {
      mark(first, limit);
    }
    if (first < marked_last_) {
      first = next_marked(first);
      if (first < marked_last_) return take(first, limit);
    }
    if (first >= limit) return limit;
    return take(find_anchored(first, limit, anchors_), limit);
  }

 private:
  static constexpr Offset kClose = 256;
  static constexpr Offset kWindow = 512;

  bool is_close(const Byte* position) const {
    return last_found_ != nullptr && position - last_found_ < kClose;
  }

  const Byte* take(const Byte* found, const Byte* limit) {
    if (found >= limit) return limit;
    last_found_ = found;
    return found;
  }

  void mark(const Byte* first, const Byte* limit) {
    marked_first_ = first;
    marked_last_ = first + std::min<Offset>(kWindow, limit - first);
    mark_anchored(marked_first_, marked_last_, anchors_, words_);
  }

  // The first marked position from `first` on, or the end of the window.
  const Byte* next_marked(const Byte* first) const {
    Offset index = first - marked_first_;
    const Offset count = marked_last_ - marked_first_;
    std::uint64_t word = words_[index / 64] >> (index % 64);
    while (word == 0) {
      index = (index / 64 + 1) * 64;
      if (index >= count) return marked_last_;
      word = words_[index / 64];
    }
    return marked_first_ + index + std::countr_zero(word);
  }

  std::span<const Anchor> anchors_;
  const Byte* last_found_ = nullptr;
  const Byte* marked_first_ = nullptr;  // the window of positions in words_
  const Byte* marked_last_ = nullptr;
  std::uint64_t words_[kWindow / 64];  // undefined outside the window
};

}  // namespace quill
