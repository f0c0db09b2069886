#include "utf8/mask_table.h"

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

// Looks at all neighbours without leaving early, for the sake of vectors.
bool are_ascending(const std::int32_t* keys, std::int32_t count) {
  unsigned descents = 0;
  for (std::int32_t i = 1; i < count; ++i) {
    descents |= static_cast<unsigned>(keys[i - 1] > keys[i]);
  }
  return descents == 0;
}

}  // namespace

MaskTable::MaskTable(const Mask& mask, Offset byte_count)
    : mask_(mask), patience_(mask.count / 16 + 16) {
  if (mask_.is_identity()) {
    ascii_ = kAscii;
    ascii_limit_ = 128;
  } else if (byte_count >= kFewBytes) {
    fill_ascii();
  }
}

// From the end, so that of equal keys the first is written last.
void MaskTable::fill_ascii() {
  ascii_ = kAscii;
  ascii_limit_ = 128;
  const AsciiKeys place(mask_);
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
// happens to find.
void MaskTable::fill_longer() {
  for (std::size_t i = 0; i < two_bytes_.size(); ++i) {
    two_bytes_[i] =
        static_cast<std::int32_t>(0x80C0 | i >> 6 | (i & 0x3F) << 8);
  }
  filter_ = {};
  has_longer_ = true;
  const bool ascending = are_ascending(mask_.keys, mask_.count);
  const auto value_at = [&](std::int32_t i) {
    return ascending ? mask_.values[i] : mask_.map(mask_.keys[i]);
  };
  for (std::int32_t i = mask_.count; i-- > 0;) {
    const auto key = static_cast<std::uint32_t>(mask_.keys[i]);
    const std::uint32_t index = index_of(key);
    if (is_two_byte(key)) two_bytes_[index] = value_at(i);
    if (is_filtered(key))
      filter_[index >> 6] |= std::uint64_t{1} << (index & 63);
  }
}

std::int32_t MaskTable::map_by_bisection(std::int32_t character) {
  if (!mask_.is_identity() && patience_-- == 0) fill_longer();
  return mask_.map(character);
}

}  // namespace quill
