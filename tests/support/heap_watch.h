// Watches the library's use of the heap during a scope: lets the n-th request
// fail, and counts what has not been given back.
//
// The test program is linked with malloc, calloc, realloc and free wrapped, so
// only the code linked into it is seen, not the standard library's own.
#pragma once

#include <gtest/gtest.h>

namespace quill::test {

class HeapWatch {
 public:
  static constexpr int kNoFailure = -1;

  // Fails the request numbered `fail_at` (from 0) and, when `and_after`, all
  // that follow.
  explicit HeapWatch(int fail_at = kNoFailure, bool and_after = false)
      : fail_at_(fail_at), and_after_(and_after) {
    active_ = this;
  }
  ~HeapWatch() { active_ = nullptr; }
  HeapWatch(const HeapWatch&) = delete;
  HeapWatch& operator=(const HeapWatch&) = delete;

  // Requests made so far, failed ones included.
  int requests() const { return requests_; }

  // Whether the request that was to fail has been made.
  bool failed() const { return failed_; }

  // Allocations minus releases within the scope.
  int outstanding() const { return outstanding_; }

  // For the wrappers.
  static HeapWatch* active() { return active_; }
  bool refuses();
  void note(int allocations) { outstanding_ += allocations; }

 private:
  static inline HeapWatch* active_ = nullptr;
  int fail_at_;
  bool and_after_;
  int requests_ = 0;
  int outstanding_ = 0;
  bool failed_ = false;
};

// Runs `body` with each request refused in turn, at first alone and then with
// all that follow, until there are no more; nothing may be left behind.
template <class Body>
void with_each_request_refused(Body body) {
  for (const bool and_after : {false, true}) {
    bool failed = true;
    for (int fail_at = 0; failed; ++fail_at) {
      SCOPED_TRACE(testing::Message() << "request " << fail_at << " refused"
                                      << (and_after ? " and all after" : ""));
      const HeapWatch heap(fail_at, and_after);
      body(heap);
      failed = heap.failed();
      EXPECT_EQ(heap.outstanding(), 0);
    }
  }
}

}  // namespace quill::test
