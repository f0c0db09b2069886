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
      look_up(lead);
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
    const auto lead = static_cast<Byte>(0xC0 + i);
    if (pairs_[i] != 0 && !groups_.add(lead, pairs_[i], kAll)) look_up(lead);
  }
  for (unsigned i = 0; has_triples_ && i < 16; ++i) {
    const auto lead = static_cast<Byte>(0xE0 + i);
    if (leads_.contains(lead) && !group_pages(lead)) look_up(lead);
  }
  groups_.prepare();
}

// A group for all pages of the lead byte that have the same members. False when
// those are too many or unknown.
bool WideMembers::group_pages(Byte lead) {
  if (triples_.size() == 0) return false;
  const std::uint64_t* const pages = triples_.data() + page_of(lead, 0);
  std::uint64_t left = 0;
  for (int second = 0; second < 64; ++second) {
    if (pages[second] != 0) left |= std::uint64_t{1} << second;
  }
  while (left != 0) {
    const std::uint64_t thirds = pages[std::countr_zero(left)];
    std::uint64_t seconds = 0;
    for (int second = 0; second < 64; ++second) {
      if (pages[second] == thirds) seconds |= std::uint64_t{1} << second;
    }
    if (!groups_.add(lead, seconds, thirds)) return false;
    left &= ~seconds;
  }
  return true;
}

void WideMembers::look_up(Byte lead) {
  loose_leads_.add(lead);
  has_loose_leads_ = true;
}

void WideMembers::cover(const Byte* first, const Byte* last,
                        std::uint64_t* words) const {
  groups_.cover(first, last, words);
  if (has_loose_leads_) cover_loose(first, last, words);
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
