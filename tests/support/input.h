// Bytes read as the things that calls are made of. libFuzzer supplies them, or
// a seeded generator. Whatever they are, each draw answers; when they run out,
// zeros and empty texts come.
#pragma once

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <vector>

#include "tests/support/blocks.h"
#include "tests/support/yield_recorder.h"

namespace quill::test {

// A mask as its owner holds it.
struct Mask {
  Longs keys = {};
  Longs values = {};

  std::int32_t count() const { return static_cast<std::int32_t>(keys.size()); }
  // Null for an empty mask, as a host without one passes it.
  const std::int32_t* key_data() const {
    return keys.empty() ? nullptr : keys.data();
  }
  const std::int32_t* value_data() const {
    return keys.empty() ? nullptr : values.data();
  }
};

// A range pattern as its owner holds it.
struct RangePart {
  Longs set = {};
  std::int32_t minimum = 1;
  std::int32_t maximum = 0;
  unsigned char include = 1;
};
using RangeParts = std::vector<RangePart>;

std::string show(const RangeParts& parts);

// And as calls take it: addresses of parts, which have those of the sets.
class PartPointers {
 public:
  explicit PartPointers(const RangeParts& parts);

  const QuillRangePart* const* data() const { return pointers_.data(); }
  std::int32_t count() const { return length_of(pointers_); }

 private:
  std::vector<QuillRangePart> parts_;
  std::vector<QuillRangePart*> pointers_;
};

class Input {
 public:
  explicit Input(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  // Both ends included; `low` once the bytes have run out.
  int between(int low, int high);
  bool one_in(int n) { return between(1, n) == n; }
  bool flag() { return one_in(2); }
  unsigned char byte() { return static_cast<unsigned char>(between(0, 255)); }
  std::int32_t any_long();

  template <class T>
  T pick(std::initializer_list<T> from) {
    return from.begin()[between(0, static_cast<int>(from.size()) - 1)];
  }
  template <class T>
  const T& pick(const std::vector<T>& from) {
    return from[static_cast<std::size_t>(
        between(0, static_cast<int>(from.size()) - 1))];
  }

  // One character of the alphabet, a stray, or any byte.
  std::string piece();

  // At most so many of the alphabet's characters, or of any pieces.
  std::string well_formed(int most);
  std::string text(int most);

  // `length` letters, each the first of the alphabet up to the `kinds`-th.
  std::string letters(int length, int kinds);

  // Of a few pieces, or of letters, or nearly the same over and over.
  std::string any_text(int most_pieces);

  // A run of ASCII, of the alphabet or of pieces, grown from a few bytes.
  std::string long_text(int pieces);

  // Packed characters of the alphabet, now and then any long.
  Longs characters(int most);

  // Position flags: mostly 1 and 0, sometimes another byte.
  std::vector<unsigned char> flags(std::size_t count);

  // An offset about a text of `size` bytes: mostly inside, at times a little
  // outside, seldom anything.
  std::int32_t offset(std::size_t size);

  // Ascending keys and a value for each.
  Mask mask(int most);

  // Mostly of one or two parts, at times of none; few of the sets out of order.
  RangeParts range_parts();

  // Offsets about a text of `size` bytes, up to `most`: mostly in order, two a
  // selection.
  Longs selections(std::size_t size, int most);

  // How the host behaves during the call.
  HostPlan host();

 private:
  std::span<const std::uint8_t> bytes_;
};

}  // namespace quill::test
