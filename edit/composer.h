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

 private:
  static constexpr Offset kFew = 64;

  void prepare_blend();
  Offset compose_by_character(const char* text, Offset start, Offset end);

  // Blends as many bytes of the text as the template has characters. False
  // where they are not ASCII, and so not as many characters.
  bool blend(const char* own) {
    bool is_ascii = true;
    for (Offset i = 0; i + 8 < count_; i += 8) is_ascii &= blend_word(own, i);
    if (count_ >= 8) return is_ascii && blend_word(own, count_ - 8);
    for (Offset i = 0; i < count_; ++i) is_ascii &= blend_byte(own, i);
    return is_ascii;
  }

  // Blends one word, eight characters.
  bool blend_word(const char* own, Offset at) {
    const auto word = load<std::uint64_t>(own + at);
    const auto open = load<std::uint64_t>(open_mask_.data() + at);
    const auto fixed = load<std::uint64_t>(form_bytes_.data() + at);
    store(few_.data() + at, (word & open) | fixed);
    return (word & 0x8080808080808080) == 0;
  }

  bool blend_byte(const char* own, Offset at) {
    const auto i = static_cast<std::size_t>(at);
    few_[i] = static_cast<char>((own[i] & open_mask_[i]) | form_bytes_[i]);
    return (own[i] & 0x80) == 0;
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
