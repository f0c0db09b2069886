// Replacing words through a table: a pattern finds the words of a text, the
// table says what to put in their place, and one edit puts it there.
#include <algorithm>
#include <array>
#include <string_view>

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

// What takes a selection's place.
struct Replacement {
  std::int32_t start;
  std::int32_t end;
  std::string_view bytes;
};

// Those of the selections that begin with a word. Nobody outside sees them, so
// the other selections need none, and no table is made.
struct Replacements {
  explicit Replacements(Offset most) : found(most) {}

  // False when a word that matches has no usable replacement.
  bool look_up(const Byte* text, Offset size,
               std::span<const Selection> selections, const WordTable& table,
               const Mask& mask) {
    const auto selection_count = static_cast<Offset>(selections.size());
    const WordIndex index(table.words, table.count, selection_count);
    WordMask word_mask(mask, selection_count * kMappedBytes);
    std::array<WordIndex::Hit, WordIndex::kAtOnce> hits;
    while (!selections.empty()) {
      const auto some =
          selections.first(std::min(selections.size(), hits.size()));
      const auto hit_count = static_cast<std::size_t>(
          index.find_all(text, size, some, word_mask, hits.data()));
      for (const WordIndex::Hit& hit : std::span(hits).first(hit_count)) {
        if (!replace(some[static_cast<std::size_t>(hit.number)], hit)) {
          return false;
        }
      }
      selections = selections.subspan(some.size());
    }
    return true;
  }

  bool replace(const Selection& selection, const WordIndex::Hit& hit) {
    if (!is_byte_string(hit.replacement, hit.replacement_length)) return false;
    found[count++] = {selection.start, selection.end,
                      byte_string(hit.replacement, hit.replacement_length)};
    growth += hit.replacement_length - selection.length();
    return true;
  }

  Scratch<Replacement> found;
  Offset count = 0;
  Offset growth = 0;
};

// The replacements as the edit asks for them.
class WordEdits {
 public:
  static constexpr bool kNotesPlaces = false;

  explicit WordEdits(std::span<const Replacement> found) : found_(found) {}

  Offset count() const { return std::ssize(found_); }
  Offset start(Offset k) const { return at(k).start; }
  Offset end(Offset k) const { return at(k).end; }
  static bool is_kept(Offset) { return false; }
  Offset length(Offset k) const { return std::ssize(at(k).bytes); }
  void put(Offset k, Offset length, char* to, Room) const {
    constexpr Offset kAhead = 16;
    if (k + kAhead < count()) {
      __builtin_prefetch(at(k + kAhead).bytes.data());
    }
    move_bytes(to, at(k).bytes.data(), length);
  }

 private:
  const Replacement& at(Offset k) const {
    return found_[static_cast<std::size_t>(k)];
  }

  std::span<const Replacement> found_;
};

// False, with the text as it was, when memory is short, a replacement can't be
// used or the text would become too long. The selections come from a search
// and are in order.
bool replace_words(QuillBlock text, QuillBlock list, const WordTable& table,
                   const Mask& mask) {
  const BlockLock list_lock(list);
  const std::span<const Selection> words = selections_of(list_lock.longs());
  Replacements replacements(static_cast<Offset>(words.size()));
  BlockLock text_lock(text);
  if (replacements.found.refused() ||
      !replacements.look_up(text_lock.bytes(), text_lock.size(), words, table,
                            mask)) {
    return false;
  }
  const auto count = static_cast<std::size_t>(replacements.count);
  return count == 0 ||
         splice(text_lock, WordEdits(replacements.found.span().first(count)),
                replacements.growth);
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
