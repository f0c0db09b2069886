#include "tests/support/heap_watch.h"

#include <cstddef>

#include "tests/support/blocks.h"

namespace quill::test {

bool HeapWatch::refuses() {
  if (RequestsAllowed::any()) return false;
  const int request = requests_++;
  const bool refused =
      fail_at_ != kNoFailure &&
      (request == fail_at_ || (and_after_ && request > fail_at_));
  failed_ = failed_ || refused;
  return refused;
}

}  // namespace quill::test

using quill::test::HeapWatch;

namespace {

template <class Allocate>
void* allocate_watched(bool is_new, Allocate allocate) {
  if (HeapWatch* const watch = HeapWatch::active(); watch != nullptr) {
    if (watch->refuses()) return nullptr;
    if (is_new) watch->note(1);
  }
  return allocate();
}

}  // namespace

// The linker's --wrap makes these names.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* memory, std::size_t size);
void __real_free(void* memory);

void* __wrap_malloc(std::size_t size) {
  return allocate_watched(true, [=] { return __real_malloc(size); });
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
  return allocate_watched(true, [=] { return __real_calloc(count, size); });
}

void* __wrap_realloc(void* memory, std::size_t size) {
  return allocate_watched(memory == nullptr,
                          [=] { return __real_realloc(memory, size); });
}

void __wrap_free(void* memory) {
  HeapWatch* const watch = HeapWatch::active();
  if (watch != nullptr && memory != nullptr) watch->note(-1);
  __real_free(memory);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
