#include "edit/word_index.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <numeric>

#include "search/comparison.h"
#include "utf8/characters.h"

namespace quill {
namespace {

// With fewer than these, trying the words in order costs less than an index.
constexpr Offset kFewWords = 8;
constexpr Offset kFewSelections = 16;

constexpr std::int32_t kNowhere = -1;  // the place in a free slot
// Characters of a word by which most selections are ruled out. They fit one
// unit of a key.
constexpr Offset kMostBeginning = 4;

std::uint64_t extend_hash(std::uint64_t hash, std::int32_t character) {
  hash = (hash ^ static_cast<std::uint32_t>(character)) * 0xD6E8FEB86659FD93;
  return hash ^ hash >> 32;
}

// The hash of characters below 0x10000.
std::uint64_t hash_units(const std::array<std::uint64_t, 3>& units,
                         std::int32_t length) {
  std::uint64_t hash =
      units[0] * 0x9E3779B97F4A7C15 + units[1] * 0xC2B2AE3D27D4EB4F +
      units[2] * 0x165667B19E3779F9 + static_cast<std::uint32_t>(length);
  hash = (hash ^ hash >> 32) * 0xD6E8FEB86659FD93;
  return hash ^ hash >> 32;
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

// Reading is dearer than mapping, and most text is ASCII.
Character read_quickly(const MaskedSelection& in, Offset position) {
  if (position < in.end && in.text[position] < 0x80) {
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

// The characters of a word, or of a selection up to a point, one after the
// other. The hash is worked out when it is asked for, as long as the key has
// room for the characters.
class WordIndex::Beginning {
 public:
  void add(std::int32_t character) {
    const auto bits = static_cast<std::uint32_t>(character);
    if (fits_ && length_ < kMostUnits && bits <= 0xFFFF) {
      units_[static_cast<std::size_t>(length_) / 4] |= std::uint64_t{bits}
                                                       << (length_ % 4 * 16);
    } else {
      hash_ = extend_hash(hash(), character);
      fits_ = false;
    }
    ++length_;
  }

  // The same for the first four characters where they are ASCII and fit, with
  // no step waiting for the one before. Returns whether they are.
  bool add_four(const Byte* text, const std::int32_t* ascii) {
    const Byte any = text[0] | text[1] | text[2] | text[3];
    if (ascii == nullptr || any >= 0x80) return false;
    std::uint64_t units = 0;
    std::uint32_t all_bits = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      const auto bits = static_cast<std::uint32_t>(ascii[text[i]]);
      units |= std::uint64_t{bits} << (i * 16);
      all_bits |= bits;
    }
    if (all_bits > 0xFFFF) return false;
    units_[0] = units;
    length_ = 4;
    return true;
  }

  std::uint64_t hash() const {
    return fits_ ? hash_units(units_, length_) : hash_;
  }
  std::int32_t length() const { return length_; }

  // Whether the key tells it from all others.
  bool fits() const { return fits_; }

  Key key() const {
    if (fits_) return {units_, length_};
    return {{hash_, 0, 0}, ~length_};
  }

 private:
  static constexpr std::int32_t kMostUnits = 12;

  std::array<std::uint64_t, 3> units_{};
  std::uint64_t hash_ = 0;
  std::int32_t length_ = 0;
  bool fits_ = true;
};

WordIndex::WordIndex(const QuillWordEntry* const* words,
                     std::int32_t word_count, Offset selection_count)
    : words_(words),
      empty_word_(find_empty_word(words, word_count)),
      slots_(slots_for(empty_word_, selection_count)),
      endings_(slots_.size()),
      shortest_(kMaxLong),
      has_empty_word_(words != nullptr && empty_word_ < word_count) {
  if (!has_index()) return;
  std::fill_n(slots_.data(), slots_.size(), Slot{{}, kNowhere});
  std::fill_n(endings_.data(), endings_.size(), Endings{0});
  for (std::int32_t place = 0; place < empty_word_; ++place) {
    shortest_ = std::min<Offset>(shortest_, words_[place]->word_count);
  }
  beginning_ = std::min(shortest_, kMostBeginning);
  for (std::int32_t place = 0; place < empty_word_; ++place) insert(place);
}

// Of equal words only the first is kept.
void WordIndex::insert(std::int32_t place) {
  const QuillWordEntry& word = *words_[place];
  if (word.word == nullptr) return;
  Beginning beginning;
  for (std::int32_t i = 0; i < word.word_count; ++i) {
    beginning.add(word.word[i]);
    if (beginning.length() == beginning_) {
      Endings& endings = endings_after(beginning.hash());
      endings = static_cast<Endings>(
          endings | 1u << std::min<Offset>(word.word_count, kLongEnding));
    }
  }
  longest_ = std::max<Offset>(longest_, word.word_count);
  lengths_ |= length_bit(word.word_count);
  const Key key = beginning.key();
  const Offset last = slots_.size() - 1;
  Offset at = static_cast<Offset>(beginning.hash()) & last;
  for (; slots_[at].place != kNowhere; at = (at + 1) & last) {
    if (slots_[at].key == key &&
        (beginning.fits() || are_equal(*words_[slots_[at].place], word))) {
      return;
    }
  }
  slots_[at] = {key, place};
}

// The place of the word that the selection's beginning is, or that of the
// empty word.
std::int32_t WordIndex::probe(const Beginning& beginning,
                              const MaskedSelection& selection) const {
  const Key key = beginning.key();
  const Offset last = slots_.size() - 1;
  Offset at = static_cast<Offset>(beginning.hash()) & last;
  for (; slots_[at].place != kNowhere; at = (at + 1) & last) {
    if (slots_[at].key == key &&
        (beginning.fits() ||
         begins_with(selection, *words_[slots_[at].place]))) {
      return slots_[at].place;
    }
  }
  return empty_word_;
}

// Reads as many characters as every word has. False when there are fewer.
bool WordIndex::read_beginning(const MaskedSelection& selection,
                               Offset& position, Beginning& beginning) const {
  if (beginning_ == kMostBeginning &&
      beginning.add_four(selection.text + position, selection.mask.ascii())) {
    position += kMostBeginning;
    return true;
  }
  while (beginning.length() < beginning_) {
    const Character read = read_quickly(selection, position);
    if (!read.found) return false;
    position = read.next;
    beginning.add(selection.mask.map(read.packed));
  }
  return true;
}

std::int32_t WordIndex::look_up(const MaskedSelection& selection) const {
  std::int32_t first = empty_word_;
  // No character is shorter than a byte.
  if (selection.start < 0 || selection.text == nullptr ||
      selection.end - selection.start < shortest_) {
    return first;
  }
  Beginning beginning;
  Offset position = selection.start;
  if (!read_beginning(selection, position, beginning)) return first;
  unsigned endings = endings_after(beginning.hash());
  while (endings != 0) {
    const Offset length = beginning.length();
    const bool is_long = length >= kLongEnding;
    const unsigned bit = 1u << std::min(length, kLongEnding);
    if ((endings & bit) != 0 &&
        (!is_long || (lengths_ & length_bit(length)) != 0)) {
      first = std::min(first, probe(beginning, selection));
    }
    if (!is_long) endings &= ~bit;
    if (length >= longest_) break;
    const Character read = read_quickly(selection, position);
    if (!read.found) break;
    position = read.next;
    beginning.add(selection.mask.map(read.packed));
  }
  return first;
}

Offset WordIndex::sift(const Byte* text, Offset size,
                       std::span<const Selection> selections,
                       const MaskTable& mask, std::int32_t* numbers) const {
  const std::int32_t* const ascii = mask.ascii();
  const auto selection_count =
      static_cast<std::int32_t>(std::ssize(selections));
  if (!has_index() || has_empty_word_ || ascii == nullptr ||
      size < kMostBeginning) {
    std::iota(numbers, numbers + selection_count, 0);
    return selection_count;
  }
  const auto length = static_cast<std::int32_t>(beginning_);
  // What of the bytes read belongs to the beginning.
  const std::uint64_t in_units = ~std::uint64_t{0} >> (64 - 16 * length);
  const std::uint32_t in_bytes = ~std::uint32_t{0} >> (32 - 8 * length);
  std::int32_t count = 0;
  for (std::int32_t i = 0; i < selection_count; ++i) {
    const Selection& selection = selections[static_cast<std::size_t>(i)];
    const Offset at = std::min<Offset>(selection.start, size - kMostBeginning);
    std::array<Byte, kMostBeginning> bytes;
    std::memcpy(bytes.data(), text + at, bytes.size());
    std::uint32_t together;
    std::memcpy(&together, bytes.data(), sizeof together);
    std::uint64_t units = 0;
    std::uint32_t all_bits = 0;
    for (std::size_t k = 0; k < bytes.size(); ++k) {
      const auto bits = static_cast<std::uint32_t>(ascii[bytes[k] & 0x7F]);
      units |= std::uint64_t{bits} << (16 * k);
      all_bits |= bits;
    }
    const unsigned endings =
        endings_after(hash_units({units & in_units, 0, 0}, length));
    const unsigned fitting =
        (2u << std::min(selection.length(), kLongEnding)) - 1;
    const bool is_odd = (together & in_bytes & 0x80808080) != 0 ||
                        all_bits > 0xFFFF || at != selection.start;
    const bool may_match = ((endings & fitting) != 0) | is_odd;
    numbers[count] = i;
    count += may_match & (selection.length() >= length) ? 1 : 0;
  }
  return count;
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
      has_index() ? look_up(selection) : try_in_order(selection);
  return place < empty_word_ || has_empty_word_ ? words_[place] : nullptr;
}

}  // namespace quill
