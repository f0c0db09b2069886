// Searches one byte string, the needle, in a text: made once per call of an
// export, then asked for occurrence after occurrence.
//
// Candidates are the positions where the needle's three rarest bytes stand.
// They are compared in full until the comparisons outgrow the distance covered;
// then a search that is linear whatever comes takes over for a while. Nothing
// is prepared before a range is long enough to pay for it.
#pragma once

#include <algorithm>
#include <optional>
#include <span>

#include "blocks/base.h"
#include "blocks/byte_scan.h"
#include "search/candidate_scan.h"
#include "search/two_way.h"

namespace quill {

// A search of a short range before any searcher is made, which would cost more:
// it goes over a few candidates at most, and over nothing in a longer range.
struct ShortLook {
  const Byte* reached;  // the first occurrence, or else none lies before it
  bool found;
};
ShortLook look_shortly(std::span<const Byte> needle, const Byte* first,
                       const Byte* end);

class ByteSearcher {
 public:
  // The needle, of at least 1 byte, outlives the searcher.
  ByteSearcher(const Byte* needle, Offset length)
      : needle_(needle), length_(length) {}
  ByteSearcher(const ByteSearcher&) = delete;
  ByteSearcher& operator=(const ByteSearcher&) = delete;

  Offset length() const { return length_; }

  // The first occurrence that starts in [first, limit) and lies before `end`,
  // or `limit`. Asked with `first` ascending. The bytes from `first` up to the
  // end of the last range asked for must not change between two calls, those
  // behind `first` may.
  const Byte* find(const Byte* first, const Byte* limit, const Byte* end) {
    if (end - first < length_) return limit;
    const Byte* const last = std::min(limit, end - length_ + 1);
    const Byte* const found = find_whole(first, last, end);
    return found == last ? limit : found;
  }

  // Whether occurrences that come close together are all known beforehand.
  bool lists_all() const { return is_seen_whole() && filter_.has_value(); }

  // Where that is so: writes the next ones in [first, limit) that do not
  // overlap as pairs of offsets from `text`, so far as they are known already.
  // Returns how many longs: none says nothing.
  Offset write_known(const Byte* text, const Byte* first, const Byte* limit,
                     std::span<std::int32_t> pairs) {
    return filter_->candidates.write_pairs(text, first, limit, length_, pairs);
  }

 private:
  const Byte* find_whole(const Byte* first, const Byte* last, const Byte* end);
  const Byte* find_by_ends(const Byte* first, const Byte* last);
  const Byte* find_filtered(const Byte* first, const Byte* last);
  const Byte* find_linearly(const Byte* first, const Byte* last);
  // Whether the filter leaves nothing to be compared.
  bool is_seen_whole() const { return length_ <= kMostAnchors; }
  bool occurs_at(const Byte* position);
  bool has_outworked(const Byte* first);

  const Byte* needle_;
  Offset length_;

  // Work allowed before the linear search takes over, in bytes compared.
  static constexpr Offset kFreeWork = 8192;
  Offset work_ = 0;
  Offset stretch_ = 0;  // how long it took over the last time
  const Byte* work_start_ = nullptr;
  const Byte* linear_until_ = nullptr;

  // For ranges that are long enough.
  struct Filter {
    Filter(const Byte* needle, Offset length, const Byte* first,
           const Byte* end);
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    Anchor anchors[kMostAnchors];
    CandidateScan candidates;
  };
  std::optional<Filter> filter_;
  std::optional<TwoWay> linear_;
};

}  // namespace quill
