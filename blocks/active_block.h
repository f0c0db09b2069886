// An output Block being filled: appends bytes, grows by its user's rule, and
// is finished (trimmed) or dropped.
//
// Invariant: the Block is locked, the capacity equals its size, and what is in
// use never exceeds the capacity. Once a growth was refused the Block is gone.
#pragma once

#include <cstring>
#include <span>
#include <utility>

#include "blocks/base.h"
#include "blocks/memory_manager.h"

namespace quill {

// The resizing behind ResizeActiveBlock. False: the Block has been disposed of
// (or there was none), and neither variable is current any more.
[[nodiscard]] bool resize_active(QuillBlock& block, std::int32_t& capacity,
                                 char*& contents, Offset size);

class ActiveBlock {
 public:
  explicit ActiveBlock(std::int32_t capacity);
  ~ActiveBlock() { DisposeHandle(block_); }
  ActiveBlock(const ActiveBlock&) = delete;
  ActiveBlock& operator=(const ActiveBlock&) = delete;

  // Whether there is a Block: false when memory was short from the start, and
  // after a refused growth.
  bool alive() const { return block_ != nullptr; }

  QuillBlock block() const { return block_; }
  Offset capacity() const { return capacity_; }
  Offset in_use() const { return in_use_; }
  Offset room() const { return capacity_ - in_use_; }

  // Where the next byte goes. Valid until the next growth.
  char* write_position() { return contents_ + in_use_; }

  // Gives the Block `size` bytes of capacity. False: the Block is gone.
  [[nodiscard]] bool resize(Offset size);

  // Appends what already lies at write_position(), or copies it there. The
  // caller has made room.
  void advance(Offset byte_count) {
    assert(byte_count <= room());
    in_use_ += byte_count;
  }
  void append(const void* bytes, Offset byte_count) {
    if (byte_count <= 0) return;
    std::memcpy(write_position(), bytes, static_cast<std::size_t>(byte_count));
    advance(byte_count);
  }

  // Unlocks the Block, trims it to what is in use and gives up owning it.
  QuillBlock finish();

 private:
  QuillBlock block_;
  char* contents_;
  Offset in_use_ = 0;
  std::int32_t capacity_;
};

}  // namespace quill
