// Where to look for the matches of a pattern: a few offsets, and the bytes
// that must stand there in every match. Whatever satisfies them is a candidate
// to be compared; a match never fails to.
//
// What can stand where depends on how orderly the text is:
//   anywhere  Between two characters of a match stray continuation bytes may
//             lie, and a lead byte takes whatever follows it, so everything
//             behind the first character may be shifted.
//   in order  Every lead byte is followed by exactly the continuation bytes
//             that it announces, and no others occur: shifts come only from
//             elements that characters of several lengths satisfy.
//   ASCII     Element k stands at offset k.
// A plan holds for a match if the text is that orderly from the match's start
// for as many bytes as the plan reaches.
#pragma once

#include <array>
#include <span>

#include "blocks/byte_scan.h"
#include "search/char_shape.h"

namespace quill {

enum class Order { kAnywhere, kInOrder, kAscii };

struct AnchorPlan {
  Order order = Order::kAnywhere;
  std::array<Anchor, kMostAnchors> anchors;
  int anchor_count = 0;
  std::int32_t pivot = 0;   // the anchors count from this element's start
  Offset reach = 0;         // one past the last offset that it depends on
  double share = 1;         // of all offsets that will be candidates, about
  bool impossible = false;  // no match at all

  std::span<const Anchor> used() const {
    return {anchors.data(), static_cast<std::size_t>(anchor_count)};
  }
};

// How common each byte is in the text at hand.
class ByteShares {
 public:
  // Looks at a sample of [start, end), which isn't empty.
  ByteShares(const Byte* text, Offset start, Offset end);
  double of(const ByteSet& set) const;

  // Sets a plan's share to that of the offsets at which its anchors hold in the
  // sample, if that is more than the bytes by themselves make likely: bytes of
  // one word come together more often. Of three anchors the two come first that
  // hold together least, since the third is looked at only where those hold.
  void judge(AnchorPlan& plan) const;

 private:
  template <class Visit>
  void visit_sample(Visit visit) const;

  const Byte* text_;
  Offset start_;
  Offset end_;
  std::array<float, 256> shares_;
};

// The bytes that can stand at each offset from the start of an element on.
class ByteSpread {
 public:
  ByteSpread(Order order, std::int32_t pivot) : order_(order), pivot_(pivot) {}

  // Takes in the elements from the pivot on, one by one.
  void add(const CharShapes& shapes);
  // What can stand at an offset, if that is known.
  const ByteSet& at(Offset offset) const {
    return at_[static_cast<std::size_t>(offset)];
  }
  bool is_full() const { return starts_ == 0 || known() >= kWindow; }

  AnchorPlan plan(const ByteShares& shares) const;

 private:
  static constexpr int kWindow = 24;

  // Below this offset every match has a byte, and all that it can be is known.
  int known() const;
  void add_character(const ByteSet* bytes, int length);

  Order order_;
  std::int32_t pivot_;
  std::uint64_t starts_ = 1;  // bit n: the next element may start at offset n
  int dead_end_ = 0;  // with no starts left: the offset by which that shows
  std::array<ByteSet, kWindow> at_{};
};

}  // namespace quill
