// The characters that a part accepts, prepared so that one is tested in a step
// and a stretch of text in a few instructions for every 64 bytes.
//
// A stretch is handed over *covered*: a word of bits for each 64 bytes, in
// which all bytes of the accepted characters are set. In text whose characters
// are in order, a run of such characters is then a run of bits.
#pragma once

#include "blocks/base.h"
#include "blocks/byte_scan.h"
#include "blocks/byte_set.h"
#include "pattern/range_pattern.h"
#include "pattern/slot.h"
#include "pattern/wide_members.h"

namespace quill {

class CharacterClass {
 public:
  // Reads the part's set for use on a range of that many bytes. The part
  // outlives the class.
  CharacterClass(const QuillRangePart& part, Offset range_length);

  // False: the class is of no use. Only in a set that ascends does bisection
  // find every member.
  bool is_prepared() const { return ascends_; }

  bool accepts_ascii(Byte byte) const {
    return (ascii_[byte >> 6] >> (byte & 63) & 1) != 0;
  }

  // The same for any character that could be read.
  bool accepts(const Byte* text, const Character& character) const {
    const Byte lead = text[character.start];
    if (lead < 0x80) return accepts_ascii(lead);
    return is_wide_listed(text + character.start, character) == includes_;
  }

  // The bytes that accepted characters can begin with, and maybe others.
  ByteSet first_bytes() const;

  // Covers [first, last), at most kMostCovered bytes, in which all characters
  // are in order; `ascii` says that all are single bytes. Writes the words that
  // the range takes, with 0 in the bits beyond it.
  static constexpr Offset kMostCovered = 2048;
  void cover(const Byte* first, const Byte* last, bool ascii,
             std::uint64_t* words) const;

 private:
  bool is_wide_listed(const Byte* at, const Character& character) const {
    return wide_.has_value() && wide_->contains(at, character);
  }

  bool includes_;
  bool ascends_ = true;
  std::uint64_t ascii_[2] = {};
  bool lists_ascii_ = false;
  // Accepted bytes of ASCII text, and of any text whose long characters are all
  // accepted or all not.
  ByteSet accepted_bytes_;
  Slot<WideMembers> wide_;  // when the set lists long characters
};

}  // namespace quill
