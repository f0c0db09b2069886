#include "blocks/repeated_string.h"

namespace quill {

RepeatedString::RepeatedString(std::string_view string, Offset times)
    : string_(string) {
  constexpr Offset kMany = 8;
  is_short_ = times >= kMany && length() <= kStored;
  if (!is_short_) return;
  buffer_.fill(0);
  move_bytes(buffer_.data() + kStored, string.data(), length());
}

void RepeatedString::put_alone(char* to) const {
  move_bytes(to, string_.data(), length());
}

}  // namespace quill
