// Composes what a template laid over one selection gives.
//
// Most templates and selections are short and ASCII: those are blended a word
// at a time, with a mask that has the open positions set.
#pragma once

#include <algorithm>
#include <array>

#include "blocks/base.h"
#include "blocks/scratch.h"
#include "blocks/short_move.h"
#include "edit/overlay.h"

namespace quill {

class Composer {
 public:
  explicit Composer(const Template& form);

  // Whether memory for a long template was short.
  bool refused() const { return many_.refused(); }

  // Composes the selection [start, end) of `text` and returns the number of
  // bytes, which then lie at bytes(). Reads no more of the selection than the
  // template has characters: what is beyond them is dropped.
  Offset compose(const char* text, Offset start, Offset end);
  const char* bytes() const { return out_; }

  // Whether a selection, which lies at `own`, and the template are such that
  // each character of the template gives one byte.
  bool gives_bytes(const char* own, Offset length) const {
    return is_blended_ && are_ascii(own, std::min(length, count_));
  }

  // Puts what a selection that gives bytes is composed to at `to`.
  void put_bytes(const char* own, Offset length, char* to);

  // The same for one that is as long as the template, in its own place.
  void compose_over(char* own) const { blend(own, count_, own); }

 private:
  static constexpr Offset kFew = 64;
  using Few = std::array<char, kFew>;

  void prepare_blend();
  Offset compose_by_character(const char* text, Offset start, Offset end);

  static bool are_ascii(const char* bytes, Offset length) {
    std::uint64_t all = 0;
    if (length >= 8) {
      for (Offset at = 0; at + 8 < length; at += 8) {
        all |= load<std::uint64_t>(bytes + at);
      }
      all |= load<std::uint64_t>(bytes + length - 8);
    } else if (length >= 4) {
      all =
          load<std::uint32_t>(bytes) | load<std::uint32_t>(bytes + length - 4);
    } else {
      for (Offset at = 0; at < length; ++at) all |= load<Byte>(bytes + at);
    }
    return (all & 0x8080808080808080) == 0;
  }

  template <class Word>
  Word blended(const char* own, Offset at) const {
    const auto open = load<Word>(open_mask_.data() + at);
    const auto fixed = load<Word>(form_bytes_.data() + at);
    return static_cast<Word>((load<Word>(own + at) & open) | fixed);
  }

  // Blends a selection's bytes with the template. The place that they go to may
  // overlap their own, if it does not lie behind it.
  void blend(const char* own, Offset length, char* to) const {
    if (length >= 8) {
      const auto last = blended<std::uint64_t>(own, length - 8);
      for (Offset at = 0; at + 8 < length; at += 8) {
        store(to + at, blended<std::uint64_t>(own, at));
      }
      store(to + length - 8, last);
    } else if (length >= 4) {
      const auto first = blended<std::uint32_t>(own, 0);
      const auto last = blended<std::uint32_t>(own, length - 4);
      store(to, first);
      store(to + length - 4, last);
    } else {
      for (Offset at = 0; at < length; ++at) {
        store(to + at, blended<Byte>(own, at));
      }
    }
  }

  const Template form_;
  Offset count_;
  bool is_blended_;  // the template is short and ASCII
  // At open positions the form's byte is 0 and the mask's is 0xFF.
  Few form_bytes_;
  Few open_mask_;
  // What stands where a selection has nothing.
  Few characters_;
  std::array<char, 4 * kFew> few_;
  Scratch<char> many_;
  char* out_;
};

}  // namespace quill
