// Composes what a template laid over one selection gives.
//
// Most templates and selections are short and ASCII: those are blended a word
// at a time, with a mask that has the open positions set.
#pragma once

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
  Offset compose(const char* text, Offset start, Offset end) {
    if (is_blended_ && end - start >= count_ && blend(text + start)) {
      return count_;
    }
    return compose_by_character(text, start, end);
  }
  const char* bytes() const { return out_; }

  // Whether the template can be laid over the bytes of the text, as many as it
  // has characters, without a change in length; and laying it there.
  bool is_blended() const { return is_blended_; }
  bool is_ascii_text(const char* own) const {
    std::uint64_t all = 0;
    for_each_word(
        [&]<class Word>(Offset at, Word) { all |= load<Word>(own + at); });
    return (all & 0x8080808080808080) == 0;
  }
  void blend_over(char* own) const {
    for_each_word([&]<class Word>(Offset at, Word) {
      store(own + at, blended<Word>(own, at));
    });
  }

 private:
  static constexpr Offset kFew = 64;

  void prepare_blend();
  Offset compose_by_character(const char* text, Offset start, Offset end);

  // Calls `visit` with where in a short template words begin that together
  // cover it, and with such a word. They may overlap.
  template <class Visit>
  void for_each_word(Visit visit) const {
    if (count_ >= 8) {
      for (Offset at = 0; at + 8 < count_; at += 8) visit(at, std::uint64_t{});
      visit(count_ - 8, std::uint64_t{});
    } else if (count_ >= 4) {
      visit(0, std::uint32_t{});
      visit(count_ - 4, std::uint32_t{});
    } else {
      for (Offset at = 0; at < count_; ++at) visit(at, std::uint8_t{});
    }
  }

  template <class Word>
  Word blended(const char* own, Offset at) const {
    const auto open = load<Word>(open_mask_.data() + at);
    const auto fixed = load<Word>(form_bytes_.data() + at);
    return static_cast<Word>((load<Word>(own + at) & open) | fixed);
  }

  // Blends as many bytes of the text as the template has characters. False
  // where they are not ASCII, and so not as many characters.
  bool blend(const char* own) {
    for_each_word([&]<class Word>(Offset at, Word) {
      store(few_.data() + at, blended<Word>(own, at));
    });
    return is_ascii_text(own);
  }

  const Template form_;
  Offset count_;
  bool is_blended_;  // the template is short and ASCII
  // At open positions the form's byte is 0 and the mask's is 0xFF.
  std::array<char, kFew> form_bytes_;
  std::array<char, kFew> open_mask_;
  std::array<char, 4 * kFew> few_;
  Scratch<char> many_;
  char* out_;
};

}  // namespace quill
