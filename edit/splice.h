// Rewrites a Block at its selections, in place: every selection gives way to
// its replacement, whether shorter or longer, and no working memory is used.
//
// The bytes between two selections are a run. A run moves by the sum of the
// changes in length before it, left or right. A run that moves left, or stays,
// can only cover what lies before its own end; one that moves right, only what
// lies behind its own start. So runs that move left are moved in text order, a
// stretch of runs that move right is moved from its last to its first, and the
// stretches don't disturb each other: every byte is moved once, whatever
// mixture of growing and shrinking the edit is.
//
// `Edits` describes the selections. It is trusted: they ascend, don't overlap
// and lie in the text.
//   Offset count()
//   Offset start(k), end(k)          where selection k lies
//   bool is_kept(k)                  selection k stays, as part of its run
//   std::string_view replacement(k)  asked only of those that don't stay
//   Offset growth()                  the sum of all changes in length
#pragma once

#include <algorithm>
#include <string_view>

#include "blocks/block_lock.h"
#include "edit/short_moves.h"

namespace quill {

template <class Edits>
class Splice {
 public:
  // `text` has room for the longer of the text and the result.
  Splice(char* text, Offset text_length, const Edits& edits)
      : text_(text), text_length_(text_length), edits_(edits) {}

  void run() {
    const Offset count = edits_.count();
    Offset k = 0;
    while (k < count) {
      if (edits_.is_kept(k)) {
        ++k;
        continue;
      }
      move_run(run_start_, edits_.start(k), shift_);
      const Offset next_shift = shift_ + change(k);
      if (next_shift > 0) {
        k = move_right(k);
        continue;
      }
      put_replacement(k, shift_);
      run_start_ = edits_.end(k);
      shift_ = next_shift;
      ++k;
    }
    move_run(run_start_, text_length_, shift_);
  }

 private:
  // Edits the stretch that begins with the replacement at `first` and whose
  // runs all move right. Returns the selection that ends it; the bytes before
  // that one are then where they belong.
  Offset move_right(Offset first) {
    Offset shift = shift_;
    const Offset limit = end_of_stretch(first, shift);
    const Offset stretch_end =
        limit == edits_.count() ? text_length_ : edits_.start(limit);
    run_start_ = stretch_end;
    shift_ = shift;
    Offset run_end = stretch_end;
    for (Offset k = limit; k-- > first;) {
      if (edits_.is_kept(k)) continue;
      move_run(edits_.end(k), run_end, shift);
      shift -= change(k);
      put_replacement(k, shift);
      run_end = edits_.start(k);
    }
    return limit;
  }

  // The first selection from `first` on behind which nothing moves right.
  // `shift` goes from that before the stretch to that of its last run.
  Offset end_of_stretch(Offset first, Offset& shift) const {
    const Offset count = edits_.count();
    Offset k = first;
    for (; k < count; ++k) {
      if (edits_.is_kept(k)) continue;
      const Offset next_shift = shift + change(k);
      if (next_shift <= 0) break;
      shift = next_shift;
    }
    return k;
  }

  Offset change(Offset k) const {
    return std::ssize(edits_.replacement(k)) - edits_.end(k) + edits_.start(k);
  }

  void move_run(Offset start, Offset end, Offset shift) {
    if (shift != 0)
      move_bytes(text_ + start + shift, text_ + start, end - start);
  }

  void put_replacement(Offset k, Offset shift) {
    const std::string_view bytes = edits_.replacement(k);
    move_bytes(text_ + edits_.start(k) + shift, bytes.data(),
               std::ssize(bytes));
  }

  char* text_;
  Offset text_length_;
  const Edits& edits_;
  Offset run_start_ = 0;  // what lies before is edited
  Offset shift_ = 0;      // of the run that begins there
};

// Edits a Block and gives it the size of the result. False, and nothing is
// changed, when that size is above `longest` or can't be had.
template <class Edits>
[[nodiscard]] bool splice(BlockLock& text, const Edits& edits,
                          Offset longest = kMaxLong) {
  const Offset old_size = text.size();
  const Offset new_size = old_size + edits.growth();
  if (new_size > longest) return false;
  if (new_size > old_size && !text.resize(new_size)) return false;
  Splice(text.contents(), old_size, edits).run();
  // A smaller size is never refused.
  return new_size >= old_size || text.resize(new_size);
}

}  // namespace quill
