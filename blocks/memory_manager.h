// The platform layer: relocatable Blocks over the general heap.
//
// A Block is a pointer to its master pointer, and the master pointer is the
// first member of the Block's record. A Block of 0 bytes has an address too.
//
// The record may hold more memory than the Block's size says; the size is what
// counts, the rest is room that a later resize can use without a copy. A small
// Block lies behind its record, so that it takes one allocation; once it has
// outgrown that room, it lies by itself.
#pragma once

#include <cstddef>
#include <cstdint>

#include "quillcore.h"

namespace quill {

struct alignas(std::max_align_t) BlockRecord {
  char* contents;        // the master pointer; must stay the first member
  std::size_t capacity;  // bytes at `contents`
  std::int32_t size;
  std::uint16_t own_room;  // bytes behind the record
  bool locked;
};

inline BlockRecord* record_of(QuillBlock block) {
  static_assert(offsetof(BlockRecord, contents) == 0);
  return reinterpret_cast<BlockRecord*>(block);
}

// Null when `size` is negative or memory is short.
QuillBlock NewHandle(std::int32_t size);

// An empty Block with room for `byte_count` bytes, a few hundred at most: no
// size up to there is refused it.
QuillBlock new_handle_with_room(std::uint16_t byte_count);

// As NewHandle, filled with zero bytes.
QuillBlock NewHandleClear(std::int32_t size);

// Unlocks the Block and gives it `size` bytes, keeping the contents up to the
// smaller size. When that can't be had, or `size` is negative, the Block keeps
// its size and contents. Null is ignored.
void SetHandleSize(QuillBlock block, std::int32_t size);

// SetHandleSize that tells whether the Block now has `size` bytes.
[[nodiscard]] bool resize_handle(QuillBlock block, std::int32_t size);

// 0 for null.
inline std::int32_t GetHandleSize(QuillBlock block) {
  return block == nullptr ? 0 : record_of(block)->size;
}

inline void HLock(QuillBlock block) { record_of(block)->locked = true; }

// Null is ignored.
inline void HUnlock(QuillBlock block) {
  if (block != nullptr) record_of(block)->locked = false;
}

inline bool is_locked(QuillBlock block) { return record_of(block)->locked; }

// Null is ignored.
void DisposeHandle(QuillBlock block);

// Sees to it that the contents can be handed to another Block. False, and
// nothing is changed, when memory is short.
[[nodiscard]] bool detach_contents(QuillBlock block);

// Moves size and contents of a Block, which are detached, into an empty one,
// without copying, and disposes of the Block that they came from.
void move_contents(QuillBlock from, QuillBlock to);

}  // namespace quill
