// The quicksort whose order of equal keys hosts see, kept from going quadratic.
//
// Where no two keys are equal every sort gives the same answer. So a part that
// lies deeper than a lucky quicksort would go is tested for equal keys, and if
// it has none, a heap sort finishes it. Memory being out of the question, the
// test looks for the keys window by window in a fixed buffer: one pass over
// the part for at least each 1,792 of its keys.
#include "utf8/mask_sort.h"

#include <algorithm>
#include <array>
#include <bit>
#include <functional>
#include <limits>
#include <utility>

namespace quill {
namespace {

struct Entries {
  std::int32_t* keys;
  std::int32_t* values;

  void swap(Offset a, Offset b) const {
    std::swap(keys[a], keys[b]);
    std::swap(values[a], values[b]);
  }
};

// Keys up to the pivot stay on the left, greater ones are exchanged to the
// right end, whence the key that comes in is looked at next. Returns where the
// greater ones begin; the pivot stands just before.
Offset partition(const Entries& entries, Offset first, Offset limit) {
  const std::int32_t pivot = entries.keys[first];
  Offset left = first + 1;
  Offset right = limit;
  while (left < right) {
    if (entries.keys[left] <= pivot) {
      ++left;
    } else {
      entries.swap(left, --right);
    }
  }
  entries.swap(first, left - 1);
  return right;
}

bool are_strictly_ascending(const std::int32_t* keys, Offset first,
                            Offset limit) {
  return std::adjacent_find(keys + first, keys + limit,
                            std::greater_equal<>()) == keys + limit;
}

bool are_strictly_descending(const std::int32_t* keys, Offset first,
                             Offset limit) {
  return std::adjacent_find(keys + first, keys + limit, std::less_equal<>()) ==
         keys + limit;
}

// The lowest keys from a bound upwards, as many as the buffer can hold.
class Window {
 public:
  // False once two keys are known to be equal.
  [[nodiscard]] bool gather(const std::int32_t* keys, Offset first,
                            Offset limit, Offset lowest) {
    size_ = 0;
    bound_ = Offset{std::numeric_limits<std::int32_t>::max()} + 1;
    for (Offset i = first; i < limit; ++i) {
      if (keys[i] < lowest || keys[i] >= bound_) continue;
      if (size_ == kRoom && !drop_upper_half()) return false;
      if (keys[i] < bound_) keys_[static_cast<std::size_t>(size_++)] = keys[i];
    }
    const auto end = keys_.begin() + size_;
    std::sort(keys_.begin(), end);
    return std::adjacent_find(keys_.begin(), end) == end;
  }

  // All keys below it and not below the bound asked for were in the window.
  Offset bound() const { return bound_; }

 private:
  static constexpr std::ptrdiff_t kRoom = 3584;

  bool drop_upper_half() {
    const auto middle = keys_.begin() + kRoom / 2;
    std::nth_element(keys_.begin(), middle, keys_.end());
    bound_ = *middle;
    size_ = kRoom / 2;
    return std::find(keys_.begin(), middle, *middle) == middle;
  }

  std::array<std::int32_t, kRoom> keys_;  // undefined from `size_` on
  std::ptrdiff_t size_ = 0;
  Offset bound_ = 0;
};

bool are_distinct(const std::int32_t* keys, Offset first, Offset limit) {
  Window window;
  Offset lowest = std::numeric_limits<std::int32_t>::min();
  while (lowest <= kMaxLong) {
    if (!window.gather(keys, first, limit, lowest)) return false;
    lowest = window.bound();
  }
  return true;
}

void sift_down(const Entries& heap, Offset parent, Offset size) {
  for (;;) {
    Offset child = 2 * parent + 1;
    if (child >= size) return;
    if (child + 1 < size && heap.keys[child] < heap.keys[child + 1]) ++child;
    if (heap.keys[parent] >= heap.keys[child]) return;
    heap.swap(parent, child);
    parent = child;
  }
}

void heap_sort(const Entries& entries, Offset first, Offset limit) {
  const Entries heap{entries.keys + first, entries.values + first};
  Offset size = limit - first;
  for (Offset parent = size / 2; parent-- > 0;) sift_down(heap, parent, size);
  while (size > 1) {
    heap.swap(0, --size);
    sift_down(heap, 0, size);
  }
}

constexpr int kUnlimited = std::numeric_limits<int>::max();

// The order in which parts are sorted can't be seen, so the smaller one goes
// by recursion: the stack stays logarithmic.
void sort(const Entries& entries, Offset first, Offset limit, int depth) {
  while (limit - first >= 2) {
    if (depth == 0) {
      if (are_distinct(entries.keys, first, limit)) {
        heap_sort(entries, first, limit);
        return;
      }
      depth = kUnlimited;
    }
    if (depth != kUnlimited) --depth;
    const Offset greater = partition(entries, first, limit);
    const Offset pivot = greater - 1;
    if (pivot - first < limit - greater) {
      sort(entries, first, pivot, depth);
      first = greater;
    } else {
      sort(entries, greater, limit, depth);
      limit = pivot;
    }
  }
}

}  // namespace

void sort_mask(std::int32_t* keys, std::int32_t* values, Offset first,
               Offset limit) {
  if (limit - first < 2 || keys == nullptr || values == nullptr) return;
  if (are_strictly_ascending(keys, first, limit)) return;
  if (are_strictly_descending(keys, first, limit)) {
    std::reverse(keys + first, keys + limit);
    std::reverse(values + first, values + limit);
    return;
  }
  const auto size = static_cast<std::uint64_t>(limit - first);
  sort({keys, values}, first, limit,
       3 * static_cast<int>(std::bit_width(size)));
}

}  // namespace quill
