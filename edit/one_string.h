// The edit that puts one string in place of every selection of a list.
//
// Places are noted in the list itself while the edit goes on: each pair is
// read before, and written after, its selection is dealt with.
#pragma once

#include <algorithm>
#include <span>
#include <string_view>

#include "blocks/base.h"
#include "blocks/short_move.h"
#include "selection/selection_list.h"

namespace quill {

// What one look at a list tells an edit that puts `string_length` bytes in
// place of every selection.
struct ListSurvey {
  bool is_canonical;
  bool shrinks;   // some selection is longer than the string
  Offset growth;  // of the text
};

// Without a branch for a selection. The lengths add up in 32 bits: in a
// canonical list they lie in the text side by side.
inline ListSurvey survey(std::span<const std::int32_t> longs,
                         Offset text_length, Offset string_length) {
  if (longs.empty()) return {true, false, 0};
  if (longs.size() % 2 != 0) return {false, false, 0};
  const auto replacement = static_cast<std::int32_t>(string_length);
  std::uint32_t selected = 0;
  std::uint32_t descends = longs[0] < 0 ? 1 : 0;
  std::uint32_t shrinks = 0;
  for (std::size_t i = 1; i < longs.size(); i += 2) {
    const auto length = static_cast<std::uint32_t>(longs[i]) -
                        static_cast<std::uint32_t>(longs[i - 1]);
    descends |= longs[i] < longs[i - 1] ? 1 : 0;
    shrinks |= static_cast<std::int32_t>(length) > replacement ? 1 : 0;
    selected += length;
  }
  for (std::size_t i = 2; i < longs.size(); i += 2) {
    descends |= longs[i] < longs[i - 1] ? 1 : 0;
  }
  const auto count = static_cast<Offset>(longs.size() / 2);
  return {descends == 0 && longs.back() <= text_length, shrinks != 0,
          count * string_length - Offset{selected}};
}

template <bool notes_places>
class OneString {
 public:
  static constexpr bool kNotesPlaces = notes_places;

  // `selections` is canonical.
  OneString(std::span<Selection> selections, std::string_view string)
      : selections_(selections), string_(string) {}

  Offset count() const { return std::ssize(selections_); }
  Offset start(Offset k) const { return at(k).start; }
  Offset end(Offset k) const { return at(k).end; }
  static bool is_kept(Offset) { return false; }
  Offset length(Offset) const { return std::ssize(string_); }
  void put(Offset, Offset length, char* at) const {
    move_bytes(at, string_.data(), length);
  }
  void note(Offset k, Offset shrunk) const {
    Selection& selection = at(k);
    const Offset kept = std::min(selection.length(), std::ssize(string_));
    selection.start = to_long(selection.start - shrunk);
    selection.end = to_long(selection.start + kept);
  }

 private:
  Selection& at(Offset k) const {
    return selections_[static_cast<std::size_t>(k)];
  }

  std::span<Selection> selections_;
  std::string_view string_;
};

}  // namespace quill
