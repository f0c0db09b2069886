#include "edit/word_index.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "search/comparison.h"
#include "utf8/characters.h"

namespace quill {
namespace {

// With fewer than these, trying the words in order costs less than an index.
constexpr Offset kFewWords = 8;
constexpr Offset kFewSelections = 16;

// How many words ahead memory is asked for.
constexpr std::int32_t kAhead = 8;

constexpr std::int32_t kNowhere = -1;  // the place in a free slot
// Characters of a word by which most selections are ruled out. They fit one
// unit of a key.
constexpr Offset kMostBeginning = 4;

// Characters for which a key has room.
constexpr std::int32_t kMostUnits = 12;

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

// Many for each word, so that few beginnings share one, as long as they fit the
// nearest caches.
Offset endings_for(Offset slot_count) {
  constexpr Offset kNear = 1 << 14;
  return std::max(slot_count / 2, std::min(8 * slot_count, kNear));
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

// Four ASCII characters, mapped and packed into a unit, with no step waiting
// for the one before. Sets bits beyond 0xFFFF in `all_bits` when they don't
// fit.
std::uint64_t pack_four(const Byte* text, const std::int32_t* ascii,
                        std::uint32_t& all_bits) {
  std::uint64_t units = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const auto bits = static_cast<std::uint32_t>(ascii[text[i] & 0x7F]);
    units |= std::uint64_t{bits} << (i * 16);
    all_bits |= bits;
  }
  return units;
}

// The first bytes of eight, none for a negative count.
std::uint64_t first_bytes(Offset count) {
  if (count <= 0) return 0;
  return ~std::uint64_t{0} >> (64 - 8 * std::min<Offset>(count, 8));
}

// The part of a unit that holds its first `count` characters.
std::uint64_t first_in_unit(Offset count) { return first_bytes(count * 2); }

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
    std::uint32_t all_bits = 0;
    const std::uint64_t units = pack_four(text, ascii, all_bits);
    if (all_bits > 0xFFFF) return false;
    units_[0] = units;
    length_ = 4;
    return true;
  }

  std::uint64_t hash() const {
    return fits_ ? hash_units(units_, length_) : hash_;
  }
  std::int32_t length() const { return length_; }

  Slot slot(std::int32_t place) const {
    if (fits_) return {units_, length_, place};
    return {{hash_, 0, 0}, ~length_, place};
  }

 private:
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
      endings_(endings_for(slots_.size())),
      shortest_(kMaxLong),
      has_empty_word_(words != nullptr && empty_word_ < word_count) {
  if (!has_index()) return;
  std::fill_n(slots_.data(), slots_.size(), Slot{{}, 0, kNowhere});
  std::fill_n(endings_.data(), endings_.size(), Endings{0});
  for (std::int32_t place = 0; place < empty_word_; ++place) {
    shortest_ = std::min<Offset>(shortest_, words_[place]->word_count);
  }
  beginning_ = std::min(shortest_, kMostBeginning);
  for (std::int32_t place = 0; place < empty_word_; ++place) {
    if (place + 2 * kAhead < empty_word_) {
      __builtin_prefetch(words_[place + 2 * kAhead]);
      __builtin_prefetch(words_[place + kAhead]->word);
    }
    insert(place);
  }
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
  const Slot added = beginning.slot(place);
  const Offset last = slots_.size() - 1;
  Offset at = slot_of(beginning.hash());
  for (; slots_[at].place != kNowhere; at = (at + 1) & last) {
    if (slots_[at].has_key_of(added) &&
        (added.holds_characters() ||
         are_equal(*words_[slots_[at].place], word))) {
      return;
    }
  }
  slots_[at] = added;
}

// The place of the word that is wanted, a beginning of the selection, or that
// of the empty word.
std::int32_t WordIndex::place_of(const Slot& wanted, std::uint64_t hash,
                                 const MaskedSelection& selection) const {
  const Offset last = slots_.size() - 1;
  Offset at = slot_of(hash);
  for (; slots_[at].place != kNowhere; at = (at + 1) & last) {
    if (slots_[at].has_key_of(wanted) &&
        (wanted.holds_characters() ||
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

// Hands over the selection's beginnings that are as long as a word that begins
// with the same characters.
template <class Use>
void WordIndex::each_beginning(const MaskedSelection& selection,
                               Use use) const {
  // No character is shorter than a byte.
  if (selection.start < 0 || selection.text == nullptr ||
      selection.end - selection.start < shortest_) {
    return;
  }
  Beginning beginning;
  Offset position = selection.start;
  if (!read_beginning(selection, position, beginning)) return;
  unsigned endings =
      endings_after(beginning.hash()) & up_to(selection.end - selection.start);
  while (endings != 0) {
    const Offset length = beginning.length();
    const bool is_long = length >= kLongEnding;
    const unsigned bit = 1u << std::min(length, kLongEnding);
    if ((endings & bit) != 0 &&
        (!is_long || (lengths_ & length_bit(length)) != 0)) {
      use(beginning);
    }
    if (!is_long) endings &= ~bit;
    if (length >= longest_) break;
    const Character read = read_quickly(selection, position);
    if (!read.found) break;
    position = read.next;
    beginning.add(selection.mask.map(read.packed));
  }
}

std::int32_t WordIndex::look_up(const MaskedSelection& selection) const {
  std::int32_t first = empty_word_;
  each_beginning(selection, [&](const Beginning& beginning) {
    first = std::min(
        first, place_of(beginning.slot(kNowhere), beginning.hash(), selection));
  });
  return first;
}

Offset WordIndex::sift(const Byte* text, Offset size,
                       std::span<const Selection> selections, MaskTable& mask,
                       Sifted* sifted) const {
  const std::int32_t* const ascii = mask.ascii();
  const auto selection_count =
      static_cast<std::int32_t>(std::ssize(selections));
  if (ascii == nullptr || size < kMostBeginning) {
    for (std::int32_t i = 0; i < selection_count; ++i) sifted[i] = {i, 0};
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
    std::uint32_t all_bits = 0;
    const std::uint64_t units = pack_four(bytes.data(), ascii, all_bits);
    const unsigned endings =
        endings_after(hash_units({units & in_units, 0, 0}, length)) &
        up_to(selection.length());
    const bool is_odd = (together & in_bytes & 0x80808080) != 0 ||
                        all_bits > 0xFFFF || at != selection.start;
    const bool may_match = is_odd || endings != 0;
    sifted[count] = {i, static_cast<Endings>(is_odd ? 0 : endings)};
    const bool is_long_enough = selection.length() >= length;
    count += static_cast<int>(may_match) & static_cast<int>(is_long_enough);
  }
  return count;
}

// Hands over the keys of the beginnings that may be words, where the text that
// they are made of, `room` bytes at the most, is ASCII and fits a key. False,
// with none handed over, where it isn't.
template <class Use>
bool WordIndex::each_plain_beginning(const Byte* text, Offset room,
                                     const std::int32_t* ascii, Endings endings,
                                     Use use) const {
  const Offset longest = std::bit_width(endings) - 1;
  if (longest < 0 || longest > kMostUnits || room < kMostUnits) return false;
  std::array<std::uint64_t, 3> units{};
  std::uint32_t all_bits = 0;
  std::uint64_t bytes;
  std::uint32_t more_bytes;
  std::memcpy(&bytes, text, sizeof bytes);
  std::memcpy(&more_bytes, text + sizeof bytes, sizeof more_bytes);
  for (std::size_t unit = 0; unit < 3; ++unit) {
    units[unit] = pack_four(text + 4 * unit, ascii, all_bits);
  }
  const std::uint64_t not_ascii = ((bytes & first_bytes(longest)) |
                                   (more_bytes & first_bytes(longest - 8))) &
                                  0x8080808080808080;
  if (not_ascii != 0 || all_bits > 0xFFFF) return false;
  for (unsigned left = endings; left != 0; left &= left - 1) {
    const auto length = std::countr_zero(left);
    use(Slot{
        {units[0] & first_in_unit(length), units[1] & first_in_unit(length - 4),
         units[2] & first_in_unit(length - 8)},
        length,
        kNowhere});
  }
  return true;
}

void WordIndex::look_up_all(const Byte* text, Offset size,
                            std::span<const Selection> selections,
                            MaskTable& mask, std::int32_t* places) const {
  std::array<Sifted, kAtOnce> sifted;
  const Offset sifted_count = sift(text, size, selections, mask, sifted.data());
  const auto selection_of = [&](std::int32_t number) -> MaskedSelection {
    const Selection& at = selections[static_cast<std::size_t>(number)];
    return {text, at.start, at.end, mask};
  };
  std::array<Probe, kAtOnce> probes;  // whose slots are on their way
  std::size_t probe_count = 0;
  const auto settle = [&] {
    for (const Probe& probe : std::span(probes).first(probe_count)) {
      std::int32_t& place = places[probe.number];
      place = std::min(place, place_of(probe.wanted, probe.hash,
                                       selection_of(probe.number)));
      __builtin_prefetch(words_ + place);
    }
    probe_count = 0;
  };
  const auto ask = [&](const Slot& wanted, std::uint64_t hash,
                       std::int32_t number) {
    if (probe_count == probes.size()) settle();
    __builtin_prefetch(&slots_[slot_of(hash)]);
    probes[probe_count++] = {wanted, hash, number};
  };
  const auto count = static_cast<std::size_t>(sifted_count);
  for (const auto& [number, endings] : std::span(sifted).first(count)) {
    const MaskedSelection selection = selection_of(number);
    if (each_plain_beginning(
            text + selection.start, size - selection.start, mask.ascii(),
            endings, [&, number = number](const Slot& wanted) {
              ask(wanted, hash_units(wanted.units, wanted.length), number);
            })) {
      continue;
    }
    each_beginning(selection, [&, number = number](const Beginning& beginning) {
      ask(beginning.slot(kNowhere), beginning.hash(), number);
    });
  }
  settle();
}

void WordIndex::find_all(const Byte* text, Offset size,
                         std::span<const Selection> selections, MaskTable& mask,
                         const QuillWordEntry** found) const {
  if (!has_index()) {
    for (const Selection& selection : selections) {
      *found++ = find({text, selection.start, selection.end, mask});
    }
    return;
  }
  std::array<std::int32_t, kAtOnce> places;
  std::fill_n(places.data(), selections.size(), empty_word_);
  look_up_all(text, size, selections, mask, places.data());
  for (std::size_t i = 0; i < selections.size(); ++i) {
    const bool any = places[i] < empty_word_ || has_empty_word_;
    found[i] = any ? words_[places[i]] : nullptr;
    __builtin_prefetch(found[i]);
  }
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
