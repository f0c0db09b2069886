// Counts the attempts of one search without taking them one by one.
//
// A search makes an attempt at each character it passes. As long as fewer
// bytes have been passed than units are left, the host can't be due and nothing
// is counted; from then on the characters passed are counted in one walk, and
// the host is asked at exactly the one it would have been asked at.
#pragma once

#include <algorithm>

#include "blocks/base.h"
#include "blocks/byte_scan.h"
#include "blocks/yield_meter.h"

namespace quill {

class AttemptCount {
 public:
  // `next_attempt` is a variable that holds the offset of the next attempt
  // whenever the host is asked.
  AttemptCount(const Byte* text, Offset from, Offset to, YieldMeter meter,
               std::int32_t* next_attempt)
      : text_(text),
        to_(to),
        counted_(from),
        meter_(meter),
        next_attempt_(next_attempt) {
    set_due();
  }

  // All attempts before the one at `position` have failed. False when the host
  // asked to stop after one of them.
  bool pass_to(Offset position) { return position < due_ || settle(position); }

  // The same for a stretch from one attempt to another in which there are
  // `characters`.
  bool pass_over(Offset first, Offset last, Offset characters) {
    if (counted_ == first && characters < meter_.units_left()) {
      meter_.skip(characters);
      counted_ = last;
      set_due();
      return true;
    }
    return pass_to(last);
  }

  // The attempt at `position`, to which all was passed, has succeeded; the
  // match ends at `end`.
  void succeed(Offset position, Offset end) {
    if (position + 1 < due_) return;
    meter_.skip(walk(position, to_).characters);
    meter_.tick(end);
  }

 private:
  // Counts from where it stands, character by character as attempts go.
  struct Steps {
    Offset reached;
    Offset characters;
  };
  Steps walk(Offset position, Offset most) const;
  bool settle(Offset position);

  // Before this offset fewer attempts than units left can have been made.
  void set_due() {
    due_ = counted_ + std::min(meter_.units_left(), kMaxLong * 2);
  }

  const Byte* text_;
  Offset to_;
  Offset counted_;  // attempts before this offset are counted
  Offset due_;
  YieldMeter meter_;
  std::int32_t* next_attempt_;
};

}  // namespace quill
