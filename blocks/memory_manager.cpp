// Blocks over malloc and realloc. Growing a large Block leaves the moving to
// realloc, which remaps pages instead of copying them where the system can.
#include "blocks/memory_manager.h"

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <cstring>

namespace quill {
namespace {

// Larger Blocks lie by themselves: they may be grown without a copy, and give
// memory back.
constexpr std::int32_t kMostOwnRoom = 512;

char* own_room(BlockRecord& record) {
  return reinterpret_cast<char*>(&record + 1);
}

bool is_detached(BlockRecord& record) {
  return record.contents != own_room(record);
}

BlockRecord* make_record(std::size_t room) {
  void* const memory = std::malloc(sizeof(BlockRecord) + room);
  if (memory == nullptr) return nullptr;
  auto* const record = static_cast<BlockRecord*>(memory);
  record->contents = own_room(*record);
  record->capacity = room;
  record->size = 0;
  record->own_room = static_cast<std::uint16_t>(room);
  record->locked = false;
  return record;
}

QuillBlock make_block(std::int32_t size, bool clear) {
  if (size < 0) return nullptr;
  const auto byte_count = static_cast<std::size_t>(size);
  const bool is_small = size <= kMostOwnRoom;
  BlockRecord* const record = make_record(is_small ? byte_count : 0);
  if (record == nullptr) return nullptr;
  record->size = size;
  if (is_small) {
    if (clear) std::memset(record->contents, 0, byte_count);
    return &record->contents;
  }
  void* const contents =
      clear ? std::calloc(byte_count, 1) : std::malloc(byte_count);
  if (contents == nullptr) {
    std::free(record);
    return nullptr;
  }
  record->contents = static_cast<char*>(contents);
  record->capacity = byte_count;
  return &record->contents;
}

bool reallocate(BlockRecord& record, std::size_t capacity) {
  const bool was_detached = is_detached(record);
  void* const contents = was_detached ? std::realloc(record.contents, capacity)
                                      : std::malloc(capacity);
  if (contents == nullptr) return false;
  if (!was_detached) {
    std::memcpy(contents, record.contents,
                static_cast<std::size_t>(record.size));
  }
  record.contents = static_cast<char*>(contents);
  record.capacity = capacity;
  return true;
}

void release_contents(BlockRecord& record) {
  if (is_detached(record)) std::free(record.contents);
  record.contents = own_room(record);
  record.capacity = record.own_room;
}

// Room worth giving back. A Block that shrinks a little often grows again at
// once, so an eighth is left to it.
bool is_wasteful(std::size_t capacity, std::size_t size) {
  return capacity - size > capacity / 8;
}

}  // namespace

QuillBlock NewHandle(std::int32_t size) { return make_block(size, false); }

QuillBlock NewHandleClear(std::int32_t size) { return make_block(size, true); }

QuillBlock new_handle_with_room(std::uint16_t byte_count) {
  BlockRecord* const record = make_record(byte_count);
  return record == nullptr ? nullptr : &record->contents;
}

bool resize_handle(QuillBlock block, std::int32_t size) {
  if (block == nullptr || size < 0) return false;
  BlockRecord& record = *record_of(block);
  record.locked = false;
  const auto wanted = static_cast<std::size_t>(size);
  if (wanted > record.capacity) {
    if (!reallocate(record, wanted)) return false;
  } else if (is_wasteful(record.capacity, wanted) && is_detached(record)) {
    if (wanted == 0) {
      release_contents(record);
    } else {
      // Giving memory back may fail without harm: the Block keeps the room.
      static_cast<void>(reallocate(record, wanted));
    }
  }
  record.size = size;
  return true;
}

void SetHandleSize(QuillBlock block, std::int32_t size) {
  static_cast<void>(resize_handle(block, size));
}

void DisposeHandle(QuillBlock block) {
  if (block == nullptr) return;
  BlockRecord* const record = record_of(block);
  if (is_detached(*record)) std::free(record->contents);
  std::free(record);
}

bool detach_contents(QuillBlock block) {
  BlockRecord& record = *record_of(block);
  const auto size = static_cast<std::size_t>(record.size);
  return is_detached(record) ||
         reallocate(record, std::max<std::size_t>(size, 1));
}

void move_contents(QuillBlock from, QuillBlock to) {
  BlockRecord& source = *record_of(from);
  BlockRecord& target = *record_of(to);
  assert(is_detached(source) || source.size == 0);
  if (is_detached(source)) {
    target.contents = source.contents;
    target.capacity = source.capacity;
    target.size = source.size;
  }
  std::free(&source);
}

}  // namespace quill
