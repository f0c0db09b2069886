#include "search/string_filter.h"

#include <algorithm>

namespace quill {
namespace {

// What is reckoned with, in nanoseconds: looking at a candidate, and for each
// byte proving it in order, looking for strays behind characters of one length
// and testing anchors that are not plain.
constexpr double kCandidateCost = 40;
constexpr double kProofCost = 0.03;
constexpr double kStrayCost = 0.01;
constexpr double kSetCost = 0.03;

// So many candidates in a row, each so close to the one before, are thick.
constexpr Offset kThick = 512;
constexpr int kManyThick = 4;

// The elements that anchors can depend on.
constexpr std::int32_t kMostElements = 24;
constexpr std::size_t kMostPivots = 3;

// In ASCII also as many of those up to this one.
constexpr std::int32_t kLastElement = 256;

// The elements of a pattern that the filter decides about.
constexpr Offset kMostDecisive = 12;

CharShapes shapes_of(const CharPattern& pattern, std::int32_t index,
                     const Mask& mask) {
  return pattern.is_fixed(index) ? fixed_shapes(pattern.elements[index], mask)
                                 : open_shapes();
}

double cost_of(const AnchorPlan& plan) {
  double test = 0;
  for (const Anchor& anchor : plan.used()) {
    if (!anchor.is_plain) test = kSetCost;
  }
  return plan.share * kCandidateCost + test;
}

// The spreads of a pattern in text in order: from its start, and from the
// elements that follow open ones, since those blur what lies behind them.
class PivotSpreads {
 public:
  explicit PivotSpreads(const CharPattern& pattern) : pattern_(pattern) {}

  void add(std::int32_t index, const CharShapes& shapes) {
    const bool starts = index == 0 || (pattern_.is_fixed(index) &&
                                       !pattern_.is_fixed(index - 1));
    if (starts && count_ < kMostPivots) {
      spreads_[count_++] = ByteSpread(Order::kInOrder, index);
    }
    for (std::size_t i = 0; i < count_; ++i) spreads_[i].add(shapes);
  }

  AnchorPlan best(const ByteShares& shares) const {
    AnchorPlan best = spreads_[0].plan(shares);
    shares.judge(best);
    for (std::size_t i = 1; i < count_ && !best.impossible; ++i) {
      AnchorPlan other = spreads_[i].plan(shares);
      shares.judge(other);
      if (other.impossible || other.share < best.share / 2) best = other;
    }
    return best;
  }

 private:
  const CharPattern& pattern_;
  std::array<ByteSpread, kMostPivots> spreads_ = {
      ByteSpread(Order::kInOrder, 0), ByteSpread(Order::kInOrder, 0),
      ByteSpread(Order::kInOrder, 0)};
  std::size_t count_ = 0;
};

}  // namespace

// Called once a search: speed is little here, and size is.
[[gnu::cold]] void StringFilter::prepare(const Byte* text, Offset start,
                                         Offset end, const CharPattern& pattern,
                                         const Mask& mask) {
  text_ = text;
  end_ = end;
  char_count_ = pattern.count;
  segment_ = {start, start, nullptr};
  ByteSpread anywhere(Order::kAnywhere, 0);
  ByteSpread ascii(Order::kAscii, 0);
  PivotSpreads pivots(pattern);
  const std::int32_t limit = std::min(pattern.count, kMostElements);
  std::array<bool, 5> lengths{};  // of characters
  bool all_in_order = true;
  for (std::int32_t i = 0; i < limit; ++i) {
    const CharShapes shapes = shapes_of(pattern, i, mask);
    anywhere.add(shapes);
    ascii.add(shapes);
    pivots.add(i, shapes);
    if (byte_count_ >= 0) add_bytes(shapes);
    all_in_order = all_in_order && shapes.all_in_order;
    for (std::size_t l = 1; l < lengths.size(); ++l) {
      lengths[l] = lengths[l] || shapes.in_order.has_length[l];
    }
  }
  if (byte_count_ < 0 || pattern.count > limit) byte_count_ = 0;
  for (std::size_t l = 1; l < lengths.size() && all_in_order; ++l) {
    if (lengths[l]) note_strays(l);
  }
  is_single_bytes_ = stray_count_ == 1 && lengths[1];
  for (std::int32_t i = 0; i < pattern.count && i < kMostDecisive; ++i) {
    if (!pattern.is_fixed(i)) continue;
    add_decisive(ascii.at(i), i);
  }
  match_length_ = pattern.count;
  if (stray_count_ > 0 && byte_count_ > 0 && byte_count_ <= kMostAnchors) {
    decide_by_bytes();
  }
  const ByteShares shares(text, start, end);
  put_rarest_first(shares);
  anywhere_ = anywhere.plan(shares);
  shares.judge(anywhere_);
  ascii_ = ascii.plan(shares);
  shares.judge(ascii_);
  if (pattern.count > kMostElements) look_further(pattern, mask, shares);
  in_order_ = pivots.best(shares);
  const double proof = stray_count_ == 0
                           ? kProofCost
                           : static_cast<double>(stray_count_) * kStrayCost;
  uses_order_ = cost_of(anywhere_) > cost_of(in_order_) + proof;
  may_use_order_ = in_order_.share < anywhere_.share / 2;
}

// What is rare in a long pattern may come late in it.
[[gnu::cold]] void StringFilter::look_further(const CharPattern& pattern,
                                              const Mask& mask,
                                              const ByteShares& shares) {
  const std::int32_t limit = std::min(pattern.count, kLastElement);
  const std::int32_t first = std::max(kMostElements, limit - kMostElements);
  ByteSpread spread(Order::kAscii, 0);
  for (std::int32_t i = first; i < limit; ++i) {
    spread.add(shapes_of(pattern, i, mask));
  }
  AnchorPlan later = spread.plan(shares);
  if (later.share > ascii_.share / 2) return;
  for (Anchor& anchor : later.anchors) anchor.offset += first;
  later.reach += first;
  ascii_ = later;
}

void StringFilter::add_decisive(const ByteSet& set, Offset offset) {
  decisive_[decisive_count_++] = Anchor(set, offset);
}

// Those that come first are tested at every offset.
[[gnu::cold]] void StringFilter::put_rarest_first(const ByteShares& shares) {
  Anchor* const end = decisive_.data() + decisive_count_;
  for (Anchor* anchor = decisive_.data(); anchor < end; ++anchor) {
    std::swap(*anchor, *std::min_element(
                           anchor, end, [&](const Anchor& a, const Anchor& b) {
                             return shares.of(a.set) < shares.of(b.set);
                           }));
  }
}

void StringFilter::decide(const ByteSet* sides) {
  if (char_count_ > kMostDecisive) return;
  if (sides != nullptr) {
    has_sides_ = true;
    add_decisive(*sides, -1);
    add_decisive(*sides, char_count_);
  }
  may_decide_ = decisive_count_ > 0;  // else all elements are open
}

// How far behind a candidate's start order must be proved. The elements before
// the pivot take four bytes at most, each.
Offset StringFilter::order_reach() const {
  const Offset reach = Offset{4} * in_order_.pivot + in_order_.reach;
  return decides_in_order() ? std::max(reach, match_length_) : reach;
}

// The same for ASCII: the side behind a match is looked at, too.
Offset StringFilter::ascii_reach() const {
  return may_decide_ ? std::max(ascii_.reach, char_count_ + 1) : ascii_.reach;
}

// A stretch of ASCII from `from` on, if it is worth a segment. The anchors lie
// within it for every candidate.
bool StringFilter::open_ascii(Offset from) {
  const Offset reach = ascii_reach();
  const Offset wanted = from + kLongest + reach;
  const Offset last = std::min(wanted, end_);
  const Offset reached = find_non_ascii(text_ + from, text_ + last) - text_;
  const Offset limit = reached == end_ ? end_ : reached - reach;
  if (limit < end_ && limit - from < kShortest) return false;
  segment_ = {from, limit, &ascii_};
  return true;
}

// Where the bytes of a match stand as the pattern has them, the characters do:
// none of them begins with a continuation byte, so no stray is skipped.
[[gnu::cold]] void StringFilter::add_bytes(const CharShapes& shapes) {
  const Byte lead = byte_of(shapes.last_added, 0);
  const Offset length = length_from_lead(lead);
  if (shapes.count != 1 || byte_count_ + length > std::ssize(bytes_)) {
    byte_count_ = -1;
    return;
  }
  for (int i = 0; i < length; ++i) {
    bytes_[static_cast<std::size_t>(byte_count_++)] =
        byte_of(shapes.last_added, i);
  }
}

// With as many as are tested at once. In ASCII they are what there was before,
// or there is no match.
[[gnu::cold]] void StringFilter::decide_by_bytes() {
  is_spelled_ = true;
  match_length_ = byte_count_;
  decisive_count_ = 0;
  for (Offset i = 0; i < byte_count_; ++i) {
    add_decisive(ByteSet::of(bytes_[static_cast<std::size_t>(i)]), i);
  }
}

// Of a pattern whose characters are all in order a match is shifted only by
// strays behind characters of their lengths: those are sought instead of order,
// each in a third of the time.
[[gnu::noinline]] void StringFilter::note_strays(std::size_t length) {
  const auto& bytes = open_shapes().in_order.bytes;
  strays_[stray_count_++] = {Anchor(bytes[length][0], 0),
                             Anchor(bytes[2][1], static_cast<Offset>(length))};
}

// Up to where, at most `last`, a match from `from` on lies as the plan for text
// in order says.
Offset StringFilter::order_end(Offset from, Offset last) const {
  if (stray_count_ == 0) {
    while (from < last && is_continuation(text_[from])) ++from;
    return walk_characters(text_ + from, text_ + last, last - from).next -
           text_;
  }
  for (std::size_t i = 0; i < stray_count_; ++i) {
    const Offset length = strays_[i][1].offset;
    const Offset tested = std::max(last - length, from);
    const Offset found =
        find_anchored(text_ + from, text_ + tested, strays_[i]) - text_;
    last = std::min(found + length, last);
  }
  return last;
}

bool StringFilter::open_in_order(Offset from) {
  const Offset last = std::min(from + stride_ + order_reach() + 4, end_);
  const Offset reached = order_end(from, last);
  const Offset limit = reached == end_ ? end_ : reached - order_reach();
  if (limit < end_ && limit - from < kShortest / 2) return false;
  segment_ = {from, limit, &in_order_};
  return true;
}

// Text that isn't ASCII is taken in longer and longer segments, so that a
// stray letter does not cost much, nor a text full of them.
void StringFilter::open(Offset from) {
  hits_.clear();
  if (open_ascii(from)) {
    if (segment_.end - from >= kLongest) stride_ = kShortest;
    return;
  }
  stride_ = std::min(stride_ * 2, kLongest);
  if (uses_order_ && open_in_order(from)) return;
  open_anywhere(from);
}

// A sample may mislead: once candidates have cost more than proving order would
// have, order is proved.
void StringFilter::open_anywhere(Offset from) {
  constexpr double kPatience = 20'000;
  segment_ = {from, std::min(from + stride_, end_), &anywhere_};
  const double proofs = static_cast<double>(segment_.end - from) * kProofCost;
  unproved_cost_ = std::max(unproved_cost_ - proofs, 0.0);
  if (may_use_order_ && unproved_cost_ > kPatience) uses_order_ = true;
}

Offset StringFilter::next(Offset from, Offset limit) {
  while (from < limit) {
    if (from < segment_.start || from >= segment_.end) open(from);
    const Offset stop = std::min(limit, segment_.end);
    const Offset found = segment_.plan->pivot == 0 ? next_anchored(from, stop)
                                                   : next_by_pivot(from, stop);
    if (found < stop) {
      if (segment_.plan == &anywhere_) unproved_cost_ += kCandidateCost;
      return found;
    }
    from = stop;
  }
  return limit;
}

// Candidates whose last anchor would lie beyond the end are none: every match
// has a byte there. Windows are listed for as long as they hold one candidate
// or more on average: one costs about as much to search for as a window to
// list.
Offset StringFilter::next_anchored(Offset from, Offset limit) {
  const AnchorPlan& plan = *segment_.plan;
  if (plan.impossible) return limit;
  if (plan.anchor_count == 0) return from;
  const Offset last = std::min(limit, end_ - plan.reach + 1);
  while (from < last) {
    if (hits_.covers(text_ + from)) {
      const Byte* const listed = std::min(text_ + last, hits_.last());
      const Byte* const found = hits_.next(text_ + from, listed);
      if (found < listed) return found - text_;
      from = listed - text_;
    } else if (thick_ >= kManyThick) {
      list_from(from, end_ - plan.reach + 1);
      thick_ = static_cast<int>(
          std::min<Offset>(thick_ + hits_.count() - 1, Offset{2} * kManyThick));
    } else {
      const Offset found =
          find_anchored(text_ + from, text_ + last, plan.used()) - text_;
      if (found == last) break;
      thick_ = found - from < kThick ? thick_ + 1 : 0;
      return found;
    }
  }
  return limit;
}

// Lists candidates of the segment from `from` on, before `last`, or decides
// about them. A segment's first offset has a side before it that isn't known to
// be ASCII, and a match at the range's very end has none behind it.
void StringFilter::list_from(Offset from, Offset last) {
  const AnchorPlan& plan = *segment_.plan;
  last = std::min({from + HitList::kRoom, segment_.end, last});
  const Offset sides = has_sides_ ? 1 : 0;
  const Offset last_decided = std::min(last, end_ - match_length_ - sides + 1);
  decided_ = decides_about(plan) && from >= segment_.start + sides &&
             from < last_decided;
  if (decided_) {
    hits_.list(text_ + from, text_ + last_decided,
               {decisive_.data(), decisive_count_});
  } else {
    hits_.list(text_ + from, text_ + last, plan.used());
  }
}

// The start of the character as many characters before `position` as the pivot
// has elements before it, or -1 where that lies below `lowest`.
Offset StringFilter::step_back(Offset position, Offset lowest) const {
  for (std::int32_t i = segment_.plan->pivot; i > 0; --i) {
    do {
      if (--position < lowest) return -1;
    } while (is_continuation(text_[position]));
  }
  return position;
}

// Searches for what follows the open elements, then steps back over those. The
// order in which pivots come up is that of the matches' starts.
Offset StringFilter::next_by_pivot(Offset from, Offset limit) const {
  const AnchorPlan& plan = *segment_.plan;
  if (plan.impossible) return limit;
  // Every pivot of a candidate below `limit` lies below this.
  const Offset last =
      std::min(limit + Offset{4} * plan.pivot, end_ - plan.reach + 1);
  Offset pivot = std::max(from, segment_.start);
  while (pivot < last) {
    pivot = find_anchored(text_ + pivot, text_ + last, plan.used()) - text_;
    if (pivot >= last) break;
    if (!is_continuation(text_[pivot])) {
      const Offset start = step_back(pivot, std::max(from, segment_.start));
      if (start >= limit) break;
      if (start >= 0) return start;
    }
    ++pivot;
  }
  return limit;
}

// ---------------------------------------------------------------------------

bool StringFilter::is_ascii(Offset from, Offset limit) const {
  const Offset last = std::min(limit + ascii_.reach, end_);
  return find_non_ascii(text_ + from, text_ + last) == text_ + last;
}

bool StringFilter::is_in_order(Offset from, Offset limit) const {
  const Offset needed = std::min(limit + order_reach(), end_);
  return order_end(from, std::min(needed + 4, end_)) >= needed;
}

// Backwards a segment is all of one kind.
void StringFilter::open_backward(Offset from, Offset limit) {
  Offset start = std::max(from, limit - kLongest);
  if (is_ascii(start, limit)) {
    segment_ = {start, limit, &ascii_};
    return;
  }
  if (uses_order_ && is_in_order(start, limit)) {
    segment_ = {start, limit, &in_order_};
    return;
  }
  segment_ = {start, limit, &anywhere_};
}

Offset StringFilter::previous(Offset from, Offset limit) {
  while (limit > from) {
    if (segment_.plan == nullptr || limit <= segment_.start) {
      open_backward(from, limit);
    }
    const Offset stop = std::max(from, segment_.start);
    const Offset found = segment_.plan->pivot == 0
                             ? previous_anchored(stop, limit)
                             : previous_by_pivot(stop, limit);
    if (found >= 0) return found;
    limit = stop;
  }
  return -1;
}

Offset StringFilter::previous_anchored(Offset from, Offset limit) const {
  const AnchorPlan& plan = *segment_.plan;
  if (plan.impossible) return -1;
  if (plan.anchor_count == 0) return limit - 1;
  const Offset last = std::min(limit, end_ - plan.reach + 1);
  if (last <= from) return -1;
  const Offset found =
      find_anchored_backward(text_ + from, text_ + last, plan.used()) - text_;
  return found == last ? -1 : found;
}

Offset StringFilter::previous_by_pivot(Offset from, Offset limit) const {
  const AnchorPlan& plan = *segment_.plan;
  if (plan.impossible) return -1;
  Offset last = std::min(limit + Offset{4} * plan.pivot, end_ - plan.reach + 1);
  while (last > from) {
    const Offset pivot =
        find_anchored_backward(text_ + from, text_ + last, plan.used()) - text_;
    if (pivot == last) break;
    last = pivot;
    if (is_continuation(text_[pivot])) continue;
    const Offset start = step_back(pivot, from);
    if (start < 0) break;
    if (start < limit) return start;
  }
  return -1;
}

}  // namespace quill
