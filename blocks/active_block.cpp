#include "blocks/active_block.h"

#include "quillcore.h"

namespace quill {

bool resize_active(QuillBlock& block, std::int32_t& capacity, char*& contents,
                   Offset size) {
  if (capacity == size) return true;
  if (block == nullptr) return false;
  if (!fits_long(size) || !resize_handle(block, to_long(size))) {
    DisposeHandle(block);
    return false;
  }
  HLock(block);
  contents = *block;
  capacity = to_long(size);
  return true;
}

ActiveBlock::ActiveBlock(std::int32_t capacity)
    : block_(NewHandle(capacity)),
      contents_(block_ == nullptr ? nullptr : *block_),
      capacity_(capacity) {
  if (block_ != nullptr) HLock(block_);
}

bool ActiveBlock::resize(Offset size) {
  if (resize_active(block_, capacity_, contents_, size)) return true;
  block_ = nullptr;
  return false;
}

QuillBlock ActiveBlock::finish() {
  HUnlock(block_);
  // Trimming never fails: at worst the Block keeps room beyond its size.
  if (in_use_ < capacity_) SetHandleSize(block_, to_long(in_use_));
  return std::exchange(block_, nullptr);
}

}  // namespace quill

std::int32_t ResizeActiveBlock(QuillBlock* block, std::int32_t* capacity,
                               char** contents, std::int32_t size) {
  return quill::resize_active(*block, *capacity, *contents, size) ? 1 : 0;
}
