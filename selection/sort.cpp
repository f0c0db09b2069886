// Sorting selections, and key records, by the text that they cover.
#include "quillcore.h"
#include "selection/compare.h"
#include "selection/heap_sort.h"

using namespace quill;

namespace {

const Selection& sorted_by(const Selection& selection) { return selection; }
const Selection& sorted_by(const KeyRecord& record) { return record.key; }

// The elements of a list where they lie, in the order of their texts.
template <class Element>
struct ListElements {
  Element* list;
  const Byte* text;
  Mask mask;

  bool precedes(std::uint64_t a, std::uint64_t b) const {
    return compare_selections(sorted_by(list[a - 1]), sorted_by(list[b - 1]),
                              text, mask) < 0;
  }
  void exchange(std::uint64_t a, std::uint64_t b) const {
    std::swap(list[a - 1], list[b - 1]);
  }
};

template <class Element>
void sort_list(const char* text, std::int32_t* longs, std::uint32_t byte_count,
               const Mask& mask) {
  ListElements<Element> elements{reinterpret_cast<Element*>(longs),
                                 as_bytes(text), mask};
  heap_sort(elements, byte_count / sizeof(Element));
}

}  // namespace

std::int32_t utf8_SortSelections(const char* text, std::int32_t* selections,
                                 std::uint32_t byte_count,
                                 const std::int32_t* mask_keys,
                                 const std::int32_t* mask_values,
                                 std::int32_t mask_count) {
  sort_list<Selection>(text, selections, byte_count,
                       {mask_keys, mask_values, mask_count});
  return 1;
}

std::int32_t utf8_SortKeySelections(const char* text, std::int32_t* records,
                                    std::uint32_t byte_count,
                                    const std::int32_t* mask_keys,
                                    const std::int32_t* mask_values,
                                    std::int32_t mask_count) {
  sort_list<KeyRecord>(text, records, byte_count,
                       {mask_keys, mask_values, mask_count});
  return 1;
}
