// A byte string as a host passes it, an address and a length, and what makes
// it usable.
#pragma once

#include <string_view>

#include "blocks/base.h"

namespace quill {

// An address may be missing where there is nothing to read.
inline bool is_byte_string(const char* bytes, std::int32_t length) {
  return length == 0 || (length > 0 && bytes != nullptr);
}

// Of one that is_byte_string().
inline std::string_view byte_string(const char* bytes, std::int32_t length) {
  if (length == 0) return {};
  return {bytes, static_cast<std::size_t>(length)};
}

}  // namespace quill
