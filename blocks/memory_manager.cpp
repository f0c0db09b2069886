// Blocks over malloc and realloc. Growing a large Block leaves the moving to
// realloc, which remaps pages instead of copying them where the system can.
#include "blocks/memory_manager.h"

#include <cstddef>
#include <cstdlib>

namespace quill {
namespace {

struct Record {
  char* contents;        // the master pointer; must stay the first member
  std::size_t capacity;  // bytes behind `contents`; 0: it points at `nothing`
  std::int32_t size;
  bool locked;
  alignas(8) char nothing;  // what the contents of an empty Block point at
};

Record* record_of(QuillBlock block) {
  static_assert(offsetof(Record, contents) == 0);
  return reinterpret_cast<Record*>(block);
}

QuillBlock make_block(std::int32_t size, bool clear) {
  if (size < 0) return nullptr;
  auto* record = static_cast<Record*>(std::malloc(sizeof(Record)));
  if (record == nullptr) return nullptr;
  record->contents = &record->nothing;
  record->capacity = 0;
  record->size = 0;
  record->locked = false;
  record->nothing = 0;
  if (size == 0) return &record->contents;

  const auto capacity = static_cast<std::size_t>(size);
  void* contents = clear ? std::calloc(capacity, 1) : std::malloc(capacity);
  if (contents == nullptr) {
    std::free(record);
    return nullptr;
  }
  record->contents = static_cast<char*>(contents);
  record->capacity = capacity;
  record->size = size;
  return &record->contents;
}

bool reallocate(Record& record, std::size_t capacity) {
  void* old = record.capacity == 0 ? nullptr : record.contents;
  void* contents = std::realloc(old, capacity);
  if (contents == nullptr) return false;
  record.contents = static_cast<char*>(contents);
  record.capacity = capacity;
  return true;
}

void release_contents(Record& record) {
  if (record.capacity != 0) std::free(record.contents);
  record.contents = &record.nothing;
  record.capacity = 0;
}

// Room worth giving back. A Block that shrinks a little often grows again at
// once, so an eighth is left to it.
bool is_wasteful(std::size_t capacity, std::size_t size) {
  return capacity - size > capacity / 8;
}

}  // namespace

QuillBlock NewHandle(std::int32_t size) { return make_block(size, false); }

QuillBlock NewHandleClear(std::int32_t size) { return make_block(size, true); }

bool resize_handle(QuillBlock block, std::int32_t size) {
  if (block == nullptr || size < 0) return false;
  Record& record = *record_of(block);
  record.locked = false;
  const auto wanted = static_cast<std::size_t>(size);
  if (wanted > record.capacity) {
    if (!reallocate(record, wanted)) return false;
  } else if (wanted == 0) {
    release_contents(record);
  } else if (is_wasteful(record.capacity, wanted)) {
    // Giving memory back may fail without harm: the Block keeps the room.
    static_cast<void>(reallocate(record, wanted));
  }
  record.size = size;
  return true;
}

void SetHandleSize(QuillBlock block, std::int32_t size) {
  static_cast<void>(resize_handle(block, size));
}

std::int32_t GetHandleSize(QuillBlock block) {
  return block == nullptr ? 0 : record_of(block)->size;
}

void HLock(QuillBlock block) { record_of(block)->locked = true; }

void HUnlock(QuillBlock block) {
  if (block != nullptr) record_of(block)->locked = false;
}

bool is_locked(QuillBlock block) { return record_of(block)->locked; }

void DisposeHandle(QuillBlock block) {
  if (block == nullptr) return;
  release_contents(*record_of(block));
  std::free(record_of(block));
}

void move_contents(QuillBlock from, QuillBlock to) {
  Record& source = *record_of(from);
  Record& target = *record_of(to);
  if (source.capacity != 0) {
    target.contents = source.contents;
    target.capacity = source.capacity;
    target.size = source.size;
  }
  std::free(record_of(from));
}

}  // namespace quill
