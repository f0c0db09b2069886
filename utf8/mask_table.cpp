#include "utf8/mask_table.h"

#include "blocks/byte_scan.h"
#include "utf8/ascii_keys.h"

namespace quill {
namespace {

constexpr auto kAscii = [] {
  std::array<std::int32_t, 128> table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    table[i] = static_cast<std::int32_t>(i);
  }
  return table;
}();

// Bytes of text below which bisecting beats filling the ASCII table.
constexpr Offset kFewBytes = 8;

// Whether the keys ascend, so that what stands beside the first of equal ones
// is what they map to.
bool are_ascending(const Mask& mask) {
  return survey_pairs(mask.keys, mask.keys + mask.count, 0).ascends;
}

// Whether all keys of ASCII follow each other without a gap. What lies between
// the ends of an array in disorder may be anything.
bool follow_each_other(const AsciiKeys& place, const std::int32_t* keys) {
  std::int32_t expected = keys[place.first];
  for (Offset i = place.first; i < place.limit; ++i, ++expected) {
    if (keys[i] != expected || expected < 0 || expected >= 128) return false;
  }
  return true;
}

}  // namespace

MaskTable::MaskTable(const Mask& mask, Offset byte_count)
    : mask_(mask), patience_(patience()) {
  if (mask_.is_identity()) {
    values_ = kAscii.data();
    count_ = 128;
  } else {
    prepare_ascii(byte_count);
  }
}

// The table is filled from the end, so that of equal keys the first is written
// last.
void MaskTable::prepare_ascii(Offset byte_count) {
  const AsciiKeys place(mask_);
  if (byte_count < kManyBytes && place.first < mask_.count &&
      follow_each_other(place, mask_.keys)) {
    values_ = mask_.values + place.first;
    first_ = static_cast<std::uint32_t>(mask_.keys[place.first]);
    count_ = static_cast<std::uint32_t>(place.limit - place.first);
    ascii_limit_ = 128;
    return;
  }
  if (byte_count < kFewBytes) return;
  ascii_ = kAscii;
  values_ = ascii_.data();
  first_ = 0;
  count_ = 128;
  ascii_limit_ = 0;
  if (!place.are_ascending(mask_)) {
    for (std::size_t i = 0; i < ascii_.size(); ++i) {
      ascii_[i] = mask_.map(static_cast<std::int32_t>(i));
    }
    return;
  }
  for (Offset i = place.limit; i-- > place.first;) {
    const auto key = static_cast<std::uint32_t>(mask_.keys[i]);
    if (key < 128) ascii_[key] = mask_.values[i];
  }
}

// From the end as well; arrays that don't ascend give what the bisection
// happens to find. Those that do have the keys of two bytes in one stretch.
void MaskTable::fill_two_bytes() {
  has_two_bytes_ = true;
  two_bytes_ = {};
  const bool ascending = are_ascending(mask_);
  std::int32_t first = 0;
  std::int32_t limit = mask_.count;
  if (ascending) {
    first = find_long(mask_.keys, mask_.count, 0x80C0).index;
    limit = find_long(mask_.keys, mask_.count, 0x10000).index;
  }
  for (std::int32_t i = limit; i-- > first;) {
    const std::int32_t key = mask_.keys[i];
    const auto bits = static_cast<std::uint32_t>(key);
    if (!is_two_byte(bits)) continue;
    const std::int32_t value = ascending ? mask_.values[i] : mask_.map(key);
    two_bytes_[index_of(bits)] = key ^ value;
  }
}

void MaskTable::fill_filter() {
  has_filter_ = true;
  filter_ = {};
  for (std::int32_t i = 0; i < mask_.count; ++i) {
    const auto bits = static_cast<std::uint32_t>(mask_.keys[i]);
    if (!is_filtered(bits)) continue;
    const std::uint32_t index = index_of(bits);
    filter_[index >> 6] |= std::uint64_t{1} << (index & 63);
  }
}

std::int32_t MaskTable::map_by_bisection(std::int32_t character) {
  const bool is_short = is_two_byte(static_cast<std::uint32_t>(character));
  const bool is_prepared = is_short ? has_two_bytes_ : has_filter_;
  if (!is_prepared && !mask_.is_identity() && patience_-- == 0) {
    patience_ = patience();  // for the other kind
    if (is_short) {
      fill_two_bytes();
    } else {
      fill_filter();
    }
  }
  return mask_.map(character);
}

}  // namespace quill
