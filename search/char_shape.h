// What one element of a pattern can look like in a text: for every length of
// character the bytes that can stand at each of its places.
//
// A fixed element is every character that the mask maps to it, an open one any
// character. Which bytes go together is forgotten, so a shape may admit more
// characters than there are, never fewer.
#pragma once

#include <array>

#include "blocks/byte_scan.h"
#include "blocks/byte_set.h"
#include "search/comparison.h"
#include "utf8/mask.h"

namespace quill {

struct CharShape {
  std::array<bool, 5> has_length{};
  std::array<std::array<ByteSet, 4>, 5> bytes{};  // [length][place]

  void add(std::int32_t character, Offset length);
};

// The shapes of one element: in any text, and in a text in which every lead
// byte is followed by exactly the continuation bytes that it announces.
struct CharShapes {
  CharShape anywhere;
  CharShape in_order;
  bool all_in_order = true;  // whether no character is out of order
  std::int32_t last_added = 0;
  int count = 0;  // of characters, those added twice in a row once

  void add(std::int32_t character);
};

CharShapes fixed_shapes(std::int32_t element, const Mask& mask);
const CharShapes& open_shapes();

// Calls `visit` with every key that has the element for its value, whether or
// not the mask finds it.
template <class Visit>
void visit_keys(std::int32_t element, const Mask& mask, Visit visit) {
  if (mask.is_identity()) return;
  const std::int32_t* const last = mask.values + mask.count;
  for (const std::int32_t* value = mask.values;
       (value = find_value(value, last, element)) != last; ++value) {
    visit(mask.keys[value - mask.values]);
  }
}

// Calls `visit` with every character that maps to `element`, some perhaps
// twice. Only keys with that value and the element itself come into question;
// each is looked up, so that the answer is the mask's own whatever its order.
template <class Visit>
void visit_sources(std::int32_t element, const Mask& mask, Visit visit) {
  if (mask.map(element) == element) visit(element);
  visit_keys(element, mask, [&](std::int32_t key) {
    if (mask.map(key) == element) visit(key);
  });
}

}  // namespace quill
