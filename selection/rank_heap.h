// The heap sort's steps on ranks.
//
// Where equal elements end depends on nothing but the outcomes of comparisons,
// so that the steps can be taken on small numbers in place of elements. A
// number is a rank above `low_bits` bits that tell equal elements apart and
// that no comparison sees.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quill {

template <class Word>
class RankHeap {
 public:
  // `words` has elements 1 to `count`, and one before them that isn't used.
  RankHeap(Word* words, std::size_t count, int low_bits)
      : words_(words), count_(count), low_((Word{1} << low_bits) - 1) {}

  void sort() {
    for (std::size_t i = count_ / 2; i >= 1; --i) {
      place(words_[i], i, count_);
    }
    for (std::size_t last = count_; last > 1;) {
      const Word moving = words_[last];
      words_[last] = words_[1];
      if (--last == 1) {
        words_[1] = moving;
      } else {
        place(moving, 1, last);
      }
    }
  }

 private:
  bool precedes(Word a, Word b) const { return (a | low_) < b; }

  // Lets `moving` sink from the free place i, instead of exchanging it at
  // each level. Which child is the greater can't be foreseen: no branch.
  void place(Word moving, std::size_t i, std::size_t last) {
    constexpr std::size_t kInLine = 64 / sizeof(Word);
    std::size_t j = 2 * i;
    while (j < last) {
      // The descendants that share a cache line, some levels below.
      __builtin_prefetch(words_ + j * (kInLine / 2));
      j += static_cast<std::size_t>(precedes(words_[j], words_[j + 1]));
      if (!precedes(moving, words_[j])) break;
      words_[i] = words_[j];
      i = j;
      j = 2 * i;
    }
    if (j == last && precedes(moving, words_[j])) {
      words_[i] = words_[j];
      i = j;
    }
    words_[i] = moving;
  }

  Word* words_;
  std::size_t count_;
  Word low_;
};

}  // namespace quill
