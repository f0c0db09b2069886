#include "pattern/member_groups.h"

#include <algorithm>

#include "pattern/character_class.h"

namespace quill {
namespace {

// The bytes from `first` on whose bits are set.
ByteSet bytes_of(std::uint64_t bits, unsigned first) {
  ByteSet bytes;
  for (; bits != 0; bits &= bits - 1) {
    const auto bit = static_cast<unsigned>(std::countr_zero(bits));
    bytes.add(static_cast<Byte>(first + bit));
  }
  return bytes;
}

// ORs `from`, moved up by `bits` (0 to 3), into `words`.
void add_shifted(const std::uint64_t* from, Offset count, int bits,
                 std::uint64_t* words) {
  std::uint64_t before = 0;
  for (Offset i = 0; i < count; ++i) {
    words[i] |= from[i] << bits | before >> 1 >> (63 - bits);
    before = from[i];
  }
}

}  // namespace

bool MemberGroups::add(Byte lead, std::uint64_t seconds, std::uint64_t thirds) {
  const std::uint64_t bit = std::uint64_t{1} << (lead & 63);
  Group* const end = groups_ + count_;
  Group* const place = std::find_if(groups_, end, [&](const Group& known) {
    return known.seconds == seconds && known.thirds == thirds &&
           known.are_pairs() == (lead < 0xE0);
  });
  if (place == groups_ + GroupRows::kMostGroups) return false;
  if (place == end) {
    *place = {0, seconds, thirds};
    ++count_;
  }
  place->leads |= bit;
  return true;
}

void MemberGroups::prepare() {
  for (int i = 0; i < count_; ++i) {
    const Group& group = groups_[i];
    if (covers_groups_at_once()) {
      rows_.add(i, group.leads, group.seconds, group.thirds);
    } else {
      tests_.emplace_back(group);
    }
  }
}

MemberGroups::Tests::Tests(const Group& group)
    : anchors{Anchor(bytes_of(group.leads, 0xC0), 0),
              Anchor(bytes_of(group.seconds, 0x80), 1),
              Anchor(bytes_of(group.thirds, 0x80), 2)},
      count(~group.thirds == 0 ? 2 : 3) {}

void MemberGroups::cover(const Byte* first, const Byte* last,
                         std::uint64_t* words) const {
  if (count_ == 0) return;
  if (covers_groups_at_once()) {
    cover_groups(rows_, first, last, words);
    return;
  }
  constexpr Offset kWords = CharacterClass::kMostCovered / 64;
  const Offset word_count = (last - first + 63) / 64;
  for (int i = 0; i < count_; ++i) {
    // No member begins so late that a test would read beyond the range.
    const std::span<const Anchor> tests(tests_[i].anchors, tests_[i].count);
    const Offset size = last - first - std::ssize(tests) + 1;
    if (size <= 0) continue;
    std::uint64_t found[kWords];
    const Offset found_count = (size + 63) / 64;
    mark_anchored(first, first + size, tests, found);
    std::fill(found + found_count, found + word_count, 0);
    for (int byte = 0; byte < (groups_[i].are_pairs() ? 2 : 3); ++byte) {
      add_shifted(found, word_count, byte, words);
    }
  }
}

}  // namespace quill
