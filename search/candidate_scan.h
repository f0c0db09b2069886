// The positions at which all anchors hold, in ascending order.
//
// Where they are rare, each call looks for the next one. Where the last one is
// close, those of a window are listed at once and handed out.
#pragma once

#include <algorithm>
#include <span>

#include "blocks/byte_scan.h"
#include "search/hit_list.h"

namespace quill {

class CandidateScan {
 public:
  // The anchors outlive the scan.
  explicit CandidateScan(std::span<const Anchor> anchors) : anchors_(anchors) {}

  // The first candidate in [first, limit), or `limit`. Asked with `first`
  // ascending. What the anchors see from `first` up to the highest limit so
  // far must not change between two calls.
  const Byte* next(const Byte* first, const Byte* limit) {
    while (first < limit) {
      if (!hits_.covers(first)) {
        if (!is_close(first)) {
          const Byte* const found = find_anchored(first, limit, anchors_);
          if (found < limit) last_found_ = found;
          return found;
        }
        const Offset window = std::min(HitList::kRoom, limit - first);
        hits_.list(first, first + window, anchors_);
      }
      const Byte* const last = std::min(limit, hits_.last());
      const Byte* const found = hits_.next(first, last);
      if (found < last) {
        last_found_ = found;
        return found;
      }
      first = last;
    }
    return limit;
  }

 private:
  static constexpr Offset kClose = 512;

  bool is_close(const Byte* position) const {
    return last_found_ != nullptr && position - last_found_ < kClose;
  }

  std::span<const Anchor> anchors_;
  const Byte* last_found_ = nullptr;
  HitList hits_;
};

}  // namespace quill
