// Moves of the runs of a long text, one after the other and all the same way.
//
// Where two lines from a run on (or two lines up to its end) may be read, and
// written over where they go, a short run is moved with hardly a branch on its
// length, which can't be foreseen. What comes after a run is fetched early: a
// run alone is too short for the hardware to see the stream.
#pragma once

#include <array>

#include "blocks/short_move.h"

namespace quill {

constexpr Offset kCacheLine = 64;
constexpr Offset kTwoLines = 2 * kCacheLine;
constexpr Offset kFetchAhead = 4096;

// Only a hint: the address may lie outside the text, where nothing is read.
inline void fetch(const char* around, Offset distance) {
  __builtin_prefetch(around + distance);
}

// The run's bytes are among the first of the lines, or among the last.
enum class Lies { kFirst, kLast };

template <Lies lies>
inline void move_in_room(char* to, const char* from, Offset byte_count) {
  const auto move_as = [&]<class Whole>(const Whole&) {
    const Offset at =
        lies == Lies::kFirst ? 0 : byte_count - Offset{sizeof(Whole)};
    store(to + at, load<Whole>(from + at));
  };
  if (byte_count <= kCacheLine / 2) {
    return move_as(std::array<char, kCacheLine / 2>{});
  }
  fetch(from, lies == Lies::kFirst ? kFetchAhead : -kFetchAhead);
  if (byte_count <= kCacheLine) {
    move_as(std::array<char, kCacheLine>{});
  } else {
    move_as(std::array<char, kTwoLines>{});
  }
}

// As move_bytes, for runs that go left, in ascending order.
// `room` bytes from `from` on may be read, and from `to` on written.
inline void move_run_left(char* to, const char* from, Offset byte_count,
                          Offset room) {
  constexpr Offset kShort = 256;
  constexpr Offset kLong = 1 << 14;
  if (byte_count <= kTwoLines && room >= kTwoLines) {
    return move_in_room<Lies::kFirst>(to, from, byte_count);
  }
  if (byte_count > kShort && byte_count <= kLong) {
    for (Offset at = 0; at < byte_count; at += kCacheLine) {
      fetch(from, at + kFetchAhead);
    }
  }
  move_bytes(to, from, byte_count);
}

// As move_bytes, for runs that go right, in descending order.
// `room` bytes up to the run's end may be read, and as many where it goes
// written. Goes down within a run too, where memmove may go the other way.
inline void move_run_right(char* to, const char* from, Offset byte_count,
                           Offset room) {
  constexpr Offset kLong = 1 << 16;
  if (byte_count <= kTwoLines && room >= kTwoLines) {
    return move_in_room<Lies::kLast>(to, from, byte_count);
  }
  if (byte_count <= kCacheLine || byte_count > kLong) {
    return move_bytes(to, from, byte_count);
  }
  using Line = std::array<char, kCacheLine>;
  const auto first = load<Line>(from);
  for (Offset left = byte_count; left > kCacheLine;) {
    left -= kCacheLine;
    fetch(from, left - kFetchAhead);
    store(to + left, load<Line>(from + left));
  }
  store(to, first);
}

}  // namespace quill
