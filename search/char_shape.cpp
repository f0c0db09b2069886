#include "search/char_shape.h"

namespace quill {
namespace {

// Whether a reader can ever deliver this long: it begins with a lead byte, and
// nothing lies beyond the length that this announces.
bool is_readable(std::int32_t character, Offset length) {
  if (is_continuation(byte_of(character, 0))) return false;
  const auto bits = static_cast<std::uint32_t>(character);
  return length == 4 || bits >> (8 * length) == 0;
}

bool is_in_order(std::int32_t character, Offset length) {
  for (int i = 1; i < length; ++i) {
    if (!is_continuation(byte_of(character, i))) return false;
  }
  return true;
}

ByteSet range(Byte low, Byte high) {
  ByteSet set;
  set.add_range(low, high);
  return set;
}

CharShape any_character(const ByteSet& trailing) {
  CharShape shape;
  shape.has_length = {false, true, true, true, true};
  shape.bytes[1][0] = range(0x00, 0x7F);
  shape.bytes[2][0] = range(0xC0, 0xDF);
  shape.bytes[3][0] = range(0xE0, 0xEF);
  shape.bytes[4][0] = range(0xF0, 0xFF);
  for (std::size_t length = 2; length <= 4; ++length) {
    for (std::size_t i = 1; i < length; ++i) shape.bytes[length][i] = trailing;
  }
  return shape;
}

}  // namespace

// Called once a key: speed is nothing here, and size is.
[[gnu::noinline]] void CharShape::add(std::int32_t character, Offset length) {
  const auto l = static_cast<std::size_t>(length);
  has_length[l] = true;
  for (std::size_t i = 0; i < l; ++i) {
    bytes[l][i].add(byte_of(character, static_cast<int>(i)));
  }
}

void CharShapes::add(std::int32_t character) {
  const Offset length = length_from_lead(byte_of(character, 0));
  if (!is_readable(character, length)) return;
  const bool has_order = is_in_order(character, length);
  count += count == 0 || character != last_added ? 1 : 0;
  last_added = character;
  anywhere.add(character, length);
  if (has_order) {
    in_order.add(character, length);
  } else {
    all_in_order = false;
  }
}

CharShapes fixed_shapes(std::int32_t element, const Mask& mask) {
  CharShapes shapes;
  visit_sources(element, mask,
                [&shapes](std::int32_t character) { shapes.add(character); });
  return shapes;
}

const CharShapes& open_shapes() {
  static const CharShapes shapes = {any_character(range(0x00, 0xFF)),
                                    any_character(range(0x80, 0xBF)), false, 0,
                                    0};
  return shapes;
}

}  // namespace quill
