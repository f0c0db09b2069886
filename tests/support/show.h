// Arguments and outcomes in words, for reports of a difference.
#pragma once

#include <concepts>
#include <optional>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/support/blocks.h"

namespace quill::test {

std::string show(std::integral auto number) { return std::to_string(number); }
template <class Enum>
requires std::is_enum_v<Enum> std::string show(Enum value) {
  return std::to_string(static_cast<int>(value));
}
inline std::string show(const char* words) { return words; }

// In quotes, with what is not printable ASCII in hexadecimal.
std::string show(const std::string& bytes);
std::string show(const Longs& longs);
std::string show(const std::vector<unsigned char>& flags);
std::string show(const BlockState& block);

template <class T>
std::string show(const std::optional<T>& value) {
  return value ? show(*value) : "none";
}

inline void PrintTo(const BlockState& block, std::ostream* out) {
  *out << show(block);
}

// "start 3 end 9 " from "start", 3, "end", 9.
inline std::string show_fields() { return {}; }
template <class Value, class... Rest>
std::string show_fields(const char* name, const Value& value,
                        const Rest&... rest) {
  return std::string(name) + ' ' + show(value) + ' ' + show_fields(rest...);
}

}  // namespace quill::test
