// Moving a piece of text that is mostly short, without a call.
//
// Everything is loaded before anything is stored, so the two ranges may
// overlap either way. Only the bytes of the ranges are touched.
#pragma once

#include <cstring>

#include "blocks/base.h"

namespace quill {

struct Bytes16 {
  std::uint64_t low;
  std::uint64_t high;
};

template <class T>
inline T load(const char* from) {
  T value;
  std::memcpy(&value, from, sizeof value);
  return value;
}

template <class T>
inline void store(char* to, const T& value) {
  std::memcpy(to, &value, sizeof value);
}

// Moves sizeof(T) to twice as many bytes, by a first and a last piece.
template <class T>
inline void move_in_two(char* to, const char* from, Offset byte_count) {
  constexpr Offset kPiece = sizeof(T);
  const T first = load<T>(from);
  const T last = load<T>(from + byte_count - kPiece);
  store(to, first);
  store(to + byte_count - kPiece, last);
}

// Moves 33 to 64 bytes.
inline void move_in_four(char* to, const char* from, Offset byte_count) {
  const auto first = load<Bytes16>(from);
  const auto second = load<Bytes16>(from + 16);
  const auto third = load<Bytes16>(from + byte_count - 32);
  const auto last = load<Bytes16>(from + byte_count - 16);
  store(to, first);
  store(to + 16, second);
  store(to + byte_count - 32, third);
  store(to + byte_count - 16, last);
}

// Moves up to 64 bytes.
inline void move_few_bytes(char* to, const char* from, Offset byte_count) {
  if (byte_count > 32) {
    move_in_four(to, from, byte_count);
  } else if (byte_count >= 16) {
    move_in_two<Bytes16>(to, from, byte_count);
  } else if (byte_count >= 8) {
    move_in_two<std::uint64_t>(to, from, byte_count);
  } else if (byte_count >= 4) {
    move_in_two<std::uint32_t>(to, from, byte_count);
  } else if (byte_count >= 2) {
    move_in_two<std::uint16_t>(to, from, byte_count);
  } else if (byte_count == 1) {
    *to = *from;
  }
}

inline void move_bytes(char* to, const char* from, Offset byte_count) {
  if (byte_count > 64) {
    std::memmove(to, from, static_cast<std::size_t>(byte_count));
  } else {
    move_few_bytes(to, from, byte_count);
  }
}

}  // namespace quill
