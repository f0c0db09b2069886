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

// Characters of a word by which most selections are ruled out.
constexpr Offset kMostBeginning = 4;

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

bool are_equal(const QuillWordEntry& word, const QuillWordEntry& other) {
  return word.word_count == other.word_count &&
         std::equal(word.word, word.word + word.word_count, other.word);
}

// The bytes of a short word of ASCII; any bit beyond these in `all_bits`
// otherwise.
KeyBytes pack_ascii(const QuillWordEntry& word, std::uint32_t& all_bits) {
  std::array<std::uint64_t, 2> bytes{};
  for (std::int32_t i = 0; i < word.word_count; ++i) {
    const auto bits = static_cast<std::uint32_t>(word.word[i]);
    bytes[static_cast<std::size_t>(i >> 3)] |= std::uint64_t{bits}
                                               << (8 * (i & 7));
    all_bits |= bits;
  }
  return {bytes[0], bytes[1]};
}

// Four characters where they are ASCII and stay so, with no step waiting for
// the one before. False where they aren't.
bool read_four(const Byte* text, const std::int32_t* ascii,
               Beginning& beginning) {
  if (ascii == nullptr || (text[0] | text[1] | text[2] | text[3]) >= 0x80) {
    return false;
  }
  std::uint64_t bytes = 0;
  std::uint32_t all_bits = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const auto bits = static_cast<std::uint32_t>(ascii[text[i]]);
    bytes |= std::uint64_t{bits} << (8 * i);
    all_bits |= bits;
  }
  if (all_bits >= 0x80) return false;
  beginning = {{bytes, 0}, 4};
  return true;
}

}  // namespace

WordIndex::WordIndex(const QuillWordEntry* const* words,
                     std::int32_t word_count, Offset selection_count)
    : words_(words),
      empty_word_(find_empty_word(words, word_count)),
      slots_(slots_for(empty_word_, selection_count)),
      endings_(endings_for(slots_.size())),
      found_(slots_.size() == 0 ? 0 : Offset{empty_word_} + 1),
      shortest_(kMaxLong),
      has_empty_word_(words != nullptr && empty_word_ < word_count) {
  if (!has_index()) return;
  std::fill_n(slots_.data(), slots_.size(), Slot{0, kNowhere});
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
  if (has_empty_word_) found_[empty_word_] = describe(empty_word_, {});
}

WordIndex::Word WordIndex::describe(std::int32_t place,
                                    const WordKey& key) const {
  const QuillWordEntry& word = *words_[place];
  return {key.bytes, key.length, word.replacement_length, word.replacement};
}

// Returns all of the word.
Beginning WordIndex::note_ending(const QuillWordEntry& word) {
  const auto bit = 1u << std::min<Offset>(word.word_count, kLongEnding);
  const auto note = [&](std::uint64_t hash) {
    Endings& endings = endings_after(hash);
    endings = static_cast<Endings>(endings | bit);
  };
  std::uint32_t all_bits = 0;
  if (word.word_count <= KeyBytes::kCount) {
    const KeyBytes bytes = pack_ascii(word, all_bits);
    if (all_bits < 0x80) {
      note(hash_of(bytes & KeyBytes::first(beginning_),
                   static_cast<std::int32_t>(beginning_)));
      return {bytes, word.word_count};
    }
  }
  Beginning beginning;
  for (std::int32_t i = 0; i < word.word_count; ++i) {
    beginning.add(word.word[i]);
    if (beginning.length() == beginning_) note(beginning.hash());
  }
  return beginning;
}

// Of equal words only the first is kept.
void WordIndex::insert(std::int32_t place) {
  const QuillWordEntry& word = *words_[place];
  if (word.word == nullptr) return;
  const Beginning whole = note_ending(word);
  longest_ = std::max<Offset>(longest_, word.word_count);
  lengths_ |= length_bit(word.word_count);
  const WordKey key = whole.key();
  const std::uint64_t hash = whole.hash();
  found_[place] = describe(place, key);
  const Offset last = slots_.size() - 1;
  Offset at = slot_of(hash);
  for (; next_place(at, tag_of(hash)) != kNowhere; at = (at + 1) & last) {
    const std::int32_t other = slots_[at].place;
    if (found_[other].has(key) &&
        (key.holds_characters() || are_equal(*words_[other], word))) {
      return;
    }
  }
  slots_[at] = {tag_of(hash), place};
}

std::int32_t WordIndex::next_place(Offset& at, std::uint32_t tag) const {
  const Offset last = slots_.size() - 1;
  while (slots_[at].place != kNowhere && slots_[at].tag != tag) {
    at = (at + 1) & last;
  }
  return slots_[at].place;
}

bool WordIndex::is_wanted(std::int32_t place, const WordKey& wanted,
                          const MaskedSelection& selection) const {
  return found_[place].has(wanted) &&
         (wanted.holds_characters() || begins_with(selection, *words_[place]));
}

// The place of the word that is wanted, a beginning of the selection, or that
// of the empty word.
std::int32_t WordIndex::place_of(const WordKey& wanted, std::uint64_t hash,
                                 const MaskedSelection& selection) const {
  const Offset last = slots_.size() - 1;
  for (Offset at = slot_of(hash);; at = (at + 1) & last) {
    const std::int32_t place = next_place(at, tag_of(hash));
    if (place == kNowhere) return empty_word_;
    if (is_wanted(place, wanted, selection)) return place;
  }
}

// Reads as many characters as every word has. False when there are fewer.
bool WordIndex::read_beginning(const MaskedSelection& selection,
                               Offset& position, Beginning& beginning) const {
  if (beginning_ == kMostBeginning &&
      read_four(selection.text + position, selection.mask.ascii(), beginning)) {
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
    first =
        std::min(first, place_of(beginning.key(), beginning.hash(), selection));
  });
  return first;
}

// Looks up many selections: what is done for each is done for all of them
// before the next step. Most steps go without a branch: in text, which words
// are in a table can't be predicted.
class WordIndex::Lookup {
 public:
  Lookup(const WordIndex& index, const Byte* text, Offset size,
         std::span<const Selection> selections, WordMask& mask,
         std::int32_t* places)
      : index_(index),
        text_(text),
        size_(size),
        selections_(selections),
        mask_(mask),
        places_(places) {}

  void run() {
    gather();
    map();
    sift();
    ask_for_plain();
    for (std::size_t i = 0; i < other_count_; ++i) {
      const std::int32_t number = others_[i];
      index_.each_beginning(at(number), [&](const Beginning& beginning) {
        ask(beginning.key(), beginning.hash(), number);
      });
    }
    settle();
  }

 private:
  // A beginning of a selection that may be a word.
  struct Probe {
    WordKey wanted;
    std::int32_t number;  // of the selection
    std::uint64_t hash;
  };
  struct Candidate {
    std::int32_t probe;
    std::int32_t place;
  };

  MaskedSelection at(std::int32_t number) const {
    const Selection& at = selections_[static_cast<std::size_t>(number)];
    return {text_, at.start, at.end, mask_.table()};
  }

  // Tells plain selections, which begin with ASCII, from others, and leaves out
  // those that are shorter than every word.
  void gather() {
    const auto count = static_cast<std::int32_t>(std::ssize(selections_));
    std::size_t long_count = 0;
    for (std::int32_t i = 0; i < count; ++i) {
      numbers_[long_count] = i;
      long_count += static_cast<std::size_t>(
          selections_[static_cast<std::size_t>(i)].length() >=
          index_.shortest_);
    }
    const Offset last = size_ - KeyBytes::kCount;
    std::size_t plain_count = 0;
    std::size_t other_count = 0;
    for (std::size_t i = 0; i < long_count; ++i) {
      const std::int32_t number = numbers_[i];
      const Selection& selection =
          selections_[static_cast<std::size_t>(number)];
      const bool has_room = selection.start <= last;
      const KeyBytes bytes = has_room
                                 ? KeyBytes::load(text_ + selection.start) &
                                       KeyBytes::first(selection.length())
                                 : KeyBytes{};
      const bool is_plain = has_room && bytes.are_ascii();
      bytes_[plain_count] = bytes;
      endings_[plain_count] = static_cast<Endings>(up_to(selection.length()));
      numbers_[plain_count] = others_[other_count] = number;
      plain_count += static_cast<std::size_t>(is_plain);
      other_count += static_cast<std::size_t>(!is_plain);
    }
    plain_count_ = plain_count;
    other_count_ = other_count;
  }

  // Where the mask has longer characters for ASCII, no selection is plain.
  void map() {
    const auto size = static_cast<Offset>(plain_count_ * sizeof(KeyBytes));
    const MappedRun run = map_characters(
        mask_.ascii_map(), reinterpret_cast<const Byte*>(bytes_.data()), size,
        reinterpret_cast<char*>(mapped_.data()), size);
    if (run.bytes == size) return;
    std::copy_n(numbers_.data(), plain_count_, others_.data() + other_count_);
    other_count_ += plain_count_;
    plain_count_ = 0;
  }

  // Leaves the plain selections that may begin with a word. What lies behind
  // them in their bytes is not looked at any more.
  void sift() {
    const std::uint64_t in_beginning = KeyBytes::first(index_.beginning_).low;
    const auto length = static_cast<std::int32_t>(index_.beginning_);
    std::size_t plain_count = 0;
    std::size_t other_count = other_count_;
    for (std::size_t i = 0; i < plain_count_; ++i) {
      const KeyBytes bytes = mapped_[i];
      const unsigned endings =
          endings_[i] &
          index_.endings_after(hash_of({bytes.low & in_beginning, 0}, length));
      const bool is_plain =
          bytes.are_ascii() && endings >> WordIndex::kLongEnding == 0;
      mapped_[plain_count] = bytes;
      endings_[plain_count] = static_cast<Endings>(endings);
      numbers_[plain_count] = others_[other_count] = numbers_[i];
      plain_count += static_cast<std::size_t>(is_plain & (endings != 0));
      other_count += static_cast<std::size_t>(!is_plain);
    }
    plain_count_ = plain_count;
    other_count_ = other_count;
  }

  // One loop for all selections and lengths: how many lengths a selection has
  // can't be predicted.
  void ask_for_plain() {
    endings_[plain_count_] = 0;
    unsigned left = endings_[0];
    for (std::size_t i = 0; i < plain_count_;) {
      const auto length = std::countr_zero(left);
      const KeyBytes bytes = mapped_[i] & KeyBytes::first(length);
      ask({bytes, length}, hash_of(bytes, length), numbers_[i]);
      const unsigned next = endings_[i + 1];
      left &= left - 1;
      const bool is_last = left == 0;
      left = is_last ? next : left;
      i += static_cast<std::size_t>(is_last);
    }
  }

  void ask(const WordKey& wanted, std::uint64_t hash, std::int32_t number) {
    if (probe_count_ == probes_.size()) settle();
    __builtin_prefetch(&index_.slots_[index_.slot_of(hash)]);
    probes_[probe_count_++] = {wanted, number, hash};
  }

  // Once the slots have come.
  void settle() {
    std::array<Candidate, kAtOnce> candidates;
    std::size_t count = 0;
    for (std::size_t i = 0; i < probe_count_; ++i) {
      const std::uint64_t hash = probes_[i].hash;
      Offset slot = index_.slot_of(hash);
      const std::int32_t place = index_.next_place(slot, tag_of(hash));
      __builtin_prefetch(index_.found_.data() + std::max(place, 0));
      candidates[count] = {static_cast<std::int32_t>(i), place};
      count += static_cast<std::size_t>(place != kNowhere);
    }
    for (const Candidate& it : std::span(candidates).first(count)) {
      const Probe& probe = probes_[static_cast<std::size_t>(it.probe)];
      std::int32_t place = it.place;
      if (!index_.found_[place].has(probe.wanted) ||
          !probe.wanted.holds_characters()) {
        place = index_.place_of(probe.wanted, probe.hash, at(probe.number));
      }
      std::int32_t& first = places_[probe.number];
      first = std::min(first, place);
    }
    probe_count_ = 0;
  }

  const WordIndex& index_;
  const Byte* text_;
  Offset size_;
  std::span<const Selection> selections_;
  WordMask& mask_;
  std::int32_t* places_;

  // Of the plain selections.
  std::array<std::int32_t, kAtOnce> numbers_;
  alignas(64) std::array<KeyBytes, kAtOnce> bytes_;
  alignas(64) std::array<KeyBytes, kAtOnce> mapped_;
  std::array<Endings, kAtOnce + 1> endings_;
  std::size_t plain_count_ = 0;
  // The numbers of others.
  std::array<std::int32_t, kAtOnce> others_;
  std::size_t other_count_ = 0;
  // Those whose slots are on their way.
  std::array<Probe, kAtOnce> probes_;
  std::size_t probe_count_ = 0;
};

void WordIndex::find_all(const Byte* text, Offset size,
                         std::span<const Selection> selections, WordMask& mask,
                         std::int32_t* places) const {
  if (!has_index()) {
    for (const Selection& selection : selections) {
      *places++ =
          try_in_order({text, selection.start, selection.end, mask.table()});
    }
    return;
  }
  std::fill_n(places, selections.size(), empty_word_);
  Lookup(*this, text, size, selections, mask, places).run();
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
  return is_word(place) ? words_[place] : nullptr;
}

}  // namespace quill
