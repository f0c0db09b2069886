// The positions at which all anchors hold, in ascending order.
//
// Where they are rare, each call looks for the next one. Where the last ones
// came soon, those of a window are listed at once and handed out.
#pragma once

#include <algorithm>
#include <span>

#include "blocks/byte_scan.h"
#include "search/hit_list.h"

namespace quill {

class CandidateScan {
 public:
  // To be called first. The anchors outlive the scan.
  void use(std::span<const Anchor> anchors) { anchors_ = anchors; }

  // The first candidate in [first, limit), or `limit`. Asked with `first`
  // ascending. What the anchors see from `first` up to the highest limit so
  // far must not change between two calls.
  const Byte* next(const Byte* first, const Byte* limit) {
    while (first < limit) {
      if (!hits_.covers(first)) {
        if (close_hits_ < kManyClose) return find(first, limit);
        const Offset window = std::min(HitList::kRoom, limit - first);
        hits_.list(first, first + window, anchors_);
        if (hits_.count() < kManyClose) close_hits_ = 0;
      }
      const Byte* const last = std::min(limit, hits_.last());
      const Byte* const found = hits_.next(first, last);
      if (found < last) return found;
      first = last;
    }
    return limit;
  }

  // Those of them that are listed at `first`, as pairs; see there.
  Offset write_pairs(const Byte* text, const Byte* first, const Byte* limit,
                     Offset length, std::span<std::int32_t> longs) {
    if (!hits_.covers(first)) return 0;
    return hits_.write_pairs(text, first, std::min(limit, hits_.last()), length,
                             longs);
  }

 private:
  static constexpr Offset kClose = 512;
  static constexpr Offset kManyClose = 2;

  const Byte* find(const Byte* first, const Byte* limit) {
    const Byte* const found = find_anchored(first, limit, anchors_);
    const bool is_close = found < limit && found - first < kClose;
    close_hits_ = is_close ? close_hits_ + 1 : 0;
    return found;
  }

  std::span<const Anchor> anchors_;
  Offset close_hits_ = 0;  // in a row
  HitList hits_;
};

}  // namespace quill
