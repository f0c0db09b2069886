// A fuzzer's bytes read as the things that calls are made of. Whatever the
// bytes, each draw answers; when they run out, zeros and empty texts come.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/random_text.h"
#include "tests/support/yield_recorder.h"

namespace quill::fuzz {

class FuzzInput {
 public:
  FuzzInput(const std::uint8_t* data, std::size_t size)
      : provider_(data, size) {}

  // Both ends included.
  int between(int low, int high) {
    return provider_.ConsumeIntegralInRange(low, high);
  }
  bool flag() { return provider_.ConsumeBool(); }
  unsigned char byte() { return provider_.ConsumeIntegral<unsigned char>(); }
  std::int32_t any_long() { return provider_.ConsumeIntegral<std::int32_t>(); }

  template <class T>
  const T& pick(const std::vector<T>& from) {
    return from[static_cast<std::size_t>(
        between(0, static_cast<int>(from.size()) - 1))];
  }

  // One character of the tests' alphabet, a stray, or any byte.
  std::string piece();

  // At most `pieces` of them, one after the other.
  std::string text(int pieces);

  // Packed characters of the alphabet, now and then any long.
  std::vector<std::int32_t> characters(int most);

  // Position flags: mostly 1 and 0, sometimes another byte.
  std::vector<unsigned char> flags(std::size_t count);

  // An offset about a text of `size` bytes: mostly inside, at times a little
  // outside, seldom anything.
  std::int32_t offset(std::size_t size);

  // Ascending keys and a value for each.
  struct MaskTable {
    std::vector<std::int32_t> keys;
    std::vector<std::int32_t> values;

    // Null for an empty mask, as a host without one passes it.
    const std::int32_t* key_data() const;
    const std::int32_t* value_data() const;
    std::int32_t count() const {
      return static_cast<std::int32_t>(keys.size());
    }
  };
  MaskTable mask(int most);

  // For YieldMaxScope.
  std::int32_t yield_max();

  // For YieldRecorder: the call to stop at, and what to answer there.
  struct Stop {
    int at;
    unsigned char answer;
  };
  Stop stop();

 private:
  FuzzedDataProvider provider_;
};

inline std::string FuzzInput::piece() {
  static const std::vector<std::string> strays = {
      "\x80", "\xBF\x80", "\xC3", "\xE2\x82", "\xF0\x9F", "\xFF", "\xE2"};
  const int kind = between(0, 15);
  if (kind < 12) return pick(test::alphabet());
  if (kind < 15) return pick(strays);
  return std::string(1, static_cast<char>(byte()));
}

inline std::string FuzzInput::text(int pieces) {
  std::string text;
  for (int left = between(0, pieces); left > 0; --left) text += piece();
  return text;
}

inline std::vector<std::int32_t> FuzzInput::characters(int most) {
  std::vector<std::int32_t> characters;
  for (int left = between(0, most); left > 0; --left) {
    characters.push_back(between(0, 15) == 15
                             ? any_long()
                             : test::packed(pick(test::alphabet())));
  }
  return characters;
}

inline std::vector<unsigned char> FuzzInput::flags(std::size_t count) {
  std::vector<unsigned char> flags(count);
  for (unsigned char& flag : flags) {
    const int kind = between(0, 7);
    flag = kind == 7 ? byte() : static_cast<unsigned char>(kind > 2);
  }
  return flags;
}

inline std::int32_t FuzzInput::offset(std::size_t size) {
  const int inside = static_cast<int>(size);
  const int kind = between(0, 15);
  if (kind < 12) return between(0, inside);
  if (kind < 15) return between(-3, inside + 3);
  return pick<std::int32_t>({std::numeric_limits<std::int32_t>::min(),
                             std::numeric_limits<std::int32_t>::max(), -1,
                             inside + 100});
}

inline const std::int32_t* FuzzInput::MaskTable::key_data() const {
  return keys.empty() ? nullptr : keys.data();
}

inline const std::int32_t* FuzzInput::MaskTable::value_data() const {
  return values.empty() ? nullptr : values.data();
}

inline FuzzInput::MaskTable FuzzInput::mask(int most) {
  MaskTable mask;
  mask.keys = characters(most);
  std::sort(mask.keys.begin(), mask.keys.end());
  for (std::size_t i = 0; i < mask.keys.size(); ++i) {
    mask.values.push_back(test::packed(pick(test::alphabet())));
  }
  return mask;
}

inline std::int32_t FuzzInput::yield_max() {
  const int kind = between(0, 7);
  return kind < 6 ? test::kYieldMaxima[kind] : between(1, 64);
}

inline FuzzInput::Stop FuzzInput::stop() {
  const int at = between(0, 31);
  return {at < 16 ? test::kNever : at - 16, pick<unsigned char>({0, 2, 255})};
}

}  // namespace quill::fuzz
