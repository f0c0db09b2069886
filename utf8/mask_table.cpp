#include "utf8/mask_table.h"

namespace quill {
namespace {

constexpr auto kAscii = [] {
  std::array<std::int32_t, 128> table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    table[i] = static_cast<std::int32_t>(i);
  }
  return table;
}();

// Bytes of text below which bisecting beats filling the ASCII table, which
// costs a look at every key.
constexpr Offset kFewBytes = 8;
constexpr Offset kKeysPerByte = 32;

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
  } else if (byte_count >= kFewBytes &&
             mask_.count <= byte_count * kKeysPerByte) {
    fill_ascii();
  }
}

// Of equal ascending keys the first counts; other arrays give what the
// bisection happens to find.
std::int32_t MaskTable::value_at(std::int32_t index) const {
  return ascending_ ? mask_.values[index] : mask_.map(mask_.keys[index]);
}

// The ASCII keys of an ascending array are one stretch. Filled from its end,
// so that the first of equal keys is written last.
void MaskTable::fill_ascii() {
  ascii_ = kAscii;
  ascii_limit_ = 128;
  ascending_ = are_ascending(mask_.keys, mask_.count);
  std::int32_t first = 0;
  std::int32_t limit = mask_.count;
  if (ascending_) {
    first = find_long(mask_.keys, mask_.count, 0).index;
    limit = find_long(mask_.keys, mask_.count, 128).index;
  }
  for (std::int32_t i = limit; i-- > first;) {
    const auto key = static_cast<std::uint32_t>(mask_.keys[i]);
    if (key < 128) ascii_[key] = value_at(i);
  }
}

void MaskTable::fill_longer() {
  for (std::size_t i = 0; i < two_bytes_.size(); ++i) {
    two_bytes_[i] =
        static_cast<std::int32_t>(0x80C0 | i >> 6 | (i & 0x3F) << 8);
  }
  filter_ = {};
  has_longer_ = true;
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
