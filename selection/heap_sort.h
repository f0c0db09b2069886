// The heap sort, step for step: which elements are compared, and in which
// order, is part of what a host sees, and so is where equal elements end.
//
// Elements are numbered from 1; those of `Elements` lie where a host or a
// scratch array has them:
//   bool precedes(a, b)     whether element a comes before element b
//   void exchange(a, b)
#pragma once

#include <cstdint>

namespace quill {

// Lets element i sink to its place in the heap that ends at element `last`.
template <class Elements>
void sift_down(Elements& elements, std::uint64_t i, std::uint64_t last) {
  for (std::uint64_t j = 2 * i; j <= last; j = 2 * i) {
    if (j < last && elements.precedes(j, j + 1)) ++j;
    if (!elements.precedes(i, j)) return;
    elements.exchange(i, j);
    i = j;
  }
}

template <class Elements>
void heap_sort(Elements& elements, std::uint64_t count) {
  if (count <= 1) return;
  for (std::uint64_t i = count / 2; i >= 1; --i) sift_down(elements, i, count);
  for (std::uint64_t last = count; last > 1;) {
    elements.exchange(1, last);
    if (--last > 1) sift_down(elements, 1, last);
  }
}

}  // namespace quill
