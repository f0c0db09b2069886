// A mask prepared once per call: one load for the characters that texts are
// made of, and the answer of Mask::map for every character.
//
// ASCII goes through a table; for a short text the mask's own values are used
// as one where its ASCII keys follow each other, as letters do. Once enough
// other characters have been looked up to pay for it, two-byte characters get a
// table too, and after as many again longer ones a filter that tells those
// whose first two bytes begin no key; or the other way round. What neither
// knows is bisected.
//
// The tables lie within the object (about 9 KB), so nothing is allocated and
// nothing can be refused. They are filled from the keys alone: whatever is no
// key maps to itself, in arrays of any order.
#pragma once

#include <array>

#include "blocks/base.h"
#include "utf8/mask.h"

namespace quill {

class MaskTable {
 public:
  // `byte_count`: about how much text will be mapped; a few characters are
  // not worth a table.
  MaskTable(const Mask& mask, Offset byte_count);
  MaskTable(const MaskTable&) = delete;
  MaskTable& operator=(const MaskTable&) = delete;

  std::int32_t map(std::int32_t character) {
    const auto bits = static_cast<std::uint32_t>(character);
    // There are values wherever there is a count.
    // NOLINTNEXTLINE(clang-analyzer-core.NullDereference)
    if (bits - first_ < count_) return values_[bits - first_];
    return bits < ascii_limit_ ? character : map_longer(character);
  }

  const Mask& mask() const { return mask_; }

  // What the 128 ASCII characters map to, or null when too little is mapped.
  // Valid for as long as the table.
  const std::int32_t* ascii() {
    if (ascii_limit_ != 0) prepare_ascii(kManyBytes);
    return values_;
  }

  // Whether ASCII is known to be mapped by a shift: what follows the first so
  // many characters on gives what lies `by` above them, and all others stay.
  struct Shift {
    std::uint32_t first = 0;
    std::uint32_t count = 0;
    std::uint32_t by = 0;
    bool is_known = false;
  };
  const Shift& shift() const { return shift_; }

 private:
  using Filter = std::array<std::uint64_t, 32>;

  // Bytes of text from which on the table is filled whatever the keys.
  static constexpr Offset kManyBytes = 1024;
  // Bytes below which larger tables have to wait.
  static constexpr Offset kFewerBytes = 48;

  // The well-formed two-byte characters, as an index below 2048.
  static bool is_two_byte(std::uint32_t bits) {
    return (bits & 0xFFFFC0E0) == 0x80C0;
  }
  // Characters of three or four bytes with a well-formed second byte.
  static bool is_filtered(std::uint32_t bits) {
    return (bits & 0xC0E0) == 0x80E0;
  }
  // The lead byte's low five bits and the second byte's low six.
  static std::uint32_t index_of(std::uint32_t bits) {
    return (bits & 0x1F) << 6 | (bits >> 8 & 0x3F);
  }

  std::int32_t map_longer(std::int32_t character) {
    const auto bits = static_cast<std::uint32_t>(character);
    const std::uint32_t index = index_of(bits);
    if (is_two_byte(bits)) {
      if (has_two_bytes_) return character ^ two_bytes_[index];
    } else if (has_filter_ && is_filtered(bits) &&
               (filter_[index >> 6] >> (index & 63) & 1) == 0) {
      return character;
    }
    return map_by_bisection(character);
  }

  // Bisections until a larger table pays: clearing one costs as much as dozens
  // of them, which in a short text are all there are.
  std::int32_t patience(Offset byte_count) const {
    return byte_count < kFewerBytes ? 40 : mask_.count / 128 + 4;
  }
  std::int32_t map_by_bisection(std::int32_t character);
  void prepare_ascii(Offset byte_count);
  bool use_values(Offset place, Offset count);
  void fill_two_bytes();
  void fill_filter();

  Mask mask_;

  // What the characters from `first_` on map to, all of them in ASCII. Others
  // below the limit map to themselves: it is 128, or 0 where there are none or
  // nothing is known.
  const std::int32_t* values_ = nullptr;
  std::uint32_t first_ = 0;
  std::uint32_t count_ = 0;
  std::uint32_t ascii_limit_ = 0;

  Shift shift_;

  bool has_two_bytes_ = false;
  bool has_filter_ = false;
  std::int32_t all_patience_;
  std::int32_t patience_;  // what is left of it

  // Undefined until filled.
  std::array<std::int32_t, 128> ascii_;
  std::array<std::int32_t, 2048> two_bytes_;  // the bits that change
  Filter filter_;
};

}  // namespace quill
