// The exported operations on arrays of longs.
#include "blocks/longs.h"

#include <algorithm>
#include <utility>

#include "quillcore.h"

std::int32_t BinarySearchLongs(const std::int32_t* array, std::int32_t count,
                               std::int32_t key, std::int32_t* index) {
  const quill::LongPlace place = quill::find_long(array, count, key);
  *index = place.index;
  return place.found ? 1 : 0;
}

// Only the sorted result can be seen, so the standard sort serves: in place,
// no allocation, n log n on every input.
void SortLongs(std::int32_t* array, std::int32_t first, std::int32_t limit) {
  if (limit > first) std::sort(array + first, array + limit);
}

void SwapLongs(std::int32_t* first, std::int32_t* second) {
  std::swap(*first, *second);
}
