// The platform layer: relocatable Blocks over the general heap.
//
// A Block is a pointer to its master pointer, and the master pointer is the
// first member of the Block's record. A Block of 0 bytes has an address too.
//
// The record may hold more memory than the Block's size says; the size is what
// counts, the rest is room that a later resize can use without a copy.
#pragma once

#include <cstdint>

#include "quillcore.h"

namespace quill {

// Null when `size` is negative or memory is short.
QuillBlock NewHandle(std::int32_t size);

// As NewHandle, filled with zero bytes.
QuillBlock NewHandleClear(std::int32_t size);

// Unlocks the Block and gives it `size` bytes, keeping the contents up to the
// smaller size. When that can't be had, or `size` is negative, the Block keeps
// its size and contents. Null is ignored.
void SetHandleSize(QuillBlock block, std::int32_t size);

// SetHandleSize that tells whether the Block now has `size` bytes.
[[nodiscard]] bool resize_handle(QuillBlock block, std::int32_t size);

// 0 for null.
std::int32_t GetHandleSize(QuillBlock block);

void HLock(QuillBlock block);

// Null is ignored.
void HUnlock(QuillBlock block);

bool is_locked(QuillBlock block);

// Null is ignored.
void DisposeHandle(QuillBlock block);

// Moves size and contents of a Block into an empty one, without copying, and
// disposes of the Block that they came from.
void move_contents(QuillBlock from, QuillBlock to);

}  // namespace quill
