// Offsets of a short window marked as bits, looked through one after the other.
#pragma once

#include <algorithm>
#include <array>
#include <bit>

#include "blocks/base.h"

namespace quill {

template <Offset kWords>
class Marks {
 public:
  static constexpr Offset kRoom = kWords * 64;

  bool covers(Offset offset) const { return offset >= start_ && offset < end_; }
  Offset end() const { return end_; }
  void clear() { end_ = start_; }

  // Takes the window [start, end), at most kRoom offsets; the caller fills in
  // its words, the bits beyond its end 0.
  std::uint64_t* open(Offset start, Offset end) {
    start_ = start;
    end_ = end;
    return words_.data();
  }

  // The first mark in [from, limit), else `limit`; both lie in the window.
  Offset next(Offset from, Offset limit) const {
    const auto bit = static_cast<std::size_t>(from - start_);
    std::size_t index = bit / 64;
    std::uint64_t word = words_[index] & ~std::uint64_t{0} << (bit % 64);
    Offset first = from - static_cast<Offset>(bit % 64);
    while (word == 0) {
      first += 64;
      if (first >= limit) return limit;
      word = words_[++index];
    }
    return std::min(first + std::countr_zero(word), limit);
  }

 private:
  Offset start_ = 0;
  Offset end_ = 0;
  std::array<std::uint64_t, kWords> words_;
};

}  // namespace quill
