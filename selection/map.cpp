// Selection maps: a bit for each byte of the text, so that a host can combine
// lists and edit the set byte by byte.
//
// Bit n stands for the byte at offset n - 1, and bit 0 for none: a selection
// (start, end) is the run of the bits start + 1 to end.
#include "blocks/block_lock.h"
#include "blocks/long_list.h"
#include "quillcore.h"
#include "selection/bit_runs.h"
#include "selection/selection_list.h"

using namespace quill;

namespace {

// A map has bits 0 to text length + 1.
Offset bits_in_map(Offset text_length) { return text_length + 2; }
Offset bytes_in_map(Offset text_length) { return (text_length + 9) / 8; }

// Appends the runs, but leaves out each for which the list can't grow. False
// when not even the first full-sized Block could be had.
bool list_those_that_fit(std::span<const std::int32_t> runs, LongList& list) {
  for (;;) {
    runs = runs.subspan(static_cast<std::size_t>(list.append_pairs(runs)));
    if (runs.empty()) return true;
    if (list.failed_to_start()) return false;
    runs = runs.subspan(2);
  }
}

bool list_runs(const Byte* map, Offset text_length, LongList& list) {
  take_runs(map, bits_in_map(text_length),
            [&](std::span<const std::int32_t> runs) {
              return list_those_that_fit(runs, list);
            });
  return !list.failed_to_start();
}

}  // namespace

std::int32_t SelectionToMap(char* map, std::int32_t text_length,
                            QuillBlock list) {
  if (list == nullptr || text_length < 1) return 1;
  const BlockLock lock(list);
  set_selections(reinterpret_cast<Byte*>(map), bytes_in_map(text_length),
                 selections_of(lock.longs()), text_length);
  return 1;
}

std::int32_t MapToSelection(const char* map, std::int32_t text_length,
                            QuillBlock* list, std::int32_t* long_count) {
  if (text_length < 1) return 1;
  LongList runs;
  if (!runs.start()) return 0;
  if (!list_runs(as_bytes(map), text_length, runs)) return 0;
  const std::int32_t count = to_long(runs.long_count());
  QuillBlock made = runs.hand_over_or_none();
  if (made == nullptr && count > 0) return 0;
  *list = made;
  *long_count = count;
  return 1;
}
