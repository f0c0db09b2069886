// The few types that everything inside the library speaks in.
//
// At the border offsets and counts are 32-bit; inside they are `Offset`, wide
// enough that no sum of lengths can wrap. They are narrowed where they leave
// the library, through `to_long`.
#pragma once

#include <cassert>
#include <cstdint>

namespace quill {

using Byte = unsigned char;
using Offset = std::int64_t;

inline constexpr Offset kMaxLong = 2147483647;
inline constexpr Offset kMinLong = -kMaxLong - 1;

inline const Byte* as_bytes(const char* text) {
  return reinterpret_cast<const Byte*>(text);
}

inline bool fits_long(Offset value) { return value >= 0 && value <= kMaxLong; }

inline std::int32_t to_long(Offset value) {
  return static_cast<std::int32_t>(value);
}

}  // namespace quill
