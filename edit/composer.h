// Composes what a template laid over one selection gives.
//
// Most templates and selections are short and ASCII: those are blended a word
// at a time, with a mask that has the open positions set.
#pragma once

#include <array>

#include "blocks/base.h"
#include "blocks/scratch.h"
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

 private:
  static constexpr Offset kFew = 64;

  void prepare_blend();
  bool blend(const char* own);
  bool blend_word(const char* own, Offset at);

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
