// Counts a call's units of work and asks the host, every YieldMax of them,
// whether to go on.
//
// Invariant: the host is asked only when the count equals YieldMax, read anew
// each time. A count already past a lowered YieldMax does not ask, and a
// YieldMax of 0 or less turns asking off.
//
// A scan that handles many units at once looks up units_left(), works through
// fewer than that many and reports them with skip(); the unit on which the
// host is due is reported with tick(), so that the host is asked at exactly
// the unit, and with exactly the progress, of a loop that counts one by one.
#pragma once

#include <limits>

#include "blocks/base.h"
#include "quillcore.h"

namespace quill {

// Asks the host once, outside any counting. False unless the byte that it
// answers with is 1.
[[nodiscard]] bool ask_host(QuillYield yield, std::int32_t reference,
                            Offset progress);

class YieldMeter {
 public:
  YieldMeter(std::int32_t reference, QuillYield yield)
      : yield_(yield), reference_(reference) {}

  // False once the host has asked the call to stop.
  bool go_on() const { return go_on_; }

  // Counts one unit. `progress` is what the host hears if it is asked now.
  void tick(Offset progress) {
    count();
    ask_if_due(progress);
  }

  // The two halves of tick(), for a loop that does something in between.
  void count() { ++count_; }
  void ask_if_due(Offset progress) {
    if (count_ == YieldMax) ask(progress);
  }

  // How many units until the host is asked; the last of them is the one that
  // asks. At least 1; huge when the host is never asked.
  Offset units_left() const {
    const Offset interval = YieldMax;
    return interval > count_ ? interval - count_
                             : std::numeric_limits<Offset>::max();
  }

  // Where one unit is one offset: the end of the stretch from `position` on in
  // which only the last unit can ask, at most `end`.
  Offset stretch_end(Offset position, Offset end) const {
    const Offset left = units_left();
    return left < end - position ? position + left : end;
  }

  // Counts `units`, fewer than units_left().
  void skip(Offset units) {
    assert(units >= 0 && units < units_left());
    count_ += units;
  }

 private:
  void ask(Offset progress);

  QuillYield yield_;
  Offset count_ = 0;
  std::int32_t reference_;
  bool go_on_ = true;
};

}  // namespace quill
