// Replace tables: a Block of pointers, one for each selection, to entries that
// are allocated one by one and belong to the table.
#include <algorithm>
#include <cstdlib>
#include <new>

#include "blocks/block_lock.h"
#include "quillcore.h"
#include "selection/selection_list.h"

using namespace quill;

namespace {

// The table is this call's own: nothing moves it once it is unlocked.
std::span<QuillReplaceEntry*> entries_of(const BlockLock& table) {
  return {reinterpret_cast<QuillReplaceEntry**>(table.contents()),
          static_cast<std::size_t>(table.size()) / sizeof(QuillReplaceEntry*)};
}

void release(std::span<QuillReplaceEntry* const> entries) {
  for (QuillReplaceEntry* entry : entries) std::free(entry);
}

// Makes an entry for each selection, with nothing to be put in its place. All
// or none: false when memory is short.
bool make_entries(std::span<const Selection> selections,
                  std::span<QuillReplaceEntry*> entries) {
  for (std::size_t i = 0; i < entries.size(); ++i) {
    void* memory = std::malloc(sizeof(QuillReplaceEntry));
    if (memory == nullptr) {
      release(entries.first(i));
      return false;
    }
    const Selection& selection = selections[i];
    entries[i] = new (memory)
        QuillReplaceEntry{selection.start, selection.end, nullptr, 0, 0};
  }
  return true;
}

QuillBlock make_table(std::span<const Selection> selections) {
  const std::size_t byte_count = selections.size() * sizeof(QuillReplaceEntry*);
  if (byte_count > static_cast<std::size_t>(kMaxLong)) return nullptr;
  QuillBlock table = NewHandle(static_cast<std::int32_t>(byte_count));
  if (table == nullptr) return nullptr;
  if (!make_entries(selections, entries_of(BlockLock(table)))) {
    DisposeHandle(table);
    return nullptr;
  }
  return table;
}

}  // namespace

std::int32_t iArrayToReplaceTable(QuillBlock selections,
                                  std::int32_t long_count, QuillBlock* table,
                                  std::int32_t* entry_count) {
  *table = nullptr;
  *entry_count = 0;
  if (long_count <= 0 || selections == nullptr) return 0;
  const BlockLock list(selections);
  const std::span<std::int32_t> longs = list.longs();
  const auto wanted = static_cast<std::size_t>(long_count);
  const std::span<Selection> used =
      selections_of(longs.first(std::min(wanted, longs.size())));
  *table = make_table(used);
  if (*table == nullptr) return 0;
  *entry_count = static_cast<std::int32_t>(used.size());
  return 1;
}

std::int32_t DisposeReplaceTable(QuillBlock table, std::int32_t entry_count) {
  if (table == nullptr) return 0;
  const std::span<QuillReplaceEntry*> entries = entries_of(BlockLock(table));
  const auto wanted = static_cast<std::size_t>(std::max(entry_count, 0));
  release(entries.first(std::min(wanted, entries.size())));
  DisposeHandle(table);
  return 1;
}
