// Blocks as tests hold them: made from bytes or longs, read back, disposed of
// at the end of the scope; and what is in a variable for one.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "blocks/memory_manager.h"
#include "quillcore.h"

namespace quill::test {

using Longs = std::vector<std::int32_t>;

std::int32_t length_of(const auto& container) {
  return static_cast<std::int32_t>(container.size());
}

// The table of pointers in which a host passes its entries.
template <class Entry>
std::vector<Entry*> pointers_to(std::vector<Entry>& entries) {
  std::vector<Entry*> pointers(entries.size());
  for (std::size_t i = 0; i < entries.size(); ++i) pointers[i] = &entries[i];
  return pointers;
}

inline std::string bytes_of(QuillBlock block) {
  if (block == nullptr) return {};
  return {*block, static_cast<std::size_t>(GetBlockSize(block))};
}

inline Longs longs_in(std::string_view bytes) {
  Longs longs(bytes.size() / 4);
  if (!longs.empty()) std::memcpy(longs.data(), bytes.data(), longs.size() * 4);
  return longs;
}

inline std::string_view bytes_in(const Longs& longs) {
  return {reinterpret_cast<const char*>(longs.data()), longs.size() * 4};
}

inline Longs longs_of(QuillBlock block) { return longs_in(bytes_of(block)); }

// While one is alive, a watch on the heap refuses nothing: what tests make for
// themselves they get.
class RequestsAllowed {
 public:
  RequestsAllowed() { ++alive_; }
  ~RequestsAllowed() { --alive_; }
  RequestsAllowed(const RequestsAllowed&) = delete;
  RequestsAllowed& operator=(const RequestsAllowed&) = delete;

  static bool any() { return alive_ != 0; }

 private:
  static inline int alive_ = 0;
};

// A new Block of the bytes or longs, for the caller to dispose of.
inline QuillBlock block_of(std::string_view bytes) {
  const RequestsAllowed allowed;
  const QuillBlock block = NewBlock(static_cast<std::int32_t>(bytes.size()));
  if (!bytes.empty()) std::memcpy(*block, bytes.data(), bytes.size());
  return block;
}
inline QuillBlock block_of(const Longs& longs) {
  return block_of(bytes_in(longs));
}

// Gives a Block other contents, and unlocks it.
inline void set_bytes(QuillBlock block, std::string_view bytes) {
  const RequestsAllowed allowed;
  ResizeBlock(block, static_cast<std::int32_t>(bytes.size()));
  if (!bytes.empty()) std::memcpy(*block, bytes.data(), bytes.size());
}

// What a variable for a Block holds before a call that may write it: no Block,
// but not null either.
inline QuillBlock untouched() {
  static char* contents = nullptr;
  return &contents;
}

struct BlockState {
  enum class Kind { kUntouched, kNull, kUnlocked, kLocked };
  Kind kind = Kind::kUntouched;
  std::string bytes = {};

  bool operator==(const BlockState&) const = default;
};

inline const BlockState kNoBlock = {BlockState::Kind::kNull};
inline BlockState unlocked(std::string_view bytes) {
  return {BlockState::Kind::kUnlocked, std::string(bytes)};
}

inline BlockState state_of(QuillBlock block) {
  if (block == untouched()) return {};
  if (block == nullptr) return kNoBlock;
  return {is_locked(block) ? BlockState::Kind::kLocked
                           : BlockState::Kind::kUnlocked,
          bytes_of(block)};
}

class HeldBlock {
 public:
  HeldBlock() = default;
  explicit HeldBlock(QuillBlock held) : block(held) {}
  explicit HeldBlock(std::string_view bytes) : block(block_of(bytes)) {}
  explicit HeldBlock(const Longs& longs) : block(block_of(longs)) {}
  ~HeldBlock() {
    if (block != untouched()) DisposeBlock(block);
  }
  HeldBlock(const HeldBlock&) = delete;
  HeldBlock& operator=(const HeldBlock&) = delete;

  std::string bytes() const { return bytes_of(block); }
  Longs longs() const { return longs_of(block); }

  QuillBlock block = nullptr;
};

}  // namespace quill::test
