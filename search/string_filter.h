// Finds the offsets of a long text where a match may begin.
//
// The text is taken in segments. How orderly each is decides by which plan its
// candidates are found; whatever cannot be proved in order goes by the plan
// that holds anywhere. Segments depend on nothing but the text, so they serve
// one search after the other.
#pragma once

#include <cstring>

#include "search/anchor_plan.h"
#include "search/hit_list.h"

namespace quill {

class StringFilter {
 public:
  // Of a text of which [start, end) is searched. The pattern isn't empty.
  void prepare(const Byte* text, Offset start, Offset end,
               const CharPattern& pattern, const Mask& mask);

  // Lets the filter decide by itself about short patterns: in ASCII; in text in
  // order, if the bytes of a match are known or single characters; and in any
  // text about one character with known bytes. A match in ASCII needs a byte of
  // `sides` before and behind it there, if that is not null.
  void decide(const ByteSet* sides);

  // Whether the matches from `from` on are decided about, for a while.
  bool has_decided(Offset from) const {
    return decided_ && hits_.covers(text_ + from);
  }
  // Where that is so: the first match in [from, limit), or if none is among
  // those decided about where they end, at `limit` at the latest.
  Offset next_decided(Offset from, Offset limit) {
    const Byte* const listed = std::min(text_ + limit, hits_.last());
    return hits_.next(text_ + from, listed) - text_;
  }

  // Where that is so: the matches from `from` on that do not overlap, as pairs
  // for as many as there is room. Returns how many longs.
  Offset write_decided(Offset from, std::span<std::int32_t> pairs) {
    return hits_.write_pairs(text_, text_ + from, hits_.last(), match_length_,
                             pairs);
  }
  // How many bytes such a match has.
  Offset decided_length() const { return match_length_; }

  // The first offset in [from, limit) where a match may begin, else `limit`.
  // Every match is at such an offset; not all of them begin a character.
  Offset next(Offset from, Offset limit);

  // The end of the match that begins at `position`, if the bytes of the pattern
  // stand there; `position` itself if not, or if bytes can't tell.
  Offset end_of_bytes(Offset position) const {
    const auto count = static_cast<std::size_t>(byte_count_);
    const bool stand = position + byte_count_ <= end_ &&
                       std::memcmp(text_ + position, bytes_.data(), count) == 0;
    return stand ? position + byte_count_ : position;
  }

  // The last such offset in [from, limit), else a negative one. Not to be
  // mixed with next(), and called with `limit` never higher than before.
  Offset previous(Offset from, Offset limit);

 private:
  struct Segment {
    Offset start = 0;
    Offset end = 0;
    const AnchorPlan* plan = nullptr;
  };

  void look_further(const CharPattern& pattern, const Mask& mask,
                    const ByteShares& shares);
  void add_decisive(const ByteSet& set, Offset offset);
  void add_bytes(const CharShapes& shapes);
  void decide_by_bytes();
  void put_rarest_first(const ByteShares& shares);
  void note_strays(std::size_t length);
  // Whether in text in order, too, the filter decides, or in any text: there
  // the sides of a match may be longer characters.
  bool decides_in_order() const {
    return may_decide_ && !has_sides_ && (is_single_bytes_ || is_spelled_);
  }
  bool decides_anywhere() const {
    return decides_in_order() && is_spelled_ && char_count_ == 1;
  }
  bool decides_about(const AnchorPlan& plan) const {
    return &plan == &ascii_      ? may_decide_
           : &plan == &in_order_ ? decides_in_order()
                                 : decides_anywhere();
  }
  Offset order_reach() const;
  Offset ascii_reach() const;
  bool open_ascii(Offset from);
  bool open_in_order(Offset from);
  void open(Offset from);
  void open_anywhere(Offset from);
  void open_backward(Offset from, Offset limit);
  bool is_ascii(Offset from, Offset limit) const;
  bool is_in_order(Offset from, Offset limit) const;
  Offset order_end(Offset from, Offset last) const;

  Offset next_anchored(Offset from, Offset limit);
  void list_from(Offset from, Offset last);
  Offset next_by_pivot(Offset from, Offset limit) const;
  Offset previous_anchored(Offset from, Offset limit) const;
  Offset previous_by_pivot(Offset from, Offset limit) const;
  Offset step_back(Offset position, Offset lowest) const;

  const Byte* text_ = nullptr;
  Offset end_ = 0;
  AnchorPlan anywhere_;
  AnchorPlan in_order_;
  AnchorPlan ascii_;
  // By what strays are found instead: a character of some length and, that far
  // behind, a continuation byte.
  std::array<std::array<Anchor, 2>, 4> strays_;
  std::size_t stray_count_ = 0;  // 0: order itself is to be proved
  bool uses_order_ = false;      // whether proving order pays
  bool may_use_order_ = false;
  double unproved_cost_ = 0;  // of candidates, beyond what proofs would cost
  Offset stride_ = kShortest;
  Segment segment_;

  // What the elements look like, if each stands for one character only and they
  // are few.
  std::array<Byte, 64> bytes_;
  Offset byte_count_ = 0;

  // All that makes a match, if that is little: the anchors of single bytes that
  // the elements stand for or, where those are spelled, of the pattern's bytes,
  // and then those of the two sides.
  std::array<Anchor, 14> decisive_;
  std::size_t decisive_count_ = 0;
  Offset char_count_ = 0;         // of the pattern
  Offset match_length_ = 0;       // of what is decided about, in bytes
  bool is_single_bytes_ = false;  // whatever the text is
  bool is_spelled_ = false;       // the bytes are all, in text in order
  bool may_decide_ = false;
  bool has_sides_ = false;
  bool decided_ = false;  // whether all hits listed are matches

  // Candidates that come thick are listed many at a time.
  HitList hits_;
  int thick_ = 0;  // candidates that came soon after the one before

  static constexpr Offset kShortest = 256;
  static constexpr Offset kLongest = 8192;
};

}  // namespace quill
