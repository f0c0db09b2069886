// The edit that puts one string in place of every selection of a list.
#pragma once

#include <algorithm>
#include <span>
#include <string_view>

#include "blocks/base.h"
#include "selection/selection_list.h"

namespace quill {

class OneString {
 public:
  // `longs` is canonical; it must not change while this describes it.
  OneString(std::span<const std::int32_t> longs, std::string_view string)
      : selections_(selections_of(longs)), string_(string) {
    const Offset length = std::ssize(string_);
    Offset shrunk = 0;
    for (const Selection& selection : selections_) {
      growth_ += length - selection.length();
      shrunk += std::max<Offset>(selection.length() - length, 0);
    }
    shrinks_ = shrunk > 0;
  }

  Offset count() const { return std::ssize(selections_); }
  Offset start(Offset k) const { return at(k).start; }
  Offset end(Offset k) const { return at(k).end; }
  static bool is_kept(Offset) { return false; }
  std::string_view replacement(Offset) const { return string_; }
  Offset growth() const { return growth_; }

  // Whether any selection is longer than the string.
  bool shrinks() const { return shrinks_; }

 private:
  const Selection& at(Offset k) const {
    return selections_[static_cast<std::size_t>(k)];
  }

  std::span<const Selection> selections_;
  std::string_view string_;
  Offset growth_ = 0;
  bool shrinks_ = false;
};

}  // namespace quill
