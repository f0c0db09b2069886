// The exported Block operations: the platform layer, under the host's names.
#include <cstring>

#include "blocks/memory_manager.h"
#include "quillcore.h"

using namespace quill;

QuillBlock NewBlock(std::int32_t size) { return NewHandle(size); }

QuillBlock NewBlockClear(std::int32_t size) { return NewHandleClear(size); }

QuillBlock ResizeBlock(QuillBlock block, std::int32_t size) {
  SetHandleSize(block, size);
  return block;
}

std::int32_t GetBlockSize(QuillBlock block) { return GetHandleSize(block); }

char* LockBlock(QuillBlock block) {
  HLock(block);
  return *block;
}

void UnlockBlock(QuillBlock block) { HUnlock(block); }

void DisposeBlock(QuillBlock block) { DisposeHandle(block); }

void MoveBytes(const void* source, void* destination, std::int32_t count) {
  if (count > 0) {
    std::memmove(destination, source, static_cast<std::size_t>(count));
  }
}
