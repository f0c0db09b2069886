#include "search/byte_searcher.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "search/byte_rank.h"

namespace quill {
namespace {

// Ranges shorter than this are searched without any preparation, by the
// needle's first and last byte.
constexpr Offset kShortRange = 512;

// The shortest stretch of linear search.
constexpr Offset kLeastStretch = 65'536;

// Texts longer than this tell by a sample which bytes are rare in them.
constexpr Offset kSampledText = 1'048'576;
constexpr Offset kSampleStretches = 16;
constexpr Offset kSampleStretch = 64;

// Anchors are sought among the needle's first bytes only; in a short text
// among fewer.
Offset ranked_bytes(Offset needle_length, Offset text_length) {
  return std::min({needle_length, 16 + text_length / 64, Offset{256}});
}

template <class Word>
bool same_word(const Byte* left, const Byte* right) {
  Word a;
  Word b;
  std::memcpy(&a, left, sizeof a);
  std::memcpy(&b, right, sizeof b);
  return a == b;
}

// Bytes that two strings of at least 4 bytes have in common from their start,
// in whole words: fewer where they differ.
template <class Word>
Offset common_words(const Byte* left, const Byte* right, Offset length) {
  constexpr Offset kWord = sizeof(Word);
  const Offset last = length - kWord;
  for (Offset common = 0; common < last; common += kWord) {
    if (!same_word<Word>(left + common, right + common)) return common;
  }
  return same_word<Word>(left + last, right + last) ? length : last;
}

Offset common_prefix(const Byte* left, const Byte* right, Offset length) {
  if (length >= 8) return common_words<std::uint64_t>(left, right, length);
  if (length >= 4) return common_words<std::uint32_t>(left, right, length);
  Offset common = 0;
  while (common < length && left[common] == right[common]) ++common;
  return common;
}

// Weighs bytes by how often they stand in a sample of the text and, where that
// does not tell them apart, by how common they are in general.
class Rarity {
 public:
  Rarity(const Byte* first, const Byte* end) {
    const Offset length = end - first;
    if (length < kSampledText) return;
    sampled_ = true;
    std::fill(std::begin(seen_), std::end(seen_), std::uint16_t{0});
    const Offset step = (length - kSampleStretch) / (kSampleStretches - 1);
    for (Offset stretch = 0; stretch < kSampleStretches; ++stretch) {
      const Byte* const sample = first + stretch * step;
      for (Offset i = 0; i < kSampleStretch; ++i) ++seen_[sample[i]];
    }
  }

  // Whether a byte of this weight is every second one in the sample.
  static bool is_everywhere(int weight) {
    return weight >= kSampleStretches * kSampleStretch / 2 * 256;
  }

  int of(Byte byte) const {
    return (sampled_ ? seen_[byte] * 256 : 0) + kByteRank[byte];
  }

 private:
  bool sampled_ = false;
  std::uint16_t seen_[256];
};

struct AnchorOffsets {
  Offset rarest;
  Offset second;
  Offset third;
  bool third_tells;  // the third is no byte that stands everywhere
};

// The three rarest bytes of four or more; among equally rare ones those that
// stand far apart, since a run of one byte is told from a longer one by its
// ends.
AnchorOffsets rarest_bytes(const Byte* needle, Offset length, const Byte* first,
                           const Byte* end) {
  const Rarity rarity(first, end);
  AnchorOffsets chosen{0, length - 1, 0, true};
  int least = rarity.of(needle[0]);
  int next = rarity.of(needle[length - 1]);
  const Offset ranked = ranked_bytes(length - 1, end - first);
  for (Offset i = 0; i < ranked; ++i) {
    const int rank = rarity.of(needle[i]);
    if (i != 0 && rank < next) {
      chosen.second = i;
      next = rank;
    }
    if (next < least) {
      std::swap(chosen.rarest, chosen.second);
      std::swap(least, next);
    }
  }
  int last = std::numeric_limits<int>::max();
  for (Offset i = 0; i < std::max(ranked, Offset{3}); ++i) {
    const int rank = rarity.of(needle[i]);
    if (rank >= last || i == chosen.rarest || i == chosen.second) continue;
    chosen.third = i;
    last = rank;
  }
  chosen.third_tells = !rarity.is_everywhere(last);
  return chosen;
}

}  // namespace

// All bytes of a short needle, two or three of a longer one.
ByteSearcher::Filter::Filter(const Byte* needle, Offset length,
                             const Byte* first, const Byte* end) {
  Offset count = 0;
  const auto anchor_at = [&](Offset offset) {
    anchors[count++] = Anchor(needle[offset], offset);
  };
  if (length <= kMostAnchors) {
    for (Offset i = 0; i < length; ++i) anchor_at(i);
  } else {
    const AnchorOffsets chosen = rarest_bytes(needle, length, first, end);
    anchor_at(chosen.rarest);
    anchor_at(chosen.second);
    if (chosen.third_tells) anchor_at(chosen.third);
  }
  candidates.use({anchors, static_cast<std::size_t>(count)});
}

ShortLook look_shortly(std::span<const Byte> needle, const Byte* first,
                       const Byte* end) {
  constexpr int kFewCandidates = 8;
  const Offset length = std::ssize(needle);
  const Byte* const last = end - length + 1;
  if (last - first >= kShortRange) return {first, false};
  for (int tried = 0; tried < kFewCandidates; ++tried) {
    first = find_pair(first, last, needle.front(), needle.back(), length - 1);
    if (first == last) return {end, false};
    if (common_prefix(needle.data(), first, length) == length) {
      return {first, true};
    }
    ++first;
  }
  return {first, false};
}

bool ByteSearcher::occurs_at(const Byte* position) {
  const Offset common = common_prefix(needle_, position, length_);
  if (common == length_) return true;
  work_ += common + 16;
  return false;
}

const Byte* ByteSearcher::find_whole(const Byte* first, const Byte* last,
                                     const Byte* end) {
  if (first < linear_until_) return find_linearly(first, last);
  if (work_start_ == nullptr) work_start_ = first;
  if (!filter_.has_value()) {
    if (last - first < kShortRange) return find_by_ends(first, last);
    filter_.emplace(needle_, length_, first, end);
  }
  return find_filtered(first, last);
}

const Byte* ByteSearcher::find_by_ends(const Byte* first, const Byte* last) {
  const Offset distance = length_ - 1;
  for (;;) {
    const Byte* const position =
        find_pair(first, last, needle_[0], needle_[distance], distance);
    if (position == last || occurs_at(position)) return position;
    first = position + 1;
    if (has_outworked(first)) return find_linearly(first, last);
  }
}

const Byte* ByteSearcher::find_filtered(const Byte* first, const Byte* last) {
  for (;;) {
    const Byte* const position = filter_->candidates.next(first, last);
    if (is_seen_whole() || position == last || occurs_at(position)) {
      return position;
    }
    first = position + 1;
    if (has_outworked(first)) return find_linearly(first, last);
  }
}

// Whether the comparisons before `first` cost more than the way so far may.
// Then a stretch of linear search begins, each twice as long as the one before.
// For a long needle the first is long already, since each change of method may
// compare one needle's length anew.
bool ByteSearcher::has_outworked(const Byte* first) {
  if (work_ <= kFreeWork + 4 * (first - work_start_)) return false;
  stretch_ = std::max({kLeastStretch, 2 * length_, 2 * stretch_});
  linear_until_ = first + stretch_;
  if (!linear_.has_value()) linear_.emplace(needle_, length_);
  work_ = 0;
  work_start_ = linear_until_;
  return true;
}

const Byte* ByteSearcher::find_linearly(const Byte* first, const Byte* last) {
  const Byte* const found = linear_->find(first, std::min(last, linear_until_));
  if (found < linear_until_ || found == last) return found;
  return filter_.has_value() ? find_filtered(linear_until_, last)
                             : find_by_ends(linear_until_, last);
}

}  // namespace quill
