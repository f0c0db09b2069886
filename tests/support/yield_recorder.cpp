#include "tests/support/yield_recorder.h"

#include <bit>

namespace quill::test {

YieldRecorder* YieldRecorder::active_ = nullptr;

unsigned char YieldRecorder::on_yield(std::int32_t reference,
                                      std::int32_t progress) {
  return active_->answer(reference, progress);
}

unsigned char YieldRecorder::answer(std::int32_t reference,
                                    std::int32_t progress) {
  const bool stops = std::cmp_equal(calls_.size(), plan_.stop_at);
  if (std::cmp_equal(calls_.size(), plan_.change_at)) {
    YieldMax = plan_.change_to;
  }
  calls_.emplace_back(reference, progress);
  seen_outs_.insert(seen_outs_.end(), watched_.begin(), watched_.end());
  return stops ? plan_.answer : 1;
}

// A host in another language hands in a function that returns a byte.
QuillYield YieldRecorder::callback() const {
  return std::bit_cast<QuillYield>(&YieldRecorder::on_yield);
}

}  // namespace quill::test
