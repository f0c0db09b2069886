#include "edit/insert_multiple.h"

#include <algorithm>
#include <string_view>

#include "blocks/block_lock.h"
#include "edit/byte_string.h"
#include "edit/splice.h"

namespace quill {
namespace {

using Entries = std::span<QuillReplaceEntry* const>;

Offset selected_length(const QuillReplaceEntry& entry) {
  return Offset{entry.end} - entry.start;
}

// Whether the kind is one and tells the truth about the lengths. An entry that
// is kept has no replacement worth looking at.
bool is_consistent(const QuillReplaceEntry& entry) {
  if (entry.kind == kKeep) return true;
  if (!is_byte_string(entry.replacement, entry.replacement_length)) {
    return false;
  }
  const Offset change = entry.replacement_length - selected_length(entry);
  switch (entry.kind) {
    case kShorter:
      return change < 0;
    case kSameLength:
      return change == 0;
    case kLonger:
      return change > 0;
    default:
      return false;
  }
}

// What one look at a table tells.
struct TableSurvey {
  bool is_usable = false;  // in order, inside the text and consistent
  bool shrinks = false;    // some selection does
  Offset growth = 0;       // of the text
};

TableSurvey survey(Entries entries, Offset text_length) {
  TableSurvey table;
  Offset reached = 0;
  for (const QuillReplaceEntry* entry : entries) {
    if (entry == nullptr || entry->start < reached ||
        entry->end < entry->start || !is_consistent(*entry)) {
      return table;
    }
    reached = entry->end;
    if (entry->kind == kKeep) continue;
    table.growth += entry->replacement_length - selected_length(*entry);
    table.shrinks = table.shrinks || entry->kind == kShorter;
  }
  table.is_usable = reached <= text_length;
  return table;
}

// Moves the entries to where their selections lie once those before them have
// shrunk, and have been replaced if they shrink themselves. One that stands
// there again has moved already.
void note_places(Entries entries) {
  Offset shrunk = 0;
  const QuillReplaceEntry* last = nullptr;
  for (QuillReplaceEntry* entry : entries) {
    if (entry == last) continue;
    last = entry;
    const Offset before = selected_length(*entry);
    const Offset length =
        entry->kind == kShorter ? Offset{entry->replacement_length} : before;
    entry->start = to_long(entry->start - shrunk);
    entry->end = to_long(entry->start + length);
    shrunk += before - length;
  }
}

// The edit that puts each entry's replacement in place of its selection.
class OwnStrings {
 public:
  static constexpr bool kNotesPlaces = false;

  explicit OwnStrings(Entries entries) : entries_(entries) {}

  Offset count() const { return std::ssize(entries_); }
  Offset start(Offset k) const { return at(k).start; }
  Offset end(Offset k) const { return at(k).end; }
  bool is_kept(Offset k) const { return at(k).kind == kKeep; }
  Offset length(Offset k) const { return at(k).replacement_length; }
  void put(Offset k, Offset length, char* to, Room) const {
    move_bytes(to, at(k).replacement, length);
  }

 private:
  const QuillReplaceEntry& at(Offset k) const {
    return *entries_[static_cast<std::size_t>(k)];
  }

  Entries entries_;
};

}  // namespace

bool insert_multiple(QuillBlock text, Entries entries) {
  if (entries.empty() || text == nullptr) return false;
  BlockLock text_lock(text);
  const TableSurvey table = survey(entries, text_lock.size());
  if (!table.is_usable) return false;
  if (!splice(text_lock, OwnStrings(entries), table.growth)) return false;
  if (table.shrinks) note_places(entries);
  return true;
}

}  // namespace quill

std::int32_t InsertMultiple(QuillBlock* text, QuillReplaceEntry** entries,
                            std::int32_t entry_count) {
  if (entry_count <= 0 || entries == nullptr) return 0;
  return quill::insert_multiple(
             *text, {entries, static_cast<std::size_t>(entry_count)})
             ? 1
             : 0;
}
