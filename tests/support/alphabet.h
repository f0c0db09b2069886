// The characters that drawn texts are made of, and texts and sets of any.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quill::test {

// A few of every length, close to each other so that matches are frequent.
inline const std::vector<std::string>& alphabet() {
  static const std::vector<std::string> characters = {
      "a",      "b",      "A",      " ",      "\n",
      "\u00E9", "\u00C9", "\u20AC", "\u4E2D", "\U0001F600"};
  return characters;
}

// Continuation bytes that no character claims, characters cut short, and bytes
// that begin none.
inline const std::vector<std::string>& strays() {
  static const std::vector<std::string> pieces = {
      "\x80", "\xBF\x80", "\xC3", "\xE2\x82", "\xF0\x9F", "\xFF", "\xE2"};
  return pieces;
}

// The bytes of one character as the long that stands for it.
inline std::int32_t packed(std::string_view character) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < character.size(); ++i) {
    value |= std::uint32_t{static_cast<unsigned char>(character[i])} << (8 * i);
  }
  return static_cast<std::int32_t>(value);
}

// The characters of a well-formed text.
inline std::vector<std::int32_t> spell(std::string_view text) {
  std::vector<std::int32_t> longs;
  while (!text.empty()) {
    std::size_t length = 1;
    while (length < text.size() && (text[length] & 0xC0) == 0x80) ++length;
    longs.push_back(packed(text.substr(0, length)));
    text.remove_prefix(length);
  }
  return longs;
}

// The piece over and over, until there are so many bytes or a few more.
inline std::string repeated(std::string_view piece, std::size_t bytes) {
  std::string text;
  while (text.size() < bytes) text += piece;
  return text;
}

// The characters of a well-formed text as a set in order.
inline std::vector<std::int32_t> set_of(std::string_view characters) {
  std::vector<std::int32_t> set = spell(characters);
  std::sort(set.begin(), set.end());
  return set;
}

}  // namespace quill::test
