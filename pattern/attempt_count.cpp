#include "pattern/attempt_count.h"

#include "utf8/characters.h"

namespace quill {

AttemptCount::Steps AttemptCount::walk(Offset position, Offset most) const {
  Steps steps{counted_, 0};
  while (steps.reached < position && steps.characters < most) {
    const Walk ordered = walk_characters(
        text_ + steps.reached, text_ + position, most - steps.characters);
    steps.reached = ordered.next - text_;
    steps.characters += ordered.characters;
    if (steps.reached < position && steps.characters < most) {
      steps.reached = read_next(text_, steps.reached, to_).next;
      ++steps.characters;
    }
  }
  return steps;
}

bool AttemptCount::settle(Offset position) {
  while (position >= due_) {
    const Offset left = meter_.units_left();
    const Steps steps = walk(position, left);
    counted_ = steps.reached;
    if (steps.characters < left) {
      meter_.skip(steps.characters);
    } else {
      *next_attempt_ = to_long(counted_);
      meter_.skip(left - 1);
      meter_.tick(counted_);
      if (!meter_.go_on()) return false;
    }
    set_due();
  }
  return true;
}

}  // namespace quill
