// The exported comparison, and the sort that takes any comparison.
#include "selection/compare.h"

#include <cstddef>
#include <cstring>

#include "quillcore.h"
#include "selection/heap_sort.h"

using namespace quill;

namespace {

// Exchanges two pieces of memory word by word, what is left byte by byte.
void exchange_bytes(char* first, char* second, std::size_t count) {
  while (count >= sizeof(std::uint64_t)) {
    std::uint64_t a;
    std::uint64_t b;
    std::memcpy(&a, first, sizeof a);
    std::memcpy(&b, second, sizeof b);
    std::memcpy(first, &b, sizeof b);
    std::memcpy(second, &a, sizeof a);
    first += sizeof a;
    second += sizeof a;
    count -= sizeof a;
  }
  for (; count > 0; --count) std::swap(*first++, *second++);
}

// Elements of any size where the host has them, under its comparison.
struct HostElements {
  char* base;
  std::size_t element_size;
  QuillCompare compare;
  char* text;
  std::int32_t* mask_keys;
  std::int32_t* mask_values;
  std::int32_t mask_count;

  char* at(std::uint64_t number) const {
    return base + (number - 1) * element_size;
  }
  bool precedes(std::uint64_t a, std::uint64_t b) const {
    return compare(at(a), at(b), text, mask_keys, mask_values, mask_count) < 0;
  }
  void exchange(std::uint64_t a, std::uint64_t b) const {
    if (a != b) exchange_bytes(at(a), at(b), element_size);
  }
};

}  // namespace

int CompareSelections(const void* first, const void* second, char* text,
                      std::int32_t* mask_keys, std::int32_t* mask_values,
                      std::int32_t mask_count) {
  return compare_selections(*static_cast<const Selection*>(first),
                            *static_cast<const Selection*>(second),
                            as_bytes(text),
                            {mask_keys, mask_values, mask_count});
}

void qSortV(void* base, std::uint32_t count, std::uint32_t element_size,
            QuillCompare compare, char* text, std::int32_t* mask_keys,
            std::int32_t* mask_values, std::int32_t mask_count) {
  HostElements elements{static_cast<char*>(base),
                        element_size,
                        compare,
                        text,
                        mask_keys,
                        mask_values,
                        mask_count};
  heap_sort(elements, count);
}
