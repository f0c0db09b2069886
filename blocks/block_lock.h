// A Block kept locked for as long as its contents are in use.
//
// Unlocking is unconditional: a Block that the host had locked comes back
// unlocked.
#pragma once

#include <span>

#include "blocks/base.h"
#include "blocks/memory_manager.h"

namespace quill {

class BlockLock {
 public:
  explicit BlockLock(QuillBlock block) : block_(block) {
    if (block_ != nullptr) HLock(block_);
  }
  ~BlockLock() { HUnlock(block_); }
  BlockLock(const BlockLock&) = delete;
  BlockLock& operator=(const BlockLock&) = delete;

  // Null for no Block. Valid until resize(); take it afresh afterwards.
  char* contents() const { return block_ == nullptr ? nullptr : *block_; }
  Byte* bytes() const { return reinterpret_cast<Byte*>(contents()); }
  Offset size() const { return GetHandleSize(block_); }

  // The contents as longs; what does not fill a long at the end is left out.
  std::span<std::int32_t> longs() const {
    return {reinterpret_cast<std::int32_t*>(contents()),
            static_cast<std::size_t>(size() / 4)};
  }

  // Unlocks, resizes and locks again, since the contents may move. False when
  // the size could not be had; the Block is locked all the same.
  [[nodiscard]] bool resize(Offset byte_count) {
    const bool resized =
        fits_long(byte_count) && resize_handle(block_, to_long(byte_count));
    if (block_ != nullptr) HLock(block_);
    return resized;
  }

 private:
  QuillBlock block_;
};

}  // namespace quill
