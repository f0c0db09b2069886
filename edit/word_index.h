// The words of a word table, looked up by the text of a selection.
//
// A selection's word is the first in table order that its characters, each
// mapped, begin with. Every selection begins with a word of no characters, so
// the words after one are never found.
//
// Trying the words one after the other defines the answer. When many
// selections are to be looked up among many words, an index holds the words by
// a hash of their characters: a selection's hash grows character by character,
// and at each length that some word has, the index tells whether that prefix
// is one. Most selections are none: a filter on the first characters, as many
// as the shortest word has, tells so early. Without memory for the index the
// words are tried in order.
#pragma once

#include <array>

#include "blocks/base.h"
#include "blocks/scratch.h"
#include "quillcore.h"
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

 private:
  struct Slot {
    std::uint32_t tag;   // of the word's hash
    std::int32_t place;  // of the word in the table
  };

  // A selection's characters, mapped; as many as lookups keep.
  using Characters = std::array<std::int32_t, 32>;

  void insert(std::int32_t place);
  std::int32_t look_up(const MaskedSelection& selection) const;
  std::int32_t probe(std::uint64_t hash, Offset length,
                     const Characters& characters,
                     const MaskedSelection& selection) const;
  bool may_begin_word(std::uint64_t hash) const;
  std::int32_t try_in_order(const MaskedSelection& selection) const;

  const QuillWordEntry* const* words_;
  std::int32_t empty_word_;  // place of the first word of no characters, or
                             // the number of words; only those before it count
  Scratch<Slot> slots_;      // open addressing; of size 0 without an index
  Scratch<std::uint64_t> filter_;  // a bit for each hash of a beginning
  Offset shortest_;                // characters in the shortest word
  Offset longest_ = 0;             // and in the longest
  std::uint64_t lengths_ = 0;      // bit n: some word has n characters, or more
                                   // than 62 for the last bit
  bool has_empty_word_;
};

}  // namespace quill
