// Finds the offsets of a long text where a match may begin.
//
// The text is taken in segments. How orderly each is decides by which plan its
// candidates are found; whatever cannot be proved in order goes by the plan
// that holds anywhere. Segments depend on nothing but the text, so they serve
// one search after the other.
#pragma once

#include "search/anchor_plan.h"
#include "search/marks.h"

namespace quill {

class StringFilter {
 public:
  // Of a text of which [start, end) is searched. The pattern isn't empty.
  void prepare(const Byte* text, Offset start, Offset end,
               const CharPattern& pattern, const Mask& mask);

  // The first offset in [from, limit) where a match may begin, else `limit`.
  // Every match is at such an offset; not all of them begin a character.
  Offset next(Offset from, Offset limit);

  // The last such offset in [from, limit), else a negative one. Not to be
  // mixed with next(), and called with `limit` never higher than before.
  Offset previous(Offset from, Offset limit);

 private:
  struct Segment {
    Offset start = 0;
    Offset end = 0;
    const AnchorPlan* plan = nullptr;
  };

  Offset order_reach() const;
  bool open_ascii(Offset from);
  bool open_in_order(Offset from);
  void open(Offset from);
  void open_anywhere(Offset from);
  void open_backward(Offset from, Offset limit);
  bool is_ascii(Offset from, Offset limit) const;
  bool is_in_order(Offset from, Offset limit) const;

  Offset next_anchored(Offset from, Offset limit);
  void mark_from(Offset from, Offset last);
  Offset next_by_pivot(Offset from, Offset limit) const;
  Offset previous_anchored(Offset from, Offset limit) const;
  Offset previous_by_pivot(Offset from, Offset limit) const;
  Offset step_back(Offset position, Offset lowest) const;

  const Byte* text_ = nullptr;
  Offset end_ = 0;
  AnchorPlan anywhere_;
  AnchorPlan in_order_;
  AnchorPlan ascii_;
  bool uses_order_ = false;  // whether proving order pays
  bool may_use_order_ = false;
  double unproved_cost_ = 0;  // of candidates, beyond what proofs would cost
  Offset stride_ = kShortest;
  Segment segment_;

  // Candidates that come thick are marked many at a time.
  Marks<16> marks_;
  int thick_ = 0;  // candidates that came soon after the one before

  static constexpr Offset kShortest = 256;
  static constexpr Offset kLongest = 8192;
};

}  // namespace quill
