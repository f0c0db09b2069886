// The words of a word table, looked up by the text of a selection.
//
// A selection's word is the first in table order that its characters, each
// mapped, begin with. Every selection begins with a word of no characters, so
// the words after one are never found.
//
// Trying the words one after the other defines the answer. When many
// selections are to be looked up among many words, an index finds the words by
// a hash of their characters. Its slots hold no more than a part of the hash
// and the word's place, so that they lie in the nearer caches; what decides
// lies with the word's replacement, and is hardly ever looked at in vain.
// Another table tells, by a hash of a selection's first few characters, how
// long the words are that begin so: mostly there are none, or none as short as
// the selection, and otherwise only the beginnings of these lengths are looked
// up. Without memory for the index the words are tried in order.
#pragma once

#include <algorithm>
#include <array>
#include <span>

#include "blocks/base.h"
#include "blocks/scratch.h"
#include "edit/word_key.h"
#include "quillcore.h"
#include "selection/selection_list.h"
#include "utf8/character_map.h"
#include "utf8/mask_table.h"

namespace quill {

// The text of a selection, every character mapped as it is read.
struct MaskedSelection {
  const Byte* text;
  Offset start;
  Offset end;
  MaskTable& mask;
};

// A mask as one selection needs it, and as many at once do.
class WordMask {
 public:
  WordMask(const Mask& mask, Offset byte_count) : table_(mask, byte_count) {}

  MaskTable& table() { return table_; }
  const CharacterMap& ascii_map() {
    if (!has_map_) map_ascii(table_.mask(), map_);
    has_map_ = true;
    return map_;
  }

 private:
  MaskTable table_;
  CharacterMap map_;
  bool has_map_ = false;
};

class WordIndex {
 public:
  // `selection_count`: how many selections will be looked up.
  WordIndex(const QuillWordEntry* const* words, std::int32_t word_count,
            Offset selection_count);

  // Null when the selection begins with no word of the table.
  const QuillWordEntry* find(const MaskedSelection& selection) const;

  // The same for many selections, which lie within the `size` bytes of the
  // text, at most kAtOnce: writes the place of a word in the table, or that
  // behind the last, for each. What one selection waits for comes from memory
  // while others are dealt with.
  static constexpr std::size_t kAtOnce = 256;
  void find_all(const Byte* text, Offset size,
                std::span<const Selection> selections, WordMask& mask,
                std::int32_t* places) const;
  bool is_word(std::int32_t place) const {
    return place < empty_word_ || has_empty_word_;
  }

  // What the host has put in for a word. Small, to be copied; valid for as long
  // as the index.
  struct Replacement {
    const char* bytes;
    std::int32_t length;
  };
  class Replacements;
  Replacements replacements() const;

 private:
  struct Slot {
    std::uint32_t tag;   // part of the word's hash
    std::int32_t place;  // of the word in the table
  };
  struct Word {
    KeyBytes bytes;
    std::int32_t key_length;
    std::int32_t replacement_length;
    const char* replacement;

    bool has(const WordKey& key) const {
      return WordKey{bytes, key_length} == key;
    }
  };

  // The lengths of words, in characters. Bit n: n of them, or that many and
  // more for the last bit.
  using Endings = std::uint16_t;
  static constexpr Offset kLongEnding = 15;
  // The lengths that a selection of `length` bytes, at least one, has room for.
  static unsigned up_to(Offset length) {
    return (2u << std::min(length, kLongEnding)) - 1;
  }

  class Lookup;

  void insert(std::int32_t place);
  Beginning note_ending(const QuillWordEntry& word);
  Word describe(std::int32_t place, const WordKey& key) const;
  std::int32_t look_up(const MaskedSelection& selection) const;
  template <class Use>
  void each_beginning(const MaskedSelection& selection, Use use) const;
  bool read_beginning(const MaskedSelection& selection, Offset& position,
                      Beginning& beginning) const;
  // The place of the first word from slot `at` on that may be the one wanted,
  // or kNowhere; `at` goes on to its slot.
  std::int32_t next_place(Offset& at, std::uint32_t tag) const;
  bool is_wanted(std::int32_t place, const WordKey& wanted,
                 const MaskedSelection& selection) const;
  std::int32_t place_of(const WordKey& wanted, std::uint64_t hash,
                        const MaskedSelection& selection) const;
  std::int32_t try_in_order(const MaskedSelection& selection) const;

  static std::uint32_t tag_of(std::uint64_t hash) {
    return static_cast<std::uint32_t>(hash >> 32);
  }
  Offset slot_of(std::uint64_t hash) const {
    return static_cast<Offset>(hash) & (slots_.size() - 1);
  }
  bool has_index() const {
    return slots_.size() != 0 && endings_.size() != 0 && found_.size() != 0;
  }
  Endings& endings_after(std::uint64_t hash) const {
    return endings_[static_cast<Offset>(hash >> 24) & (endings_.size() - 1)];
  }

  static constexpr std::int32_t kNowhere = -1;  // the place in a free slot

  const QuillWordEntry* const* words_;
  std::int32_t empty_word_;   // place of the first word of no characters, or
                              // the number of words; only those before it count
  Scratch<Slot> slots_;       // open addressing; of size 0 without an index
  Scratch<Endings> endings_;  // by the hash of a word's beginning
  Scratch<Word> found_;       // by place, up to that of the empty word
  Offset shortest_;           // characters in the shortest word
  Offset beginning_ = 0;      // characters in a beginning
  Offset longest_ = 0;        // and in the longest
  std::uint64_t lengths_ = 0;  // bit n: some word has n characters, or more
                               // than 62 for the last bit
  bool has_empty_word_;
};

class WordIndex::Replacements {
 public:
  explicit Replacements(const WordIndex& index)
      : found_(index.has_index() ? index.found_.data() : nullptr),
        words_(index.words_) {}

  Replacement operator[](std::int32_t place) const {
    if (found_ != nullptr) {
      return {found_[place].replacement, found_[place].replacement_length};
    }
    return {words_[place]->replacement, words_[place]->replacement_length};
  }
  void fetch(std::int32_t place) const {
    if (found_ != nullptr) __builtin_prefetch(found_ + place);
  }

 private:
  const Word* found_;
  const QuillWordEntry* const* words_;
};

inline WordIndex::Replacements WordIndex::replacements() const {
  return Replacements(*this);
}

}  // namespace quill
