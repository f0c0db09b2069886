// Sorting selections, and key records, by the text that they cover.
//
// The order is that of the heap sort, down to the places of equal elements.
// It runs where the list lies when there are few elements, when a character
// can't be read, when memory is short; else on ranks, to the same result.
#include <algorithm>
#include <span>

#include "blocks/scratch.h"
#include "quillcore.h"
#include "selection/compare.h"
#include "selection/heap_sort.h"
#include "selection/rank_sort.h"

using namespace quill;

namespace {

// Fewer are sorted in place before memory is had for them.
constexpr std::size_t kFewestRanked = 24;

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
void sort_in_place(std::span<Element> list, const Byte* text,
                   const Mask& mask) {
  ListElements<Element> elements{list.data(), text, mask};
  heap_sort(elements, list.size());
}

// False when a selection lies outside every text.
template <class Element>
bool list_texts(std::span<const Element> list, RankedText* items) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    const Selection& text = sorted_by(list[i]);
    if (text.start < 0 || text.end < text.start) return false;
    items[i] = {0, static_cast<std::uint32_t>(text.start),
                static_cast<std::uint32_t>(text.length()),
                static_cast<std::uint32_t>(i)};
  }
  return true;
}

// False, and nothing changed, when memory is short or the texts are not fit
// for it.
template <class Element>
bool sort_by_ranks(std::span<Element> list, const Byte* text,
                   const Mask& mask) {
  const auto count = std::ssize(list);
  const Scratch<RankedText> items(count);
  const Scratch<Element> sorted(count);
  Element* next = sorted.data();
  if (text == nullptr || items.refused() || next == nullptr) return false;
  if (!list_texts<Element>(list, items.data())) return false;
  if (!order_by_ranks(text, items.span(), mask)) return false;
  for (const RankedText& item : items.span()) *next++ = list[item.index];
  std::copy_n(sorted.data(), count, list.data());
  return true;
}

template <class Element>
void sort_list(const char* text, std::int32_t* longs, std::uint32_t byte_count,
               const Mask& mask) {
  const std::span<Element> list(reinterpret_cast<Element*>(longs),
                                byte_count / sizeof(Element));
  if (list.size() >= kFewestRanked &&
      sort_by_ranks(list, as_bytes(text), mask)) {
    return;
  }
  sort_in_place(list, as_bytes(text), mask);
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
