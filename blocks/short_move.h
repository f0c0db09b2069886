// Moving a piece of text that is mostly short, without a call.
//
// All bytes are loaded before the first is stored, so the areas may overlap.
// Nothing outside the two areas is touched.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>

#include "blocks/base.h"

namespace quill {

// Moves `count` bytes, at least kHalf and at most two times kHalf, as their
// first and their last kHalf bytes.
template <std::size_t kHalf>
inline void move_two_halves(const char* source, char* destination,
                            Offset count) {
  std::array<char, kHalf> first;
  std::array<char, kHalf> last;
  const Offset second = count - static_cast<Offset>(kHalf);
  std::memcpy(first.data(), source, kHalf);
  std::memcpy(last.data(), source + second, kHalf);
  std::memcpy(destination, first.data(), kHalf);
  std::memcpy(destination + second, last.data(), kHalf);
}

// As memmove. Nothing happens when `count` is 0 or less.
inline void move_short(const char* source, char* destination, Offset count) {
  if (count > 64) {
    std::memmove(destination, source, static_cast<std::size_t>(count));
  } else if (count >= 32) {
    move_two_halves<32>(source, destination, count);
  } else if (count >= 16) {
    move_two_halves<16>(source, destination, count);
  } else if (count >= 8) {
    move_two_halves<8>(source, destination, count);
  } else if (count >= 4) {
    move_two_halves<4>(source, destination, count);
  } else if (count >= 2) {
    move_two_halves<2>(source, destination, count);
  } else if (count == 1) {
    *destination = *source;
  }
}

}  // namespace quill
