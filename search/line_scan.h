// Finding where a line of limited width ends, many bytes at once.
//
// The scan looks at a window of the text at a time. Where characters are in
// order, a byte that is a space or a feed is a character of its own, so the
// window marks both kinds as bits, and a line asks for the last bit of each
// before its limit. Elsewhere the text is read character by character.
#pragma once

#include <algorithm>
#include <array>
#include <bit>

#include "blocks/byte_scan.h"
#include "utf8/characters.h"

namespace quill {

class LineScan {
 public:
  LineScan(const Byte* text, Offset end) : text_(text), end_(end) {}

  struct Line {
    Offset end;     // where the next line begins
    bool readable;  // false when a character can't be read
  };

  // The line that begins at `start`; the last one ends at the range's end. A
  // feed starts the width anew but does not make the line forget its last
  // space. The character that reaches the limit is taken whole.
  Line find_line(Offset start, Offset width) {
    Offset position = start;
    Offset limit = start + width;
    Offset after_space = -1;
    const auto note_space = [&](Offset at) { after_space = at + 1; };
    const auto note_feed = [&](Offset at) { limit = at + 1 + width; };
    while (position < limit && position < end_) {
      if (!look_from(position)) {
        const Character read = read_next(text_, position, end_);
        if (!read.found) return {end_, false};
        if (read.packed == ' ') note_space(read.start);
        if (read.packed == '\r' || read.packed == '\n') note_feed(read.start);
        position = read.next;
        continue;
      }
      const Offset stop = std::min(limit, window_end_);
      for (; position < stop; position += kStep) {
        const Offset count = std::min(stop - position, kStep);
        const std::uint64_t spaces = bits_from(spaces_, position, count);
        const std::uint64_t feeds = bits_from(feeds_, position, count);
        const Offset last = position + 63;
        if (spaces != 0) note_space(last - std::countl_zero(spaces));
        if (feeds != 0) note_feed(last - std::countl_zero(feeds));
      }
      position = stop;
      position += continuation_bytes(position);
    }
    if (position == end_ || after_space < 0) return {position, true};
    return {after_space, true};
  }

 private:
  static constexpr Offset kWindow = 4096;
  static constexpr Offset kStep = 64;
  using Marks = std::array<std::uint64_t, kWindow / kStep + 1>;

  // Whether the window, moved if need be, has `position` among characters in
  // order. Windows that turn out short are not worth the trouble: each time,
  // more characters are read singly before the next try.
  bool look_from(Offset position) {
    if (position >= window_start_ && position < window_end_) return true;
    if (singly_ > 0) {
      --singly_;
      return false;
    }
    const Byte* first = text_ + position;
    const Byte* last = text_ + std::min(position + kWindow, end_);
    const Byte* in_order = walk_characters(first, last, kWindow).next;
    patience_ = in_order - first < 64 ? std::min(2 * patience_, 256) : 1;
    singly_ = patience_ - 1;
    if (in_order == first) return false;
    window_start_ = position;
    window_end_ = in_order - text_;
    mark_members(first, in_order, kSpaces, spaces_.data());
    mark_members(first, in_order, kFeeds, feeds_.data());
    const auto behind = static_cast<std::size_t>((in_order - first + 63) / 64);
    spaces_[behind] = feeds_[behind] = 0;
    return true;
  }

  // How many continuation bytes stand at an offset up to the window's end;
  // there are at most three. Where lines end in them can't be predicted either.
  Offset continuation_bytes(Offset position) const {
    Offset count = 0;
    if (window_end_ - position >= 3) {
      const Byte* const at = text_ + position;
      const int first = is_continuation(at[0]) ? 1 : 0;
      const int second = first & (is_continuation(at[1]) ? 1 : 0);
      return first + second + (second & (is_continuation(at[2]) ? 1 : 0));
    }
    while (position + count < window_end_ &&
           is_continuation(text_[position + count])) {
      ++count;
    }
    return count;
  }

  // The marks of `count` bytes, 1 to 64, from an offset in the window on: with
  // no branch that depends on where words begin.
  std::uint64_t bits_from(const Marks& marks, Offset start,
                          Offset count) const {
    const auto index = static_cast<std::size_t>(start - window_start_);
    const std::size_t word = index >> 6;
    const auto shift = static_cast<int>(index & 63);
    const std::uint64_t bits = marks[word] >> shift | marks[word + 1]
                                                          << 1 << (63 - shift);
    return bits & ~std::uint64_t{0} >> (kStep - count);
  }

  static constexpr ByteSet kSpaces = ByteSet::of(' ');
  static constexpr ByteSet kFeeds = [] {
    ByteSet set = ByteSet::of('\r');
    set.add('\n');
    return set;
  }();

  const Byte* text_;
  Offset end_;
  Offset window_start_ = 0;
  Offset window_end_ = 0;
  int patience_ = 1;
  int singly_ = 0;
  Marks spaces_;  // undefined outside the window
  Marks feeds_;
};

}  // namespace quill
