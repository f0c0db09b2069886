// Seeded random texts with every byte class in them, well-formed or not.
#pragma once

#include <random>

#include "tests/support/alphabet.h"

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

// `characters` of the alphabet, well-formed.
inline std::string random_text(Random& random, int characters) {
  std::string text;
  for (int i = 0; i < characters; ++i) text += random.pick(alphabet());
  return text;
}

// As random_text, with strays strewn in.
inline std::string random_bytes(Random& random, int characters) {
  std::string text;
  for (int i = 0; i < characters; ++i) {
    text += random.one_in(5) ? random.pick(strays()) : random.pick(alphabet());
  }
  return text;
}

}  // namespace quill::test
