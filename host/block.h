// A Block with an owner, and views of what it holds.
//
// A view stays valid until the Block is resized or handed to an editing call,
// which may move the contents.
#pragma once

#include <cstdint>
#include <new>
#include <span>
#include <string_view>
#include <utility>

#include "quillcore.h"

namespace quill::tool {

class Block {
 public:
  Block() = default;
  explicit Block(std::int32_t size) : block_(NewBlock(size)) {
    if (block_ == nullptr) throw std::bad_alloc();
  }
  ~Block() { reset(); }
  Block(Block&& other) noexcept
      : block_(std::exchange(other.block_, nullptr)) {}
  Block& operator=(Block&& other) noexcept {
    std::swap(block_, other.block_);
    return *this;
  }

  QuillBlock get() const { return block_; }

  // The variable that the library stores a new Block into.
  QuillBlock* slot() { return &block_; }
  QuillBlock* empty_slot() {
    reset();
    return &block_;
  }

  std::int32_t size() const {
    return block_ == nullptr ? 0 : GetBlockSize(block_);
  }

  void resize(std::int32_t size) {
    if (GetBlockSize(ResizeBlock(block_, size)) != size) throw std::bad_alloc();
  }

  char* data() const { return block_ == nullptr ? nullptr : LockBlock(block_); }
  std::string_view text() const {
    return {data(), static_cast<std::size_t>(size())};
  }

  // The contents as an array of longs.
  std::span<std::int32_t> longs() const {
    return {reinterpret_cast<std::int32_t*>(data()),
            static_cast<std::size_t>(size()) / sizeof(std::int32_t)};
  }

 private:
  void reset() {
    if (block_ != nullptr) DisposeBlock(std::exchange(block_, nullptr));
  }

  QuillBlock block_ = nullptr;
};

}  // namespace quill::tool
