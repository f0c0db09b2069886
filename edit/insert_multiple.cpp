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

class OwnStrings {
 public:
  explicit OwnStrings(Entries entries) : entries_(entries) {}

  // Whether the table is in order, inside the text and consistent; adds up
  // what the edit needs to know on the way.
  bool check(Offset text_length) {
    Offset reached = 0;
    for (const QuillReplaceEntry* entry : entries_) {
      if (entry == nullptr || entry->start < reached ||
          entry->end < entry->start || !is_consistent(*entry)) {
        return false;
      }
      reached = entry->end;
      if (entry->kind == kKeep) continue;
      growth_ += entry->replacement_length - selected_length(*entry);
      shrinks_ = shrinks_ || entry->kind == kShorter;
    }
    return reached <= text_length;
  }

  Offset count() const { return std::ssize(entries_); }
  Offset start(Offset k) const { return at(k).start; }
  Offset end(Offset k) const { return at(k).end; }
  bool is_kept(Offset k) const { return at(k).kind == kKeep; }
  std::string_view replacement(Offset k) const {
    return byte_string(at(k).replacement, at(k).replacement_length);
  }
  Offset growth() const { return growth_; }
  bool shrinks() const { return shrinks_; }

 private:
  const QuillReplaceEntry& at(Offset k) const {
    return *entries_[static_cast<std::size_t>(k)];
  }

  Entries entries_;
  Offset growth_ = 0;
  bool shrinks_ = false;
};

// Moves every entry to where its selection lies once all longer ones have been
// replaced and none of the shorter ones has. Only after the edit: a host may
// list one entry twice.
void note_places(Entries entries) {
  Offset shrunk = 0;
  for (QuillReplaceEntry* entry : entries) {
    const Offset length = selected_length(*entry);
    const Offset kept =
        entry->kind == kShorter ? Offset{entry->replacement_length} : length;
    entry->start = to_long(entry->start - shrunk);
    entry->end = to_long(entry->start + kept);
    shrunk += length - kept;
  }
}

}  // namespace

bool insert_multiple(QuillBlock text, Entries entries) {
  if (entries.empty() || text == nullptr) return false;
  BlockLock text_lock(text);
  OwnStrings edits(entries);
  if (!edits.check(text_lock.size()) || !splice(text_lock, edits)) {
    return false;
  }
  if (edits.shrinks()) note_places(entries);
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
