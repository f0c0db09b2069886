#include "tests/models/reader_model.h"

namespace quill::model {
namespace {

unsigned byte_at(std::string_view text, std::int64_t at) {
  return static_cast<unsigned char>(text[static_cast<std::size_t>(at)]);
}

bool is_continuation(std::string_view text, std::int64_t at) {
  return byte_at(text, at) >= 0x80 && byte_at(text, at) <= 0xBF;
}

}  // namespace

Read next_character(std::string_view text, std::int64_t position,
                    std::int64_t end) {
  Read read{0, end, 0, false};
  if (position < 0 || position >= end) return read;
  while (is_continuation(text, position)) {
    if (++position == end) return read;
  }
  const unsigned lead = byte_at(text, position);
  const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  if (position + length > end) return read;
  std::uint32_t packed = 0;
  for (int i = 0; i < length; ++i) {
    packed |= byte_at(text, position + i) << (8 * i);
  }
  return {position, position + length, static_cast<std::int32_t>(packed), true};
}

Read containing_character(std::string_view text, std::int64_t position,
                          std::int64_t end) {
  if (position < 0 || position >= end) return {0, end, 0, false};
  std::int64_t lead = position;
  while (lead >= 0 && is_continuation(text, lead)) --lead;
  return next_character(text, lead >= 0 ? lead : position, end);
}

Read previous_character(std::string_view text, std::int64_t position,
                        std::int64_t end) {
  if (position > end || position < 1) return {0, end, 0, false};
  std::int64_t lead = position - 1;
  while (lead >= 0 && is_continuation(text, lead)) --lead;
  if (lead < 0) return {0, end, 0, false};
  return containing_character(text, lead, end);
}

std::int32_t map(const Longs& keys, const Longs& values,
                 std::int32_t character) {
  if (keys.empty()) return character;
  std::size_t low = 0;
  std::size_t high = keys.size() - 1;
  while (low < high) {
    const std::size_t middle = (low + high) / 2;
    if (character > keys[middle]) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return keys[low] == character ? values[low] : character;
}

}  // namespace quill::model
