// Seeded random texts with every byte class in them, well-formed or not.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace quill::test {

class Random {
 public:
  explicit Random(std::uint32_t seed) : engine_(seed) {}

  // Both ends included.
  int between(int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(engine_);
  }
  bool one_in(int n) { return between(1, n) == 1; }

  template <class T>
  const T& pick(const std::vector<T>& from) {
    return from[static_cast<std::size_t>(
        between(0, static_cast<int>(from.size()) - 1))];
  }

 private:
  std::mt19937 engine_;
};

// A few characters of every length, close to each other so that matches are
// frequent.
inline const std::vector<std::string>& alphabet() {
  static const std::vector<std::string> characters = {"a",
                                                      "b",
                                                      "A",
                                                      " ",
                                                      "\n",
                                                      "\xC3\xA9",
                                                      "\xC3\x89",
                                                      "\xE2\x82\xAC",
                                                      "\xE4\xB8\xAD",
                                                      "\xF0\x9F\x98\x80"};
  return characters;
}

// `characters` of the alphabet, well-formed.
inline std::string random_text(Random& random, int characters) {
  std::string text;
  for (int i = 0; i < characters; ++i) text += random.pick(alphabet());
  return text;
}

// As random_text, with stray continuation bytes, cut characters and bytes that
// begin no valid character strewn in.
inline std::string random_bytes(Random& random, int characters) {
  static const std::vector<std::string> strays = {
      "\x80", "\xBF\x80", "\xC3", "\xE2\x82", "\xF0\x9F", "\xFF", "\xE2"};
  std::string text;
  for (int i = 0; i < characters; ++i) {
    text += random.one_in(5) ? random.pick(strays) : random.pick(alphabet());
  }
  return text;
}

// The bytes of one character as the long that stands for it.
inline std::int32_t packed(std::string_view character) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < character.size(); ++i) {
    value |= std::uint32_t{static_cast<unsigned char>(character[i])} << (8 * i);
  }
  return static_cast<std::int32_t>(value);
}

}  // namespace quill::test
