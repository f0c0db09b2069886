#include "edit/composer.h"

#include <algorithm>

#include "edit/short_moves.h"
#include "utf8/characters.h"

namespace quill {
namespace {

constexpr std::uint64_t kHighBits = 0x8080808080808080;

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
    open_mask_[i] = static_cast<char>(is_open ? 0xFF : 0);
    form_bytes_[i] = static_cast<char>(is_open ? 0 : form_.characters[i]);
  }
}

// Blends one word, eight characters. False where they are not ASCII.
bool Composer::blend_word(const char* own, Offset at) {
  const auto word = load<std::uint64_t>(own + at);
  const auto open = load<std::uint64_t>(open_mask_.data() + at);
  const auto fixed = load<std::uint64_t>(form_bytes_.data() + at);
  store(out_ + at, (word & open) | fixed);
  return (word & kHighBits) == 0;
}

// Blends as many bytes of the text as the template has characters. False where
// they are not ASCII, and so not as many characters.
bool Composer::blend(const char* own) {
  if (count_ < 8) {
    char high = 0;
    for (Offset i = 0; i < count_; ++i) {
      const auto at = static_cast<std::size_t>(i);
      out_[i] = static_cast<char>((own[i] & open_mask_[at]) | form_bytes_[at]);
      high = static_cast<char>(high | own[i]);
    }
    return (high & 0x80) == 0;
  }
  for (Offset i = 0; i + 8 < count_; i += 8) {
    if (!blend_word(own, i)) return false;
  }
  return blend_word(own, count_ - 8);
}

Offset Composer::compose(const char* text, Offset start, Offset end) {
  if (is_blended_ && end - start >= count_ && blend(text + start)) {
    return count_;
  }
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
