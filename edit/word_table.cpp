// Replacing words through a table: a pattern finds the words of a text, the
// table says what to put in their place, and one edit puts it there.
#include <algorithm>
#include <array>
#include <span>

#include "blocks/block_lock.h"
#include "edit/byte_string.h"
#include "edit/insert_multiple.h"
#include "edit/splice.h"
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

// The selections that begin with a word, and these words' places. Nobody
// outside sees the list that they are taken from, so they are moved to its
// front, the others need no replacement, and no table is made.
struct Found {
  explicit Found(Offset most) : places(most) {}

  // False when a word that is found has no usable replacement.
  bool look_up(const Byte* text, Offset size, std::span<Selection> selections,
               const WordIndex& index, WordMask& mask) {
    const WordIndex::Replacements replacements = index.replacements();
    bool usable = true;
    for (std::size_t from = 0; from < selections.size();) {
      const auto some = selections.subspan(from).first(
          std::min(selections.size() - from, WordIndex::kAtOnce));
      std::array<std::int32_t, WordIndex::kAtOnce> found;
      index.find_all(text, size, some, mask, found.data());
      Offset k = count;
      for (std::size_t i = 0; i < some.size(); ++i) {
        selections[static_cast<std::size_t>(count)] = some[i];
        places[count] = found[i];
        count += static_cast<Offset>(index.is_word(found[i]));
      }
      for (; k < count; ++k) {
        const auto [bytes, length] = replacements[places[k]];
        usable &= is_byte_string(bytes, length);
        growth += length - selections[static_cast<std::size_t>(k)].length();
      }
      from += some.size();
    }
    return usable;
  }

  Scratch<std::int32_t> places;
  Offset count = 0;
  Offset growth = 0;
};

// The replacements as the edit asks for them.
class WordEdits {
 public:
  static constexpr bool kNotesPlaces = false;

  WordEdits(const Selection* selections, const Found& found,
            const WordIndex& index)
      : selections_(selections),
        places_(found.places.data()),
        count_(found.count),
        replacements_(index.replacements()) {}

  Offset count() const { return count_; }
  Offset start(Offset k) const { return selections_[k].start; }
  Offset end(Offset k) const { return selections_[k].end; }
  static bool is_kept(Offset) { return false; }
  Offset length(Offset k) const { return replacements_[places_[k]].length; }
  void put(Offset k, Offset length, char* to, Room) const {
    constexpr Offset kAhead = 16;
    if (k + 2 * kAhead < count_) {
      replacements_.fetch(places_[k + 2 * kAhead]);
      __builtin_prefetch(replacements_[places_[k + kAhead]].bytes);
    }
    move_bytes(to, replacements_[places_[k]].bytes, length);
  }

 private:
  const Selection* selections_;
  const std::int32_t* places_;
  Offset count_;
  WordIndex::Replacements replacements_;
};

// False, with the text as it was, when memory is short, a replacement can't be
// used or the text would become too long. The selections come from a search
// and are in order.
bool replace_words(QuillBlock text, QuillBlock list, const WordTable& table,
                   const Mask& mask) {
  const BlockLock list_lock(list);
  const std::span<Selection> selections = selections_of(list_lock.longs());
  const auto selection_count = static_cast<Offset>(selections.size());
  Found found(selection_count);
  if (found.places.refused()) return false;
  BlockLock text_lock(text);
  const WordIndex index(table.words, table.count, selection_count);
  WordMask word_mask(mask, selection_count * kMappedBytes);
  if (!found.look_up(text_lock.bytes(), text_lock.size(), selections, index,
                     word_mask)) {
    return false;
  }
  return found.count == 0 ||
         splice(text_lock, WordEdits(selections.data(), found, index),
                found.growth);
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
