// The exported operations on arrays of longs.
#include "blocks/longs.h"

#include <utility>

#include "blocks/sort_longs.h"
#include "quillcore.h"

std::int32_t BinarySearchLongs(const std::int32_t* array, std::int32_t count,
                               std::int32_t key, std::int32_t* index) {
  const quill::LongPlace place = quill::find_long(array, count, key);
  *index = place.index;
  return place.found ? 1 : 0;
}

// Only the sorted result can be seen, so any sort serves that is in place.
void SortLongs(std::int32_t* array, std::int32_t first, std::int32_t limit) {
  if (limit <= first) return;
  quill::sort_longs(
      {array + first, static_cast<std::size_t>(quill::Offset{limit} - first)});
}

void SwapLongs(std::int32_t* first, std::int32_t* second) {
  std::swap(*first, *second);
}
