// Putting a list into canonical form: ascending, what touches or overlaps
// merged, what is empty dropped.
//
// The result is the set of bytes that the list covers, so the way to it is
// free. A list whose starts ascend is merged where it lies. Any other goes
// through a map of the text, a bit a byte, or, where the text is so long or the
// selections cover so much that a map costs more, through a sort by start.
//
// Memory for the map is taken first in every case: whether the call can fail
// does not depend on what the list holds.
#include <algorithm>
#include <bit>

#include "blocks/block_lock.h"
#include "blocks/scratch.h"
#include "quillcore.h"
#include "selection/bit_runs.h"
#include "selection/selection_list.h"

using namespace quill;

namespace {

using Selections = std::span<Selection>;

// What lies outside the text is cut off; nothing may remain of a selection.
Selection cut_to_text(const Selection& selection, std::int32_t text_length) {
  return {std::max(selection.start, 0), std::min(selection.end, text_length)};
}

struct Survey {
  bool ascending = true;     // by start, among those that cover anything
  Offset covered_words = 0;  // of a map, each selection by itself
};

// Cuts the selections to the text and moves those that cover anything to the
// front; `list` is narrowed to them.
Survey drop_empty(Selections& list, std::int32_t text_length) {
  Survey survey;
  std::int32_t reached = 0;
  std::size_t kept = 0;
  for (const Selection& selection : list) {
    const Selection cut = cut_to_text(selection, text_length);
    if (cut.start >= cut.end) continue;
    survey.ascending &= cut.start >= reached;
    survey.covered_words += cut.length() >> 6;
    reached = cut.start;
    list[kept++] = cut;
  }
  list = list.first(kept);
  return survey;
}

// Merges what touches or overlaps in a list whose starts ascend, and returns
// how many selections remain. Never writes before it has read.
std::size_t merge_ascending(Selections list) {
  if (list.empty()) return 0;
  Selection* last = list.data();
  for (const Selection& selection : list.subspan(1)) {
    if (selection.start <= last->end) {
      last->end = std::max(last->end, selection.end);
    } else {
      *++last = selection;
    }
  }
  return static_cast<std::size_t>(last - list.data()) + 1;
}

std::size_t merge_by_map(Selections list, std::int32_t text_length,
                         std::span<Byte> map) {
  std::fill(map.begin(), map.end(), Byte{0});
  set_selections(map.data(), std::ssize(map), list, text_length);
  // Runs are no more than the selections that made them.
  auto* const longs = reinterpret_cast<std::int32_t*>(list.data());
  auto* next = longs;
  take_runs(map.data(), std::ssize(map) * 8,
            [&](std::span<const std::int32_t> runs) {
              next = std::copy(runs.begin(), runs.end(), next);
              return true;
            });
  return static_cast<std::size_t>(next - longs) / 2;
}

std::size_t merge_by_sort(Selections list) {
  std::sort(
      list.begin(), list.end(),
      [](const Selection& a, const Selection& b) { return a.start < b.start; });
  return merge_ascending(list);
}

// The costs are in quarters of a nanosecond, roughly: a byte of the map to
// clear and to scan, a selection to mark, a word to fill; and a step of a sort.
bool sorting_is_cheaper(std::size_t count, std::size_t map_bytes,
                        Offset covered_words) {
  const auto selections = static_cast<Offset>(count);
  const auto steps = static_cast<Offset>(std::bit_width(count));
  const Offset by_map =
      static_cast<Offset>(map_bytes) + 32 * selections + covered_words;
  const Offset by_sort = 14 * selections * steps;
  return by_sort < by_map;
}

std::size_t put_in_order(Selections list, std::int32_t text_length,
                         std::span<Byte> map) {
  const Survey survey = drop_empty(list, text_length);
  if (survey.ascending) return merge_ascending(list);
  if (sorting_is_cheaper(list.size(), map.size(), survey.covered_words)) {
    return merge_by_sort(list);
  }
  return merge_by_map(list, text_length, map);
}

}  // namespace

std::int32_t OrderSelections(QuillBlock* list, std::int32_t text_length) {
  if (*list == nullptr || text_length < 1) return 1;
  const Scratch<Byte> map(Offset{text_length} / 8 + 2);
  if (map.refused()) return 0;
  BlockLock lock(*list);
  const std::size_t count =
      put_in_order(selections_of(lock.longs()), text_length, map.span());
  // Shrinking can't fail.
  static_cast<void>(
      lock.resize(static_cast<Offset>(count * sizeof(Selection))));
  return 1;
}
