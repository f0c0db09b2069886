// Blocks as tests hold them: made from bytes or longs, read back, disposed of
// at the end of the scope.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "quillcore.h"

namespace quill::test {

using Longs = std::vector<std::int32_t>;

inline std::string bytes_of(QuillBlock block) {
  if (block == nullptr) return {};
  return {*block, static_cast<std::size_t>(GetBlockSize(block))};
}

inline Longs longs_of(QuillBlock block) {
  const std::string bytes = bytes_of(block);
  Longs longs(bytes.size() / 4);
  if (!longs.empty()) std::memcpy(longs.data(), bytes.data(), longs.size() * 4);
  return longs;
}

class HeldBlock {
 public:
  HeldBlock() = default;
  explicit HeldBlock(std::string_view bytes)
      : block(NewBlock(static_cast<std::int32_t>(bytes.size()))) {
    if (!bytes.empty()) std::memcpy(*block, bytes.data(), bytes.size());
  }
  explicit HeldBlock(const Longs& longs)
      : HeldBlock(std::string_view(reinterpret_cast<const char*>(longs.data()),
                                   longs.size() * 4)) {}
  ~HeldBlock() { DisposeBlock(block); }
  HeldBlock(const HeldBlock&) = delete;
  HeldBlock& operator=(const HeldBlock&) = delete;

  std::string bytes() const { return bytes_of(block); }
  Longs longs() const { return longs_of(block); }

  QuillBlock block = nullptr;
};

}  // namespace quill::test
