// Working memory of one call, from the general heap.
//
// May be refused: the owner tests it before use. Freed on every path.
#pragma once

#include <cstdlib>
#include <limits>
#include <span>
#include <type_traits>
#include <utility>

#include "blocks/base.h"

namespace quill {

template <class T>
class Scratch {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  // Room for `count` elements, undefined until written. Room for none is
  // never refused.
  explicit Scratch(Offset count)
      : elements_(count <= 0 ? nullptr : allocate(count)),
        count_(elements_ == nullptr ? 0 : count),
        refused_(count > 0 && elements_ == nullptr) {}
  // Inside a std::optional the analyzer sees it destroyed twice, by the
  // optional and again by the union that it lies in.
  // NOLINTNEXTLINE(clang-analyzer-unix.Malloc)
  ~Scratch() { std::free(elements_); }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  bool refused() const { return refused_; }
  T* data() const { return elements_; }
  Offset size() const { return count_; }
  T& operator[](Offset index) const {
    assert(index >= 0 && index < count_);
    // Refused memory is not indexed, which the analyzer can't know.
    // NOLINTNEXTLINE(clang-analyzer-core.uninitialized.UndefReturn)
    return elements_[index];
  }
  std::span<T> span() const {
    return {elements_, static_cast<std::size_t>(count_)};
  }

 private:
  static T* allocate(Offset count) {
    constexpr Offset kMost =
        std::numeric_limits<Offset>::max() / static_cast<Offset>(sizeof(T));
    if (count > kMost) return nullptr;
    return static_cast<T*>(
        std::malloc(static_cast<std::size_t>(count) * sizeof(T)));
  }

  T* elements_;
  Offset count_;
  bool refused_;
};

}  // namespace quill
