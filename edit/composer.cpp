#include "edit/composer.h"

#include <algorithm>

#include "utf8/characters.h"

namespace quill {
namespace {

bool is_ascii(std::int32_t packed) {
  return static_cast<std::uint32_t>(packed) < 0x80;
}

Offset append(std::int32_t packed, char* out) {
  if (!is_ascii(packed)) return unpack(packed, out);
  *out = static_cast<char>(packed);
  return 1;
}

}  // namespace

Composer::Composer(const Template& form)
    : form_(form),
      count_(std::ssize(form.characters)),
      is_blended_(count_ <= kFew &&
                  std::all_of(form.characters.begin(), form.characters.end(),
                              is_ascii)),
      many_(count_ <= kFew ? 0 : 4 * count_),
      out_(count_ <= kFew ? few_.data() : many_.data()) {
  if (is_blended_) prepare_blend();
}

void Composer::prepare_blend() {
  for (std::size_t i = 0; i < form_.characters.size(); ++i) {
    const bool is_open = form_.flags[i] != 1;
    characters_[i] = static_cast<char>(form_.characters[i]);
    open_mask_[i] = static_cast<char>(is_open ? 0xFF : 0);
    form_bytes_[i] = static_cast<char>(is_open ? 0 : form_.characters[i]);
  }
}

Offset Composer::compose(const char* text, Offset start, Offset end) {
  if (!gives_bytes(text + start, end - start)) {
    return compose_by_character(text, start, end);
  }
  put_bytes(text + start, end - start, out_);
  return count_;
}

void Composer::put_bytes(const char* own, Offset length, char* to) {
  if (length >= count_ && (to <= own || to == out_)) {
    return blend(own, count_, to);
  }
  // Elsewhere first: it would write over what is still to be read.
  if (length < count_) store(out_, characters_);
  blend(own, std::min(length, count_), out_);
  move_bytes(to, out_, count_);
}

Offset Composer::compose_by_character(const char* text, Offset start,
                                      Offset end) {
  Offset position = start;
  char* out = out_;
  for (std::size_t i = 0; i < form_.characters.size(); ++i) {
    const Character own = read_next(as_bytes(text), position, end);
    position = own.next;
    const bool stays = own.found && form_.flags[i] != 1;
    out += append(stays ? own.packed : form_.characters[i], out);
  }
  return out - out_;
}

}  // namespace quill
