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

}  // namespace

MaskTable::MaskTable(const Mask& mask, Offset byte_count)
    : mask_(mask),
      all_patience_(patience(byte_count)),
      patience_(all_patience_) {
  if (mask_.is_identity()) {
    values_ = kAscii.data();
    count_ = 128;
    shift_.is_known = true;
  } else {
    prepare_ascii(byte_count);
  }
}

// False unless all keys of ASCII follow each other without a gap. What lies
// between the ends of an array in disorder may be anything.
bool MaskTable::use_values(Offset place, Offset count) {
  const std::int32_t* const keys = mask_.keys + place;
  const std::int32_t* const values = mask_.values + place;
  const auto first = static_cast<std::uint32_t>(keys[0]);
  const auto by = static_cast<std::uint32_t>(values[0]) - first;
  if (count > 0 && (first >= 128 || count > 128 - first)) return false;
  std::uint32_t gaps = 0;
  std::uint32_t differences = 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    gaps |= static_cast<std::uint32_t>(keys[i]) - first - i;
    differences |= static_cast<std::uint32_t>(values[i]) - first - i - by;
  }
  if (gaps != 0) return false;
  values_ = values;
  first_ = first;
  count_ = static_cast<std::uint32_t>(count);
  ascii_limit_ = 128;
  shift_ = {first_, count_, by, differences == 0};
  return true;
}

// The table is filled from the end, so that of equal keys the first is written
// last.
void MaskTable::prepare_ascii(Offset byte_count) {
  const AsciiKeys place(mask_);
  const bool uses_values = place.first < mask_.count &&
                           use_values(place.first, place.limit - place.first);
  if (byte_count < (uses_values ? kManyBytes : kFewBytes)) return;
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
    patience_ = all_patience_;  // for the other kind
    if (is_short) {
      fill_two_bytes();
    } else {
      fill_filter();
    }
  }
  return mask_.map(character);
}

}  // namespace quill
