// The edit that puts one string in place of every selection of a list.
//
// Places are noted in the list itself while the edit goes on: each pair is
// read before, and written after, its selection is dealt with.
#pragma once

#include <algorithm>
#include <span>
#include <string_view>

#include "blocks/block_lock.h"
#include "blocks/repeated_string.h"
#include "edit/size_limits.h"
#include "selection/selection_list.h"

namespace quill {

// What one look at a list tells an edit that puts `string_length` bytes in
// place of every selection.
struct ListSurvey {
  ListSurvey(std::span<const std::int32_t> longs, Offset text_length,
             Offset string_length) {
    const PairSurvey found = survey(longs, to_long(string_length));
    is_canonical = quill::is_canonical(longs, found, text_length);
    shrinks = found.exceeds;
    growth = std::ssize(longs) / 2 * string_length - Offset{found.total};
  }

  bool is_canonical;
  bool shrinks;   // some selection is longer than the string
  Offset growth;  // of the text; the lengths lie in it side by side
};

// Moves a selection to where it lies once those before it have shrunk by
// `shrunk` bytes, and it has been replaced if it shrinks itself.
inline void note(Selection& selection, Offset shrunk, Offset string_length) {
  const Offset kept = std::min(selection.length(), string_length);
  selection.start = to_long(selection.start - shrunk);
  selection.end = to_long(selection.start + kept);
}

template <bool notes_places>
class OneString {
 public:
  static constexpr bool kNotesPlaces = notes_places;

  // `selections` is canonical.
  OneString(std::span<Selection> selections, const RepeatedString& string)
      : selections_(selections), string_(&string) {}

  Offset count() const { return std::ssize(selections_); }
  Offset start(Offset k) const { return at(k).start; }
  Offset end(Offset k) const { return at(k).end; }
  static bool is_kept(Offset) { return false; }
  Offset length(Offset) const { return string_->length(); }
  void put(Offset, Offset, char* at, Room room) const {
    string_->put(at, room);
  }
  void note(Offset k, Offset shrunk) const {
    quill::note(at(k), shrunk, string_->length());
  }

 private:
  Selection& at(Offset k) const {
    return selections_[static_cast<std::size_t>(k)];
  }

  std::span<Selection> selections_;
  const RepeatedString* string_;
};

// splice() of the edit, for all who don't want the places noted.
[[nodiscard]] bool splice_string(BlockLock& text, const OneString<false>& edits,
                                 Offset growth, const SizeLimits& limits);

}  // namespace quill
