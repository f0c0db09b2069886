#include "pattern/wide_members.h"

#include <algorithm>
#include <bit>

#include "pattern/character_class.h"

namespace quill {
namespace {

// A range that pays for a table of three-byte characters, and its size in
// words: one for each lead byte and second byte.
constexpr Offset kTableRange = 16384;
constexpr Offset kTableWords = Offset{16} * 64;

constexpr std::uint64_t kAll = ~std::uint64_t{0};
constexpr Offset kWords = CharacterClass::kMostCovered / 64;

// Whether a packed character spells `length` bytes, the later ones all
// continuation bytes.
bool is_in_order(std::int32_t packed, Offset length) {
  for (int i = 1; i < 4; ++i) {
    const Byte byte = byte_of(packed, i);
    if (i < length ? !is_continuation(byte) : byte != 0) return false;
  }
  return true;
}

// ORs `from`, moved up by `bits` (1 to 3), into `words`.
void add_shifted(const std::uint64_t* from, Offset count, int bits,
                 std::uint64_t* words) {
  std::uint64_t carry = 0;
  for (Offset i = 0; i < count; ++i) {
    words[i] |= from[i] << bits | carry;
    carry = from[i] >> (64 - bits);
  }
}

}  // namespace

WideMembers::WideMembers(const QuillRangePart& part, Offset range_length)
    : part_(part), triples_(range_length >= kTableRange ? kTableWords : 0) {
  std::fill_n(triples_.data(), triples_.size(), 0);
  fill();
  form_groups();
}

void WideMembers::fill() {
  for (std::int32_t i = 0; i < part_.character_count; ++i) {
    const std::int32_t member = part_.characters[i];
    const Byte lead = byte_of(member, 0);
    if (lead < 0xC0) continue;
    leads_.add(lead);
    const Offset length = length_from_lead(lead);
    if (length == 4) {
      loose_leads_.add(lead);
      has_loose_leads_ = true;
      continue;
    }
    // Others can be members in malformed text only, and bisection knows them.
    if (!is_in_order(member, length)) continue;
    const Byte last = byte_of(member, length == 2 ? 1 : 2);
    const std::uint64_t bit = std::uint64_t{1} << (last & 63);
    if (length == 2) {
      pairs_[lead & 0x1F] |= bit;
    } else {
      has_triples_ = true;
      if (triples_.size() != 0) {
        triples_[page_of(lead, byte_of(member, 1))] |= bit;
      }
    }
  }
}

void WideMembers::form_groups() {
  for (unsigned i = 0; i < 32; ++i) {
    if (pairs_[i] != 0) group(static_cast<Byte>(0xC0 + i), pairs_[i], 2);
  }
  if (!has_triples_) return;
  for (unsigned i = 0; i < 16; ++i) {
    const auto lead = static_cast<Byte>(0xE0 + i);
    std::uint64_t seconds = 0;
    bool whole = triples_.size() != 0;
    for (unsigned second = 0; whole && second < 64; ++second) {
      const std::uint64_t page =
          triples_[page_of(lead, static_cast<Byte>(second))];
      whole = page == 0 || page == kAll;
      if (page != 0) seconds |= std::uint64_t{1} << second;
    }
    if (!whole) {
      loose_leads_.add(lead);
      has_loose_leads_ = true;
    } else if (seconds != 0) {
      group(lead, seconds, 3);
    }
  }
}

void WideMembers::group(Byte lead, std::uint64_t seconds, Offset length) {
  Group* const end = groups_ + group_count_;
  Group* const place = std::find_if(groups_, end, [&](const Group& known) {
    return known.seconds == seconds && known.length == length;
  });
  if (place == groups_ + kMostGroups) {
    loose_leads_.add(lead);
    has_loose_leads_ = true;
    return;
  }
  if (place == end) {
    ++group_count_;
    place->seconds = seconds;
    place->length = length;
    ByteSet second_bytes;
    for (unsigned second = 0; second < 64; ++second) {
      if (seconds >> second & 1) {
        second_bytes.add(static_cast<Byte>(0x80 + second));
      }
    }
    place->anchors[1] = Anchor(second_bytes, 1);
  }
  const auto bit = static_cast<Byte>(1u << (place - groups_));
  for (std::size_t second = 0; second < 64; ++second) {
    if ((seconds >> second & 1) != 0) rows_.seconds[second] |= bit;
  }
  rows_.leads[lead & 63] |= bit;
  place->leads.add(lead);
  place->anchors[0] = Anchor(place->leads, 0);
}

void WideMembers::cover(const Byte* first, const Byte* last,
                        std::uint64_t* words) const {
  if (group_count_ > 0 && covers_groups_at_once()) {
    cover_groups(rows_, first, last, words);
  } else {
    for (int i = 0; i < group_count_; ++i) {
      cover_group(groups_[i], first, last, words);
    }
  }
  if (has_loose_leads_) cover_loose(first, last, words);
}

void WideMembers::cover_group(const Group& group, const Byte* first,
                              const Byte* last, std::uint64_t* words) const {
  if (last - first < group.length) return;
  // No character that is in order begins at the last byte.
  std::uint64_t found[kWords];
  const Offset count = (last - 1 - first + 63) / 64;
  mark_anchored(first, last - 1, group.anchors, found);
  const Offset all = (last - first + 63) / 64;
  if (count < all) found[count] = 0;
  for (int i = 0; i < group.length; ++i) {
    if (i == 0) {
      for (Offset w = 0; w < all; ++w) words[w] |= found[w];
    } else {
      add_shifted(found, all, i, words);
    }
  }
}

void WideMembers::cover_loose(const Byte* first, const Byte* last,
                              std::uint64_t* words) const {
  std::uint64_t leads[kWords];
  mark_members(first, last, loose_leads_, leads);
  for (Offset w = 0; w < (last - first + 63) / 64; ++w) {
    for (std::uint64_t bits = leads[w]; bits != 0; bits &= bits - 1) {
      const Offset offset = w * 64 + std::countr_zero(bits);
      const Character read = read_next(first, offset, last - first);
      if (!contains(first + offset, read)) continue;
      for (Offset byte = offset; byte < read.next; ++byte) {
        words[byte / 64] |= std::uint64_t{1} << (byte % 64);
      }
    }
  }
}

}  // namespace quill
