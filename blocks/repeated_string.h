// A string that is written many times over.
//
// A short one lies in a buffer with bytes of no meaning on both sides. Where
// the neighbourhood of its place is still to be written, or never read again,
// it is written with some of them, in one store without a branch on its length.
// For a few times that is not worth the buffer.
#pragma once

#include <array>
#include <string_view>

#include "blocks/short_move.h"

namespace quill {

// How many bytes before and behind a place may be overwritten.
struct Room {
  Offset before;
  Offset behind;
};

class RepeatedString {
 public:
  RepeatedString(std::string_view string, Offset times);

  Offset length() const { return std::ssize(string_); }

  void put(char* to, Room room) const {
    if (is_short_ && length() + room.behind >= kStored) {
      store(to, load<Stored>(buffer_.data() + kStored));
    } else if (is_short_ && length() + room.before >= kStored) {
      store(to + length() - kStored, load<Stored>(buffer_.data() + length()));
    } else {
      put_alone(to);
    }
  }

 private:
  using Stored = Bytes16;
  static constexpr Offset kStored = sizeof(Stored);

  void put_alone(char* to) const;

  std::string_view string_;
  bool is_short_;
  std::array<char, 3 * kStored> buffer_;  // a short one is in the middle
};

}  // namespace quill
