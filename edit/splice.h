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
#pragma once

#include <algorithm>

#include "blocks/block_lock.h"
#include "blocks/repeated_string.h"
#include "edit/run_moves.h"
#include "edit/size_limits.h"

namespace quill {

// `Edits` describes the selections; it is small, and copied. It is trusted: the
// selections ascend, don't overlap and lie in the text.
//   Offset count()
//   Offset start(k), end(k)     where selection k lies
//   bool is_kept(k)             selection k stays, as part of its run
//   Offset length(k)            of its replacement
//   void put(k, length, at, room)  writes the replacement of selection k, whose
//                               length was the last one asked for
//   kNotesPlaces                whether it wants to hear of
//   void note(k, shrunk)        selection k is done; those before it gave up
//                               `shrunk` bytes where they shrank
//
// The state of the loops is kept in locals and handed on by value: stores into
// the text could otherwise change it, as far as a compiler can tell.
template <class Edits>
class Splice {
 public:
  // `text` has room for the longer of the text and the result.
  Splice(char* text, Offset text_length, const Edits& edits)
      : text_(text), text_length_(text_length), edits_(edits) {}

  void run() const {
    Reached at = move_left({});
    while (at.next < edits_.count()) at = move_left(move_right(at));
    run_left(at.run_start, text_length_, at.shift);
  }

 private:
  // How far the edit has come.
  struct Reached {
    Offset next;       // selection to look at
    Offset run_start;  // what lies before is edited
    Offset shift;      // of the run that begins there
    Offset shrunk;     // by the selections before it that shrank
  };

  // A selection and the length of what replaces it.
  struct Place {
    Offset start;
    Offset end;
    Offset length;

    Offset change() const { return length - (end - start); }
    Offset shrinkage() const { return std::max<Offset>(-change(), 0); }
  };

  static void note(const Edits& edits, Offset k, Offset shrunk) {
    if constexpr (Edits::kNotesPlaces) edits.note(k, shrunk);
  }

  static Place place_of(const Edits& edits, Offset k) {
    return {edits.start(k), edits.end(k), edits.length(k)};
  }

  // Edits on while runs move left or stay. Stops at a selection behind which
  // the text moves right: up to that one it is edited.
  Reached move_left(Reached at) const {
    const Edits edits = edits_;
    const Offset count = edits.count();
    for (; at.next < count; ++at.next) {
      const Offset k = at.next;
      if (edits.is_kept(k)) {
        note(edits, k, at.shrunk);
        continue;
      }
      const Place place = place_of(edits, k);
      run_left(at.run_start, place.start, at.shift);
      at.run_start = place.start;
      const Offset shift = at.shift + place.change();
      if (shift > 0) break;
      edits.put(k, place.length, text_ + place.start + at.shift, {0, -shift});
      note(edits, k, at.shrunk);
      at.run_start = place.end;
      at.shift = shift;
      if constexpr (Edits::kNotesPlaces) at.shrunk += place.shrinkage();
    }
    return at;
  }

  // Edits the stretch of runs that move right and begins behind the selection
  // `from.next`; up to that one the text is edited.
  Reached move_right(const Reached from) const {
    const Edits edits = edits_;
    Reached last = from;
    Offset run_end = end_of_stretch(last);
    const Offset limit = last.next;
    Offset shift = last.shift;
    Offset shrunk = last.shrunk;
    // What ends the stretch goes first, while it can be read: its replacement
    // fits into its own bytes.
    if (limit < edits.count()) last = put_and_pass(edits, last);
    for (Offset k = limit; k-- > from.next;) {
      if (edits.is_kept(k)) {
        note(edits, k, shrunk);
        continue;
      }
      const Place place = place_of(edits, k);
      run_right(place.end, run_end, shift);
      shift -= place.change();
      edits.put(k, place.length, text_ + place.start + shift, {shift, 0});
      if constexpr (Edits::kNotesPlaces) shrunk -= place.shrinkage();
      note(edits, k, shrunk);
      run_end = place.start;
    }
    return last;
  }

  // Goes on to the first selection behind which nothing moves right any more,
  // and returns where the stretch before it ends.
  Offset end_of_stretch(Reached& at) const {
    const Edits edits = edits_;
    const Offset count = edits.count();
    for (; at.next < count; ++at.next) {
      if (edits.is_kept(at.next)) continue;
      const Place place = place_of(edits, at.next);
      if (at.shift + place.change() <= 0) return place.start;
      at.shift += place.change();
      at.shrunk += place.shrinkage();
    }
    at.run_start = text_length_;
    return text_length_;
  }

  // Replaces the selection `at.next`, and has the run behind it to move next.
  Reached put_and_pass(const Edits& edits, Reached at) const {
    const Place place = place_of(edits, at.next);
    edits.put(at.next, place.length, text_ + place.start + at.shift, {});
    note(edits, at.next, at.shrunk);
    return {at.next + 1, place.end, at.shift + place.change(),
            at.shrunk + place.shrinkage()};
  }

  // Both may write over what lies between a run and its place: there is nothing
  // that still has to be read, and nothing that is done.
  void run_left(Offset start, Offset end, Offset shift) const {
    if (shift == 0) return;
    move_run_left(text_ + start + shift, text_ + start, end - start,
                  std::min(-shift, text_length_ - start));
  }
  void run_right(Offset start, Offset end, Offset shift) const {
    if (shift == 0) return;
    move_run_right(text_ + start + shift, text_ + start, end - start,
                   std::min(shift, end));
  }

  char* text_;
  Offset text_length_;
  const Edits& edits_;
};

// Edits a Block and gives it the size of the result, `growth` bytes more than
// it has. False, and nothing is changed, when that size is outside the limits
// or can't be had.
template <class Edits>
[[nodiscard]] bool splice(BlockLock& text, const Edits& edits, Offset growth,
                          const SizeLimits& limits = {}) {
  const Offset old_size = text.size();
  const Offset new_size = old_size + growth;
  if (!limits.allow(new_size)) return false;
  if (growth > 0 && !text.resize(new_size)) return false;
  Splice(text.contents(), old_size, edits).run();
  // A smaller size is never refused.
  return growth >= 0 || text.resize(new_size);
}

}  // namespace quill
