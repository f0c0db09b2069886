// The positions of a short window at which all anchors hold, listed at once
// and handed out one after the other.
//
// For hits that lie close together: each costs a load, where a search of its
// own would cost a call and a branch that no processor foresees.
#pragma once

#include <algorithm>
#include <array>
#include <span>

#include "blocks/byte_scan.h"

namespace quill {

class HitList {
 public:
  static constexpr Offset kRoom = 1024;

  bool covers(const Byte* position) const {
    return position >= first_ && position < last_;
  }
  const Byte* last() const { return last_; }
  void clear() { last_ = first_; }
  Offset count() const { return count_; }

  // Takes the positions in [first, last), of which there are at most kRoom.
  void list(const Byte* first, const Byte* last,
            std::span<const Anchor> anchors) {
    assert(!anchors.empty() && last - first <= kRoom);
    first_ = first;
    last_ = last;
    next_ = 0;
    const Offset word_count = (last - first + 63) / 64;
    Words words;
    mark_anchored(first, last, split_off(anchors), words.data());
    Offset filled = 0;
    for (Offset i = 0; i < word_count; ++i) {
      filled += words[static_cast<std::size_t>(i)] != 0 ? 1 : 0;
    }
    while (filled > kFew && !anchors.empty()) {
      Words others;
      mark_anchored(first, last, split_off(anchors), others.data());
      for (Offset i = 0; i < word_count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        words[at] &= others[at];
      }
    }
    count_ =
        filled == 0 ? 0 : list_marks(words.data(), word_count, offsets_.data());
    if (!anchors.empty()) keep(anchors);
  }

  // The first hit in [from, limit), else `limit`; both lie in the window.
  const Byte* next(const Byte* from, const Byte* limit) {
    if (next_ > 0 && hit(next_ - 1) >= from) next_ = 0;
    while (next_ < count_ && hit(next_) < from) ++next_;
    return next_ < count_ ? std::min(hit(next_), limit) : limit;
  }

  // Writes where the hits in [from, limit) begin and end, as offsets from
  // `text`, for as many as there is room: they are `length` bytes long, and
  // those that overlap the one before are left out. Returns how many longs.
  [[gnu::noinline]] Offset write_pairs(const Byte* text, const Byte* from,
                                       const Byte* limit, Offset length,
                                       std::span<std::int32_t> longs) {
    const auto start = static_cast<std::int32_t>(first_ - text);
    const auto bytes = static_cast<std::int32_t>(length);
    const auto last = static_cast<std::int32_t>(limit - first_);
    auto free = static_cast<std::int32_t>(from - first_);
    std::size_t written = 0;
    next(from, limit);
    for (; next_ < count_ && written < longs.size(); ++next_) {
      const std::int32_t offset = offsets_[static_cast<std::size_t>(next_)];
      if (offset >= last) break;
      longs[written] = start + offset;
      longs[written + 1] = start + offset + bytes;
      written += offset >= free ? 2 : 0;
      free = offset >= free ? offset + bytes : free;
    }
    return static_cast<Offset>(written);
  }

 private:
  using Words = std::array<std::uint64_t, kRoom / 64>;

  // The words with hits up to which it pays to try further anchors hit by hit.
  static constexpr Offset kFew = 4;

  // As many anchors as can be marked at once.
  static std::span<const Anchor> split_off(std::span<const Anchor>& anchors) {
    const auto count = std::min<std::size_t>(anchors.size(), kMostAnchors);
    const auto some = anchors.first(count);
    anchors = anchors.subspan(count);
    return some;
  }

  // Drops the hits at which not all of `anchors` hold.
  void keep(std::span<const Anchor> anchors) {
    Offset kept = 0;
    for (Offset i = 0; i < count_; ++i) {
      const bool holds = std::all_of(
          anchors.begin(), anchors.end(), [&](const Anchor& anchor) {
            return anchor.set.contains(hit(i)[anchor.offset]);
          });
      offsets_[static_cast<std::size_t>(kept)] =
          offsets_[static_cast<std::size_t>(i)];
      kept += holds ? 1 : 0;
    }
    count_ = kept;
  }

  const Byte* hit(Offset index) const {
    return first_ + offsets_[static_cast<std::size_t>(index)];
  }

  const Byte* first_ = nullptr;
  const Byte* last_ = nullptr;
  Offset count_ = 0;
  Offset next_ = 0;  // index of the first hit not passed
  std::array<std::uint16_t, kRoom + kListSlack> offsets_;  // of count_ hits
};

}  // namespace quill
