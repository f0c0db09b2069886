#include "edit/word_index.h"

#include <algorithm>
#include <bit>

#include "search/comparison.h"
#include "utf8/characters.h"

namespace quill {
namespace {

// With fewer than these, trying the words in order costs less than an index.
constexpr Offset kFewWords = 8;
constexpr Offset kFewSelections = 16;

constexpr std::int32_t kNowhere = -1;  // the place in a free slot
constexpr std::uint64_t kSeed = 0x9E3779B97F4A7C15;

std::uint64_t extend_hash(std::uint64_t hash, std::int32_t character) {
  hash = (hash ^ static_cast<std::uint32_t>(character)) * 0xD6E8FEB86659FD93;
  return hash ^ hash >> 32;
}

// Slots are chosen by the low bits.
std::uint32_t tag_of(std::uint64_t hash) {
  return static_cast<std::uint32_t>(hash >> 32);
}

std::uint64_t length_bit(Offset length) {
  return std::uint64_t{1} << std::min<Offset>(length, 63);
}

std::int32_t find_empty_word(const QuillWordEntry* const* words,
                             std::int32_t word_count) {
  if (words == nullptr || word_count <= 0) return 0;
  const auto* empty = std::find_if(
      words, words + word_count,
      [](const QuillWordEntry* entry) { return entry->word_count <= 0; });
  return static_cast<std::int32_t>(empty - words);
}

// At most half of the slots are taken.
Offset slots_for(std::int32_t word_count, Offset selection_count) {
  if (word_count < kFewWords || selection_count < kFewSelections) return 0;
  return static_cast<Offset>(
      std::bit_ceil(static_cast<std::uint64_t>(word_count) * 2));
}

// Sixteen bits or more for each word.
Offset filter_words_for(Offset slot_count) { return slot_count / 8; }

// Reading is dearer than mapping, and most text is ASCII.
Character read_quickly(const MaskedSelection& in, Offset position) {
  if (position < in.end && in.text != nullptr && in.text[position] < 0x80) {
    return {position, position + 1, in.text[position], true};
  }
  return read_next(in.text, position, in.end);
}

// A word that its host left null is no selection's beginning.
bool begins_with(const MaskedSelection& selection, const QuillWordEntry& word) {
  if (word.word == nullptr || selection.start < 0) return false;
  const CharPattern pattern{word.word, word.word_count, nullptr};
  return compare_characters(selection.text, selection.start, selection.end,
                            pattern, selection.mask)
      .equal;
}

bool are_equal(const QuillWordEntry& word, const QuillWordEntry& other) {
  return word.word_count == other.word_count &&
         std::equal(word.word, word.word + word.word_count, other.word);
}

}  // namespace

WordIndex::WordIndex(const QuillWordEntry* const* words,
                     std::int32_t word_count, Offset selection_count)
    : words_(words),
      empty_word_(find_empty_word(words, word_count)),
      slots_(slots_for(empty_word_, selection_count)),
      filter_(filter_words_for(slots_.size())),
      shortest_(kMaxLong),
      has_empty_word_(words != nullptr && empty_word_ < word_count) {
  if (slots_.size() == 0) return;
  std::fill_n(slots_.data(), slots_.size(), Slot{0, kNowhere});
  std::fill_n(filter_.data(), filter_.size(), 0);
  for (std::int32_t place = 0; place < empty_word_; ++place) {
    shortest_ = std::min<Offset>(shortest_, words_[place]->word_count);
  }
  for (std::int32_t place = 0; place < empty_word_; ++place) insert(place);
}

bool WordIndex::may_begin_word(std::uint64_t hash) const {
  if (filter_.size() == 0) return true;
  const std::uint64_t bit = hash >> 24;
  const Offset word = static_cast<Offset>(bit >> 6) & (filter_.size() - 1);
  return (filter_[word] >> (bit & 63) & 1) != 0;
}

// Of equal words only the first is kept.
void WordIndex::insert(std::int32_t place) {
  const QuillWordEntry& word = *words_[place];
  if (word.word == nullptr) return;
  std::uint64_t hash = kSeed;
  for (std::int32_t i = 0; i < word.word_count; ++i) {
    hash = extend_hash(hash, word.word[i]);
    if (i + 1 == shortest_ && filter_.size() != 0) {
      const std::uint64_t bit = hash >> 24;
      const Offset at = static_cast<Offset>(bit >> 6) & (filter_.size() - 1);
      filter_[at] |= std::uint64_t{1} << (bit & 63);
    }
  }
  longest_ = std::max<Offset>(longest_, word.word_count);
  lengths_ |= length_bit(word.word_count);
  const Offset last = slots_.size() - 1;
  Offset at = static_cast<Offset>(hash) & last;
  for (; slots_[at].place != kNowhere; at = (at + 1) & last) {
    if (slots_[at].tag == tag_of(hash) &&
        are_equal(*words_[slots_[at].place], word)) {
      return;
    }
  }
  slots_[at] = {tag_of(hash), place};
}

// The place of the word that is the selection's first `length` characters, or
// that of the empty word.
std::int32_t WordIndex::probe(std::uint64_t hash, Offset length,
                              const Characters& characters,
                              const MaskedSelection& selection) const {
  const Offset last = slots_.size() - 1;
  Offset at = static_cast<Offset>(hash) & last;
  for (; slots_[at].place != kNowhere; at = (at + 1) & last) {
    if (slots_[at].tag != tag_of(hash)) continue;
    const QuillWordEntry& word = *words_[slots_[at].place];
    if (word.word_count != length) continue;
    const bool equal =
        length <= std::ssize(characters)
            ? std::equal(word.word, word.word + length, characters.begin())
            : begins_with(selection, word);
    if (equal) return slots_[at].place;
  }
  return empty_word_;
}

std::int32_t WordIndex::look_up(const MaskedSelection& selection) const {
  std::int32_t first = empty_word_;
  // No character is shorter than a byte.
  if (selection.start < 0 || selection.end - selection.start < shortest_) {
    return first;
  }
  Characters characters;  // undefined beyond those read
  std::uint64_t hash = kSeed;
  Offset position = selection.start;
  for (Offset length = 1; length <= longest_; ++length) {
    const Character read = read_quickly(selection, position);
    if (!read.found) break;
    position = read.next;
    const std::int32_t mapped = selection.mask.map(read.packed);
    if (length <= std::ssize(characters)) {
      characters[static_cast<std::size_t>(length - 1)] = mapped;
    }
    hash = extend_hash(hash, mapped);
    if (length < shortest_) continue;
    if (length == shortest_ && !may_begin_word(hash)) break;
    if ((lengths_ & length_bit(length)) != 0) {
      first = std::min(first, probe(hash, length, characters, selection));
    }
  }
  return first;
}

std::int32_t WordIndex::try_in_order(const MaskedSelection& selection) const {
  std::int32_t place = 0;
  while (place < empty_word_ && !begins_with(selection, *words_[place])) {
    ++place;
  }
  return place;
}

const QuillWordEntry* WordIndex::find(const MaskedSelection& selection) const {
  const std::int32_t place =
      slots_.size() == 0 ? try_in_order(selection) : look_up(selection);
  return place < empty_word_ || has_empty_word_ ? words_[place] : nullptr;
}

}  // namespace quill
