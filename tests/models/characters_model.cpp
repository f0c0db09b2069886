#include "tests/models/characters_model.h"

namespace quill::test {
namespace {

std::uint32_t byte_at(const char* text, std::int32_t position) {
  return static_cast<unsigned char>(text[position]);
}

bool is_continuation_at(const char* text, std::int32_t position) {
  return (byte_at(text, position) & 0xC0) == 0x80;
}

// By the first test that the byte passes.
std::int32_t announced_length(const char* text, std::int32_t position) {
  const std::uint32_t byte = byte_at(text, position);
  if ((byte & 0xF0) == 0xF0) return 4;
  if ((byte & 0xE0) == 0xE0) return 3;
  if ((byte & 0xC0) == 0xC0) return 2;
  return 1;
}

std::uint32_t packed_at(const char* text, std::int32_t start,
                        std::int32_t length) {
  std::uint32_t value = 0;
  for (std::int32_t i = 0; i < length; ++i) {
    value |= byte_at(text, start + i) << (8 * i);
  }
  return value;
}

std::uint32_t code_point_at(const char* text, std::int32_t start,
                            std::int32_t length) {
  static constexpr std::uint32_t kLeadBits[] = {0, 0xFF, 0x1F, 0x0F, 0x07};
  std::uint32_t value = byte_at(text, start) & kLeadBits[length];
  for (std::int32_t i = 1; i < length; ++i) {
    value = value << 6 | (byte_at(text, start + i) & 0x3F);
  }
  return value;
}

bool find_character(const char* text, std::int32_t position, std::int32_t end,
                    std::int32_t& start, std::int32_t& length) {
  if (position >= end || text == nullptr) return false;
  while (is_continuation_at(text, position)) {
    ++position;
    if (position == end) return false;
  }
  start = position;
  length = announced_length(text, position);
  return start + length <= end;
}

}  // namespace

std::int32_t model_get_next_as_long(const char* text, std::int32_t position,
                                    std::int32_t end, ReadOuts& outs) {
  std::int32_t start = 0;
  std::int32_t length = 0;
  outs.next = end;
  if (!find_character(text, position, end, start, length)) return 0;
  outs.start = start;
  outs.value = static_cast<std::int32_t>(packed_at(text, start, length));
  outs.next = start + length;
  return 1;
}

std::int32_t model_get_next_value(const char* text, std::int32_t position,
                                  std::int32_t end, ReadOuts& outs) {
  if (model_get_next_as_long(text, position, end, outs) == 0) return 0;
  outs.length = outs.next - outs.start;
  outs.value =
      static_cast<std::int32_t>(code_point_at(text, outs.start, outs.length));
  return 1;
}

std::int32_t model_get_containing(const char* text, std::int32_t position,
                                  std::int32_t end, ReadOuts& outs) {
  if (position < end && text != nullptr && is_continuation_at(text, position)) {
    for (std::int32_t i = position - 1; i >= 0; --i) {
      if (is_continuation_at(text, i)) continue;
      position = i;
      break;
    }
  }
  return model_get_next_as_long(text, position, end, outs);
}

std::int32_t model_get_previous(const char* text, std::int32_t position,
                                std::int32_t end, ReadOuts& outs) {
  outs.next = end;
  if (position > end || position < 1 || text == nullptr) return 0;
  for (std::int32_t i = position - 1; i >= 0; --i) {
    if (is_continuation_at(text, i)) continue;
    return model_get_containing(text, i, end, outs);
  }
  return 0;
}

std::int32_t model_count(const char* text, std::int32_t start, std::int32_t end,
                         std::int32_t* count) {
  *count = 0;
  if (start > end || start < 0 || text == nullptr) return 0;
  for (std::int32_t i = start; i < end; i += announced_length(text, i)) {
    ++*count;
  }
  return 1;
}

std::int32_t model_count_task(const char* text, std::int32_t start,
                              std::int32_t end, std::int32_t* count,
                              std::int32_t reference, YieldRecorder& host) {
  *count = 0;
  if (start > end || start < 0 || text == nullptr) return 0;
  NaiveMeter meter{host, reference};
  std::int32_t i = start;
  while (i < end && meter.go_on) {
    i += announced_length(text, i);
    ++*count;
    meter.tick(i);
  }
  return 1;
}

std::int32_t model_count_to_offset(const char* text, std::int32_t start,
                                   std::int32_t end, std::int32_t* count,
                                   std::int32_t* offset) {
  if (*count < 1) {
    *offset = end;
    return 0;
  }
  if (start < 0 || start >= end) {
    *count = 0;
    *offset = end;
    return 0;
  }
  *offset = start;
  std::int32_t stepped = 0;
  while (stepped < *count && *offset < end) {
    ReadOuts outs;
    const std::int32_t read = model_get_containing(text, *offset, end, outs);
    *offset = outs.next;
    if (read == 0) {
      *count = 0;
      return 0;
    }
    ++stepped;
  }
  if (stepped == *count) return 1;
  *count = stepped;
  return 0;
}

}  // namespace quill::test
