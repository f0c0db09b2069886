#include "search/two_way.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace quill {
namespace {

struct Suffix {
  Offset start;
  Offset period;
};

// The greatest suffix of the needle in the order that `precedes` gives to
// bytes, and its period. Three indices walk the needle: the suffix found so
// far, a challenger, and how far the two agree.
template <class Order>
Suffix greatest_suffix(const Byte* needle, Offset length, Order precedes) {
  Suffix best{0, 1};
  Offset challenger = 1;
  Offset agreed = 0;
  while (challenger + agreed < length) {
    const Byte ours = needle[best.start + agreed];
    const Byte theirs = needle[challenger + agreed];
    if (precedes(theirs, ours)) {
      challenger += agreed + 1;
      agreed = 0;
      best.period = challenger - best.start;
    } else if (theirs != ours) {
      best = {challenger, 1};
      ++challenger;
      agreed = 0;
    } else if (agreed + 1 == best.period) {
      challenger += best.period;
      agreed = 0;
    } else {
      ++agreed;
    }
  }
  return best;
}

}  // namespace

TwoWay::TwoWay(const Byte* needle, Offset length)
    : needle_(needle), length_(length) {
  const Suffix low = greatest_suffix(needle, length, std::less<Byte>());
  const Suffix high = greatest_suffix(needle, length, std::greater<Byte>());
  const Suffix critical = low.start > high.start ? low : high;
  cut_ = critical.start;
  repeats_ = cut_ + critical.period <= length &&
             std::memcmp(needle, needle + critical.period,
                         static_cast<std::size_t>(cut_)) == 0;
  period_ = repeats_ ? critical.period : std::max(cut_, length - cut_) + 1;
  std::fill(std::begin(from_end_), std::end(from_end_), to_long(length));
  for (Offset i = 0; i < length; ++i) {
    from_end_[needle[i]] = to_long(length - 1 - i);
  }
}

// The first mismatch in the right part, behind what is remembered to fit;
// length_ when it all fits.
inline Offset TwoWay::right_mismatch(const Byte* window,
                                     Offset remembered) const {
  Offset index = std::max(cut_, remembered);
  while (index < length_ && needle_[index] == window[index]) ++index;
  return index;
}

inline bool TwoWay::fits_left(const Byte* window, Offset remembered) const {
  Offset index = cut_;
  while (index > remembered && needle_[index - 1] == window[index - 1]) {
    --index;
  }
  return index <= remembered;
}

const Byte* TwoWay::find(const Byte* first, const Byte* limit) {
  const bool resumes = window_ != nullptr && window_ >= first;
  const Byte* window = resumes ? window_ : first;
  Offset remembered = resumes ? remembered_ : 0;
  const Byte* found = limit;
  while (window < limit) {
    if (remembered == 0) {
      const Offset behind = from_end_[window[length_ - 1]];
      if (behind > 0) {
        window += behind;
        continue;
      }
    }
    if (const Offset at = right_mismatch(window, remembered); at < length_) {
      window += at - cut_ + 1;
      remembered = 0;
      continue;
    }
    if (fits_left(window, remembered)) {
      found = window;
      break;
    }
    window += period_;
    remembered = repeats_ ? length_ - period_ : 0;
  }
  window_ = window;
  remembered_ = remembered;
  return found;
}

}  // namespace quill
