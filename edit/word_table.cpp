// Replacing words through a table: a pattern finds the words of a text, the
// table says what to put in their place, and one edit puts it there.
#include "blocks/block_lock.h"
#include "edit/insert_multiple.h"
#include "edit/word_index.h"
#include "pattern/pattern_search_all.h"
#include "quillcore.h"
#include "selection/selection_list.h"

using namespace quill;

namespace {

ReplaceKind kind_of(Offset replacement_length, Offset selection_length) {
  if (replacement_length == selection_length) return kSameLength;
  return replacement_length < selection_length ? kShorter : kLonger;
}

QuillReplaceEntry entry_for(const QuillWordEntry& word, std::int32_t start,
                            std::int32_t end) {
  return {start, end, word.replacement, word.replacement_length,
          kind_of(word.replacement_length, Offset{end} - start)};
}

// About how many bytes of a selection are mapped; most words are short.
constexpr Offset kMappedBytes = 4;

// A list that the call made for itself.
class OwnList {
 public:
  explicit OwnList(QuillBlock block) : block_(block) {}
  ~OwnList() { DisposeHandle(block_); }
  OwnList(const OwnList&) = delete;
  OwnList& operator=(const OwnList&) = delete;

  QuillBlock block() const { return block_; }

 private:
  QuillBlock block_;
};

struct WordTable {
  const QuillWordEntry* const* words;
  std::int32_t count;
};

// The entries of the selections that have a word, in one piece: nobody outside
// sees them, so the other selections need none.
struct Replacements {
  explicit Replacements(Offset most) : entries(most), pointers(most) {}
  bool refused() const { return entries.refused() || pointers.refused(); }

  void look_up(const Byte* text, std::span<const Selection> selections,
               const WordTable& table, const Mask& mask) {
    const auto selection_count = static_cast<Offset>(selections.size());
    const WordIndex index(table.words, table.count, selection_count);
    MaskTable mask_table(mask, selection_count * kMappedBytes);
    for (const Selection& selection : selections) {
      const QuillWordEntry* word =
          index.find({text, selection.start, selection.end, mask_table});
      if (word == nullptr) continue;
      entries[count] = entry_for(*word, selection.start, selection.end);
      pointers[count] = &entries[count];
      ++count;
    }
  }

  std::span<QuillReplaceEntry* const> used() const {
    return pointers.span().first(static_cast<std::size_t>(count));
  }

  Scratch<QuillReplaceEntry> entries;
  Scratch<QuillReplaceEntry*> pointers;
  Offset count = 0;
};

// False when memory is short or the edit fails.
bool replace_words(QuillBlock text, QuillBlock list, const WordTable& table,
                   const Mask& mask) {
  const BlockLock selections(list);
  const std::span<const Selection> words = selections_of(selections.longs());
  Replacements replacements(static_cast<Offset>(words.size()));
  if (replacements.refused()) return false;
  replacements.look_up(BlockLock(text).bytes(), words, table, mask);
  return replacements.count == 0 || insert_multiple(text, replacements.used());
}

}  // namespace

std::int32_t WordTable_FillReplaceTable(QuillReplaceEntry** entries,
                                        std::int32_t entry_count,
                                        QuillWordEntry** words,
                                        std::int32_t word_count, char* text,
                                        std::int32_t* mask_keys,
                                        std::int32_t* mask_values,
                                        std::int32_t mask_count) {
  if (entries == nullptr) return 1;
  const WordIndex index(words, word_count, entry_count);
  MaskTable mask({mask_keys, mask_values, mask_count},
                 entry_count * kMappedBytes);
  for (std::int32_t i = 0; i < entry_count; ++i) {
    QuillReplaceEntry& entry = *entries[i];
    const QuillWordEntry* word =
        index.find({as_bytes(text), entry.start, entry.end, mask});
    entry = word == nullptr
                ? QuillReplaceEntry{entry.start, entry.end, nullptr, 0, kKeep}
                : entry_for(*word, entry.start, entry.end);
  }
  return 1;
}

std::int32_t utf8_WordTableReplace(
    QuillBlock* text, std::int32_t from, std::int32_t* to,
    const QuillRangePart* const* parts, std::int32_t part_count,
    const QuillWordEntry* const* words, std::int32_t word_count,
    const std::int32_t* mask_keys, const std::int32_t* mask_values,
    std::int32_t mask_count, std::int32_t* new_end, std::int32_t reference,
    QuillYield yield) {
  QuillBlock block = *text;
  const std::int32_t end = *to;
  *new_end = end;
  const std::int32_t size = GetHandleSize(block);
  if (block == nullptr || end > size) return 0;

  const Host host{reference, yield};
  const auto find_words = [&] {
    const BlockLock lock(block);
    return find_all_matches(lock.contents(), {parts, part_count}, from, end,
                            host);
  };
  const PatternList found = find_words();
  if (!found.made) return 0;
  const OwnList list(found.block);
  if (found.long_count <= 0) return 1;

  const Mask mask{mask_keys, mask_values, mask_count};
  if (!replace_words(block, list.block(), {words, word_count}, mask)) return 0;
  const std::int32_t moved_end = end + (GetHandleSize(block) - size);
  *text = block;
  *to = moved_end;
  *new_end = moved_end;
  return 1;
}
