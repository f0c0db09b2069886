// Mapping stretches of ASCII bytes, many at once.
//
// Most masks move a few ranges of ASCII by a constant, such as A to Z by 32:
// those are applied to whole blocks in a form that compilers turn into vector
// code. Other masks go byte by byte through their table.
#pragma once

#include <array>
#include <cstring>

#include "blocks/base.h"

namespace quill {

class AsciiMap {
 public:
  // `table`: what the 128 characters map to, or null. It stays in use.
  explicit AsciiMap(const std::int32_t* table) : table_(table) {}

  // Looks for the ranges; worth it for long texts only.
  void find_ranges() {
    if (table_ == nullptr) return;
    has_ranges_ = true;
    for (std::int32_t byte = 0; byte < 128 && has_ranges_;) {
      const std::int32_t change = table_[byte] - byte;
      std::int32_t end = byte;
      while (end < 128 && table_[end] - end == change) ++end;
      if (change != 0) has_ranges_ = add_range(byte, end, change);
      byte = end;
    }
  }

  // Maps bytes from the start on as long as they are ASCII and give one byte
  // each. Returns their number, at most `most`.
  Offset map(const Byte* from, char* to, Offset most) const {
    Offset done = 0;
    // Between words of other scripts stands a single space: no block then.
    if (has_ranges_ && most >= kBlock && from[1] < 0x80) {
      while (done + kBlock <= most && is_ascii_block(from + done)) {
        map_block(from + done, to + done);
        done += kBlock;
      }
    }
    if (table_ == nullptr) return 0;
    while (done < most && from[done] < 0x80) {
      const std::int32_t mapped = table_[from[done]];
      if ((mapped & ~0xFF) != 0) break;
      to[done++] = static_cast<char>(mapped);
    }
    return done;
  }

 private:
  struct Range {
    Byte first;
    Byte count;
    Byte change;
  };
  static constexpr Offset kBlock = 64;
  static constexpr std::size_t kMostRanges = 4;

  bool add_range(std::int32_t first, std::int32_t end, std::int32_t change) {
    const bool single_bytes = first + change >= 0 && end - 1 + change <= 0xFF;
    if (!single_bytes || range_count_ == kMostRanges) return false;
    ranges_[range_count_++] = {static_cast<Byte>(first),
                               static_cast<Byte>(end - first),
                               static_cast<Byte>(change)};
    return true;
  }

  static bool is_ascii_block(const Byte* from) {
    std::array<std::uint64_t, kBlock / 8> words;
    std::memcpy(words.data(), from, kBlock);
    std::uint64_t any = 0;
    for (const std::uint64_t word : words) any |= word;
    return (any & 0x8080808080808080) == 0;
  }

  void map_block(const Byte* from, char* to) const {
    std::array<Byte, kBlock> block;
    std::memcpy(block.data(), from, kBlock);
    for (std::size_t r = 0; r < range_count_; ++r) {
      const Range range = ranges_[r];
      for (std::size_t i = 0; i < kBlock; ++i) {
        const bool inside =
            static_cast<Byte>(from[i] - range.first) < range.count;
        block[i] = static_cast<Byte>(block[i] + (inside ? range.change : 0));
      }
    }
    std::memcpy(to, block.data(), kBlock);
  }

  const std::int32_t* table_;
  std::array<Range, kMostRanges> ranges_{};
  std::size_t range_count_ = 0;
  bool has_ranges_ = false;
};

}  // namespace quill
