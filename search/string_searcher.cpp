#include "search/string_searcher.h"

#include <algorithm>
#include <bit>

namespace quill {
namespace {

// A range below the first is searched without a filter; in a longer one so
// much goes by before the filter is prepared.
constexpr Offset kWorthFilter = 32'000;
constexpr Offset kPatience = 2'000;

// Places tried in vain before what the second character begins with is looked
// up in a mask.
constexpr int kFewTries = 8;

// Bytes to go then, of which it may save enough.
constexpr Offset kWorthSecond = 128;

constexpr auto kContinuations = [] {
  ByteSet set;
  set.add_range(0x80, 0xBF);
  return set;
}();

// Stands for every mask that maps nothing.
struct NoMask {
  static std::int32_t map(std::int32_t character) { return character; }
};
constexpr NoMask kNoMask;

}  // namespace

StringSearcher::StringSearcher(const StringQuery& query)
    : query_(query),
      breaks_(query.word.set),
      has_first_byte_(query.mask.count <= 0 && query.pattern.count >= 1 &&
                      query.pattern.elements != nullptr &&
                      query.pattern.is_fixed(0)),
      patience_(query.end - query.start < kWorthFilter ? kMaxLong : kPatience) {
}

// Calls `use` with the characters that map to an element, and perhaps more:
// looking a key up costs as much as trying one in the text.
template <class Use>
void StringSearcher::visit_near_sources(Offset index, Use use) const {
  const std::int32_t element = query_.pattern.elements[index];
  use(element);
  visit_keys(element, query_.mask, use);
}

// What the first character can begin with, which must be a fixed one.
[[gnu::noinline]] bool StringSearcher::knows_first() {
  if (!knows_first_ && query_.pattern.is_fixed(0)) {
    note_first();
    if (query_.mask.is_identity() || tried_ == kFewTries) note_second();
  }
  return knows_first_;
}

// The byte behind the lead counts where all have one.
void StringSearcher::note_first() {
  visit_near_sources(0, [this](std::int32_t character) {
    const Byte lead = byte_of(character, 0);
    first_leads_.add(lead);
    first_lengths_ |= 1U << length_from_lead(lead);
    second_bytes_.add(byte_of(character, 1));
  });
  if ((first_lengths_ & 1U << 1) == 0) second_at_ = 1;
  knows_first_ = true;
}

// Where the first character may be a single byte, what the second begins with
// counts instead, if its place is known: where the first has but one length.
[[gnu::noinline]] void StringSearcher::note_second() {
  const bool is_one = (first_lengths_ & (first_lengths_ - 1)) == 0;
  if (!knows_first_ || !is_one || second_at_ != 0 || query_.pattern.count < 2 ||
      !query_.pattern.is_fixed(1)) {
    return;
  }
  second_at_ = std::countr_zero(first_lengths_);
  second_bytes_ = kContinuations;
  visit_near_sources(1, [this](std::int32_t character) {
    second_bytes_.add(byte_of(character, 0));
  });
  marks_.clear();
}

// Marked by windows, since in a short text one call more counts.
[[gnu::noinline]] void StringSearcher::mark_window(Offset from) {
  const Offset end = std::min(from + marks_.kRoom, query_.end);
  const Byte* const last = query_.text + end;
  const bool is_ascii = find_non_ascii(query_.text + from, last) == last;
  if (!is_ascii || !mark_ascii(from, end)) mark_any(from, end);
}

// In ASCII; false where the pattern's place in it isn't known.
bool StringSearcher::mark_ascii(Offset from, Offset end) {
  if (!opening_) {
    const MaskTable::Shift& shift = mask_table().shift();
    if (!shift.is_known) return false;
    opening_ = find_opening(query_.pattern, shift);
  }
  const Offset reached = end == query_.end ? end : end - opening_->last;
  std::uint64_t* const words = marks_.open(from, reached);
  std::fill_n(words, marks_.kRoom / 64, 0);
  return mark_opening(query_.text + from, query_.text + end, *opening_, words);
}

void StringSearcher::mark_any(Offset from, Offset end) {
  const Byte* const text = query_.text;
  const bool starts_fixed = knows_first();
  std::uint64_t* const words = marks_.open(from, end);
  if (!starts_fixed) {
    std::fill_n(words, marks_.kRoom / 64, ~std::uint64_t{0});
    all_until_ = end;
    return;
  }
  mark_members(text + from, text + end, first_leads_, words);
  if (second_at_ == 0) return;
  std::uint64_t seconds[decltype(marks_)::kRoom / 64] = {};
  const Offset second = from + second_at_;
  const Offset last = std::min(end + second_at_, query_.end);
  if (second < last) {
    mark_members(text + second, text + last, second_bytes_, seconds);
  }
  for (Offset i = 0; i < (end - from + 63) / 64; ++i) {
    if (words[i] != 0) words[i] &= seconds[i];
  }
}

Offset StringSearcher::next_beginning(Offset from, Offset limit) {
  while (from < limit) {
    if (!marks_.covers(from)) mark_window(from);
    const Offset stop = std::min(limit, marks_.end());
    const Offset found = marks_.next(from, stop);
    if (found < stop) return found;
    from = stop;
  }
  return limit;
}

MaskTable& StringSearcher::mask_table() {
  if (!mask_table_.has_value()) {
    // Mapped are only the characters that come into question.
    mask_table_.emplace(query_.mask, (query_.end - query_.start) / 4);
  }
  return *mask_table_;
}

bool StringSearcher::matches_at(Offset position, Match& match) {
  const auto compare = [&](auto& mask) {
    return compare_characters(query_.text, position, query_.end, query_.pattern,
                              mask);
  };
  const Comparison compared =
      query_.mask.is_identity() ? compare(kNoMask) : compare(mask_table());
  if (!compared.equal) return false;
  match = {position, compared.next};
  return is_word(match);
}

bool StringSearcher::is_word(const Match& match) {
  const WordTest& word = query_.word;
  if (!word.set.is_given()) return word.accepts({1, 1});
  const auto test = [&](auto& mask) {
    return test_sides(query_.text, query_.end, match.start, match.end, mask,
                      breaks_, word.edge);
  };
  return word.accepts(query_.mask.is_identity() ? test(kNoMask)
                                                : test(mask_table()));
}

// Prepares the filter once patience has run out.
inline bool StringSearcher::filters_now() {
  if (filter_ || patience_ > 0) return filter_.has_value();
  prepare_filter();
  return true;
}

void StringSearcher::prepare_filter() {
  filter_.emplace().prepare(query_.text, query_.start, query_.end,
                            query_.pattern, query_.mask);
  const WordTest& word = query_.word;
  if (!word.set.is_given()) {
    if (word.accepts({1, 1})) filter_->decide(nullptr);
    return;
  }
  ByteSet sides;
  for (std::int32_t byte = 0; byte < 128; ++byte) {
    const unsigned char is_break =
        breaks_.contains(mask_table().map(byte)) ? 1 : 0;
    if (word.accepts({is_break, is_break})) sides.add(static_cast<Byte>(byte));
  }
  filter_->decide(&sides);
}

inline Offset StringSearcher::next_candidate(Offset from, Offset limit) {
  while (!filters_now()) {
    if (from < all_until_) {
      --patience_;
      return from;
    }
    const Offset stop = std::min(limit, from + patience_);
    const Offset found = next_beginning(from, stop);
    patience_ -= std::min(found + 1, stop) - from;
    if (found < stop || stop == limit) return found;
    from = stop;
  }
  return filter_->next(from, limit);
}

inline bool StringSearcher::begins_match(Offset position, Match& match) {
  if (filter_.has_value()) {
    match = {position, filter_->end_of_bytes(position)};
    if (match.end != position) return is_word(match);
  }
  return !is_continuation(query_.text[position]) && matches_at(position, match);
}

bool StringSearcher::next_match(Offset from, Offset limit, Match& match) {
  while (from < limit) {
    if (filter_.has_value() && filter_->has_decided(from)) {
      from = filter_->next_decided(from, limit);
      if (from < limit && filter_->has_decided(from)) {
        match = {from, from + filter_->decided_length()};
        return true;
      }
      continue;
    }
    from = next_candidate(from, limit);
    if (from < limit && begins_match(from, match)) return true;
    if (tried_ < kFewTries && ++tried_ == kFewTries &&
        limit - from > kWorthSecond) {
      note_second();
    }
    ++from;
  }
  return false;
}

Offset StringSearcher::previous_candidate(Offset from, Offset limit) {
  while (!filters_now()) {
    if (!knows_first()) {
      --patience_;
      return limit - 1;
    }
    const Offset stop = std::max(from, limit - patience_);
    const Byte* const text = query_.text;
    const Offset found =
        find_member_backward(text + stop, text + limit, first_leads_) - text;
    patience_ -= limit - (found < limit ? found : stop);
    if (found < limit) return found;
    if (stop == from) return from - 1;
    limit = stop;
  }
  return filter_->previous(from, limit);
}

// A comparison from a continuation byte reads what one from the next lead byte
// has read before, with the same character before it: it fails as that did.
// Only at offset 0 the side before the match is another, the text's edge.
bool StringSearcher::previous_match(Offset from, Offset limit, Match& match) {
  Offset position = limit;
  while ((position = previous_candidate(from, position)) >= from) {
    if (!is_continuation(query_.text[position]) &&
        matches_at(position, match)) {
      return true;
    }
    if (position == from) break;
  }
  return from == 0 && is_continuation(query_.text[0]) && matches_at(0, match);
}

}  // namespace quill
