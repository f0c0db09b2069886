// The words of a word table, looked up by the text of a selection.
//
// A selection's word is the first in table order that its characters, each
// mapped, begin with. Every selection begins with a word of no characters, so
// the words after one are never found.
//
// Trying the words one after the other defines the answer. When many
// selections are to be looked up among many words, an index holds the words by
// a hash of their characters. Another table tells, by a hash of a selection's
// first few characters, how long the words are that begin so: mostly there are
// none, or none as short as the selection, and otherwise only the beginnings of
// these lengths are looked up. Without memory for the index the words are tried
// in order.
#pragma once

#include <algorithm>
#include <array>
#include <span>

#include "blocks/base.h"
#include "blocks/scratch.h"
#include "quillcore.h"
#include "selection/selection_list.h"
#include "utf8/mask_table.h"

namespace quill {

// The text of a selection, every character mapped as it is read.
struct MaskedSelection {
  const Byte* text;
  Offset start;
  Offset end;
  MaskTable& mask;
};

class WordIndex {
 public:
  // `selection_count`: how many selections will be looked up.
  WordIndex(const QuillWordEntry* const* words, std::int32_t word_count,
            Offset selection_count);

  // Null when the selection begins with no word of the table.
  const QuillWordEntry* find(const MaskedSelection& selection) const;

  // The same for many selections, which lie within the `size` bytes of the
  // text, at most kAtOnce: writes a word or null for each. What one of them
  // waits for comes from memory while others are dealt with.
  static constexpr std::size_t kAtOnce = 256;
  void find_all(const Byte* text, Offset size,
                std::span<const Selection> selections, MaskTable& mask,
                const QuillWordEntry** found) const;

 private:
  // What words are found by: up to 12 characters below 0x10000 themselves, or
  // the hash of other words, which are then compared as well.
  struct Slot {
    std::array<std::uint64_t, 3> units;  // four characters in each
    std::int32_t length;                 // in characters; ~length for a hash
    std::int32_t place;                  // of the word in the table

    bool has_key_of(const Slot& other) const {
      return ((units[0] ^ other.units[0]) | (units[1] ^ other.units[1]) |
              (units[2] ^ other.units[2]) |
              static_cast<std::uint32_t>(length ^ other.length)) == 0;
    }
    bool holds_characters() const { return length >= 0; }
  };

  // A beginning of a selection that may be a word.
  struct Probe {
    Slot wanted;
    std::uint64_t hash;
    std::int32_t number;  // of the selection
  };

  class Beginning;

  // The lengths of words, in characters. Bit n: n of them, or that many and
  // more for the last bit.
  using Endings = std::uint16_t;
  static constexpr Offset kLongEnding = 15;
  // A selection that can begin with a word.
  struct Sifted {
    std::int32_t number;
    Endings endings;  // the lengths of such words; 0 where they aren't known
  };

  // The lengths that a selection of `length` characters has room for.
  static unsigned up_to(Offset length) {
    return (2u << std::clamp<Offset>(length, 0, kLongEnding)) - 1;
  }

  void insert(std::int32_t place);
  std::int32_t look_up(const MaskedSelection& selection) const;
  template <class Use>
  void each_beginning(const MaskedSelection& selection, Use use) const;
  std::int32_t place_of(const Slot& wanted, std::uint64_t hash,
                        const MaskedSelection& selection) const;

  // Writes those of the selections that can begin with a word, in order, and
  // returns how many. Goes without a branch: in text, which words are in a
  // table can't be predicted.
  Offset sift(const Byte* text, Offset size,
              std::span<const Selection> selections, MaskTable& mask,
              Sifted* sifted) const;
  template <class Use>
  bool each_plain_beginning(const Byte* text, Offset room,
                            const std::int32_t* ascii, Endings endings,
                            Use use) const;
  void look_up_all(const Byte* text, Offset size,
                   std::span<const Selection> selections, MaskTable& mask,
                   std::int32_t* places) const;
  bool read_beginning(const MaskedSelection& selection, Offset& position,
                      Beginning& beginning) const;
  Offset slot_of(std::uint64_t hash) const {
    return static_cast<Offset>(hash) & (slots_.size() - 1);
  }
  bool has_index() const { return slots_.size() != 0 && endings_.size() != 0; }
  Endings& endings_after(std::uint64_t hash) const {
    return endings_[static_cast<Offset>(hash >> 24) & (endings_.size() - 1)];
  }
  std::int32_t try_in_order(const MaskedSelection& selection) const;

  const QuillWordEntry* const* words_;
  std::int32_t empty_word_;   // place of the first word of no characters, or
                              // the number of words; only those before it count
  Scratch<Slot> slots_;       // open addressing; of size 0 without an index
  Scratch<Endings> endings_;  // by the hash of a word's beginning
  Offset shortest_;           // characters in the shortest word
  Offset beginning_ = 0;      // characters in a beginning
  Offset longest_ = 0;        // and in the longest
  std::uint64_t lengths_ = 0;  // bit n: some word has n characters, or more
                               // than 62 for the last bit
  bool has_empty_word_;
};

}  // namespace quill
