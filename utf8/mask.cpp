// The exported operations on masks and character sets.
#include "utf8/mask.h"

#include <algorithm>

#include "quillcore.h"
#include "utf8/characters.h"
#include "utf8/mask_sort.h"
#include "utf8/mask_table.h"

using namespace quill;

namespace {

// The first key in array order, for keys that aren't sorted.
std::int32_t map_unsorted(const Mask& mask, std::int32_t character) {
  if (mask.is_identity()) return character;
  const std::int32_t* end = mask.keys + mask.count;
  const std::int32_t* key = std::find(mask.keys, end, character);
  return key == end ? character : mask.values[key - mask.keys];
}

}  // namespace

std::int32_t utf8_MaskChar(std::int32_t character,
                           const std::int32_t* mask_keys,
                           const std::int32_t* mask_values,
                           std::int32_t mask_count, unsigned char sorted) {
  const Mask mask{mask_keys, mask_values, mask_count};
  return sorted == 1 ? mask.map(character) : map_unsorted(mask, character);
}

std::int32_t utf8_MatchChar(const std::int32_t* set, std::int32_t count,
                            std::int32_t character, unsigned char include) {
  const bool found = find_long(set, count, character).found;
  return found == (include == 1) ? 1 : 0;
}

std::int32_t utf8_InList(std::int32_t character, const std::int32_t* list,
                         std::int32_t count) {
  if (count <= 0) return 0;
  return std::find(list, list + count, character) != list + count ? 1 : 0;
}

void utf8_SortMask(std::int32_t* mask_keys, std::int32_t* mask_values,
                   std::int32_t first, std::int32_t limit) {
  sort_mask(mask_keys, mask_values, first, limit);
}

std::int32_t utf8_StringToLongArray(const char* text, std::int32_t start,
                                    std::int32_t end,
                                    const std::int32_t* mask_keys,
                                    const std::int32_t* mask_values,
                                    std::int32_t mask_count,
                                    std::int32_t* array, std::int32_t* count) {
  if (start < 0 || start >= end || text == nullptr || array == nullptr) {
    return 0;
  }
  MaskTable mask({mask_keys, mask_values, mask_count}, Offset{end} - start);
  std::int32_t stored = 0;
  Offset position = start;
  while (position < end) {
    const Character read = read_next(as_bytes(text), position, end);
    if (!read.found) break;
    array[stored++] = mask.map(read.packed);
    position = read.next;
  }
  *count = stored;
  return 1;
}
