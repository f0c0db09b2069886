// What a host does while a call runs.
#pragma once

#include "tests/support/yield_recorder.h"

namespace quill::test {

struct HostPlan {
  std::int32_t yield_max = 10000;
  int stop_at = kNever;  // the question that is answered with `answer`
  unsigned char answer = 0;
  int change_at = kNever;  // the question at which YieldMax becomes `change_to`
  std::int32_t change_to = 0;
};

}  // namespace quill::test
