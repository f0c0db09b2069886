// The count of a call's units as the naive twins keep it: literally, one unit
// at a time.
//
// Every export has a twin of the same type in namespace naive, too simple to
// be wrong.
#pragma once

#include <bit>
#include <cstdint>

#include "quillcore.h"

namespace quill::naive {

using Long = std::int32_t;

// Hosts in other languages answer with any byte, which no bool can hold.
inline bool ask(std::int32_t reference, std::int64_t progress,
                QuillYield yield) {
  const auto call =
      std::bit_cast<unsigned char (*)(std::int32_t, std::int32_t)>(yield);
  return call(reference, static_cast<std::int32_t>(progress)) == 1;
}

class Meter {
 public:
  Meter(std::int32_t reference, QuillYield yield)
      : reference_(reference), yield_(yield) {}

  void tick(std::int64_t progress) {
    count();
    ask_if_due(progress);
  }
  void count() { ++count_; }
  void ask_if_due(std::int64_t progress) {
    if (count_ != YieldMax) return;
    go_on = ask(reference_, progress, yield_);
    count_ = 0;
  }

  bool go_on = true;

 private:
  std::int32_t reference_;
  QuillYield yield_;
  std::int64_t count_ = 0;
};

}  // namespace quill::naive
