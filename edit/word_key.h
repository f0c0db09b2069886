// What a word table's words are found by: their UTF-8 bytes themselves, or the
// hash of long and odd words.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>

#include "blocks/base.h"

namespace quill {

// Bytes of a key, the first one least significant.
struct KeyBytes {
  std::uint64_t low;
  std::uint64_t high;

  static constexpr Offset kCount = 16;

  KeyBytes operator&(const KeyBytes& other) const {
    return {low & other.low, high & other.high};
  }
  bool operator==(const KeyBytes& other) const {
    return ((low ^ other.low) | (high ^ other.high)) == 0;
  }
  bool are_ascii() const { return ((low | high) & 0x8080808080808080) == 0; }

  static KeyBytes load(const void* from) {
    KeyBytes bytes;
    std::memcpy(&bytes.low, from, sizeof bytes.low);
    std::memcpy(&bytes.high, static_cast<const Byte*>(from) + 8,
                sizeof bytes.high);
    return bytes;
  }
  // All bits of the first `count` bytes.
  static KeyBytes first(Offset count) {
    static constexpr auto kEdge = [] {
      std::array<Byte, 2 * kCount> bytes{};
      std::fill_n(bytes.data(), kCount, Byte{0xFF});
      return bytes;
    }();
    return load(kEdge.data() + kCount - std::min(count, kCount));
  }
};

inline std::uint64_t hash_of(const KeyBytes& bytes, std::int32_t length) {
  std::uint64_t hash = bytes.low * 0x9E3779B97F4A7C15 +
                       bytes.high * 0xC2B2AE3D27D4EB4F +
                       static_cast<std::uint32_t>(length);
  hash = (hash ^ hash >> 32) * 0xD6E8FEB86659FD93;
  return hash ^ hash >> 32;
}

struct WordKey {
  KeyBytes bytes;       // or the hash, and 0
  std::int32_t length;  // in characters; ~length for a hash

  bool operator==(const WordKey& other) const {
    return bytes == other.bytes && length == other.length;
  }
  bool holds_characters() const { return length >= 0; }
};

// The characters of a word, or of a selection up to a point, one after the
// other. The hash is worked out when it is asked for, as long as the key has
// room for the characters.
class Beginning {
 public:
  Beginning() = default;
  // Of ASCII.
  Beginning(const KeyBytes& bytes, std::int32_t length)
      : bytes_(bytes), size_(length), length_(length) {}

  void add(std::int32_t character) {
    const auto bits = static_cast<std::uint32_t>(character);
    const Offset size = bytes_in(bits);
    if (fits_ && size != 0 && size_ + size <= KeyBytes::kCount) {
      append(bits);
      size_ += size;
    } else {
      hash_ = extend(hash(), bits);
      fits_ = false;
    }
    ++length_;
  }

  std::uint64_t hash() const {
    return fits_ ? hash_of(bytes_, length_) : hash_;
  }
  std::int32_t length() const { return length_; }
  WordKey key() const {
    if (fits_) return {bytes_, length_};
    return {{hash_, 0}, ~length_};
  }

 private:
  // Of a character in order; 0 for others. With these alone, no two texts have
  // the same bytes and length.
  static Offset bytes_in(std::uint32_t bits) {
    if (bits < 0x80) return 1;
    if ((bits & 0xFFFFC0E0) == 0x80C0) return 2;
    if ((bits & 0xFFC0C0F0) == 0x8080E0) return 3;
    return (bits & 0xC0C0C0F8) == 0x808080F0 ? 4 : 0;
  }

  void append(std::uint64_t bits) {
    const Offset in_high = size_ - 8;
    if (in_high >= 0) {
      bytes_.high |= bits << (8 * in_high);
    } else {
      bytes_.low |= bits << (8 * size_);
      // What goes beyond; a shift by all 64 bits is none.
      if (size_ > 4) bytes_.high |= bits >> (-8 * in_high);
    }
  }

  static std::uint64_t extend(std::uint64_t hash, std::uint32_t bits) {
    hash = (hash ^ bits) * 0xD6E8FEB86659FD93;
    return hash ^ hash >> 32;
  }

  KeyBytes bytes_{};
  Offset size_ = 0;
  std::uint64_t hash_ = 0;
  std::int32_t length_ = 0;
  bool fits_ = true;
};

}  // namespace quill
