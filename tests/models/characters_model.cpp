#include "tests/models/naive.h"

namespace quill::naive {
namespace {

std::uint32_t byte_at(const char* text, std::int64_t position) {
  return static_cast<unsigned char>(text[position]);
}

// By the first test that the byte passes.
Long announced_length(const char* text, Long position) {
  const std::uint32_t byte = byte_at(text, position);
  if (byte >= 0xF0) return 4;
  if (byte >= 0xE0) return 3;
  if (byte >= 0xC0) return 2;
  return 1;
}

Long code_point_at(const char* text, Long start, Long length) {
  static constexpr std::uint32_t kLeadBits[] = {0, 0xFF, 0x1F, 0x0F, 0x07};
  std::uint32_t value = byte_at(text, start) & kLeadBits[length];
  for (Long i = 1; i < length; ++i) {
    value = value << 6 | (byte_at(text, start + i) & 0x3F);
  }
  return static_cast<Long>(value);
}

Long report(const Character& read, Long* start, Long* character, Long* next) {
  if (!read.was_read) {
    *next = read.next;
    return 0;
  }
  *start = read.start;
  *next = read.next;
  *character = read.packed;
  return 1;
}

}  // namespace

bool is_continuation_at(const char* text, std::int64_t position) {
  return byte_at(text, position) >= 0x80 && byte_at(text, position) <= 0xBF;
}

Character next_character(const char* text, Long position, Long end) {
  const Character failed = {.next = end};
  if (position < 0 || position >= end || text == nullptr) return failed;
  while (is_continuation_at(text, position)) {
    if (++position == end) return failed;
  }
  const Long length = announced_length(text, position);
  if (position + length > end) return failed;
  std::uint32_t packed = 0;
  for (Long i = 0; i < length; ++i) {
    packed |= byte_at(text, position + i) << (8 * i);
  }
  return {true, position, static_cast<Long>(packed), position + length};
}

Character containing_character(const char* text, Long position, Long end) {
  if (position < 0 || position >= end || text == nullptr) return {.next = end};
  Long lead = position;
  while (lead >= 0 && is_continuation_at(text, lead)) --lead;
  return next_character(text, lead >= 0 ? lead : position, end);
}

Character previous_character(const char* text, Long position, Long end) {
  if (position > end || position < 1 || text == nullptr) return {.next = end};
  Long lead = position - 1;
  while (lead >= 0 && is_continuation_at(text, lead)) --lead;
  if (lead < 0) return {.next = end};
  return containing_character(text, lead, end);
}

void append_character(std::string& out, Long packed) {
  for (int shift = 0; shift < 32; shift += 8) {
    const auto byte = static_cast<char>(packed >> shift & 0xFF);
    if (shift == 0 || byte != 0) out += byte;
  }
}

Long utf8_GetNextCharAsLong(const char* text, Long position, Long end,
                            Long* start, Long* character, Long* next) {
  return report(next_character(text, position, end), start, character, next);
}

Long utf8_GetNextCharValue(const char* text, Long position, Long end,
                           Long* start, Long* length, Long* code_point,
                           Long* next) {
  const Character read = next_character(text, position, end);
  if (report(read, start, code_point, next) == 0) return 0;
  *length = read.next - read.start;
  *code_point = code_point_at(text, read.start, *length);
  return 1;
}

Long utf8_GetCharAsLong(const char* text, Long position, Long end, Long* start,
                        Long* character, Long* next) {
  return report(containing_character(text, position, end), start, character,
                next);
}

Long utf8_GetPrevCharAsLong(const char* text, Long position, Long end,
                            Long* start, Long* character, Long* next) {
  return report(previous_character(text, position, end), start, character,
                next);
}

Long utf8_CountCharacters(const char* text, Long start, Long end, Long* count) {
  *count = 0;
  if (start > end || start < 0 || text == nullptr) return 0;
  for (Long i = start; i < end; i += announced_length(text, i)) {
    ++*count;
  }
  return 1;
}

Long utf8_CountCharactersTask(const char* text, Long start, Long end,
                              Long* count, Long reference, QuillYield yield) {
  *count = 0;
  if (start > end || start < 0 || text == nullptr) return 0;
  Meter meter(reference, yield);
  Long i = start;
  while (i < end && meter.go_on) {
    i += announced_length(text, i);
    ++*count;
    meter.tick(i);
  }
  return 1;
}

Long utf8_CountToOffset(const char* text, Long start, Long end, Long* count,
                        Long* offset) {
  const bool refused = *count < 1 || start < 0 || start >= end;
  *offset = refused ? end : start;
  if (refused) {
    if (*count >= 1) *count = 0;
    return 0;
  }
  Long stepped = 0;
  while (stepped < *count && *offset < end) {
    const Character read = containing_character(text, *offset, end);
    *offset = read.next;
    if (!read.was_read) {
      *count = 0;
      return 0;
    }
    ++stepped;
  }
  if (stepped == *count) return 1;
  *count = stepped;
  return 0;
}

// By the steps of the bisection, also where the array is out of order.
Long BinarySearchLongs(const Long* array, Long count, Long key, Long* index) {
  *index = 0;
  if (count < 1) return 0;
  Long low = 0;
  Long high = count - 1;
  while (low < high) {
    const Long middle = (low + high) / 2;
    if (key > array[middle]) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  *index = low + (array[low] < key ? 1 : 0);
  return array[low] == key ? 1 : 0;
}

Long utf8_MaskChar(Long character, const Long* mask_keys,
                   const Long* mask_values, Long mask_count,
                   unsigned char sorted) {
  if (mask_count <= 0 || mask_keys == nullptr || mask_values == nullptr) {
    return character;
  }
  if (sorted != 1) {
    for (Long i = 0; i < mask_count; ++i) {
      if (mask_keys[i] == character) return mask_values[i];
    }
    return character;
  }
  Long place = 0;
  return BinarySearchLongs(mask_keys, mask_count, character, &place) == 1
             ? mask_values[place]
             : character;
}

Long utf8_InList(Long character, const Long* list, Long count) {
  for (Long i = 0; i < count; ++i) {
    if (list[i] == character) return 1;
  }
  return 0;
}

Long utf8_MatchChar(const Long* set, Long count, Long character,
                    unsigned char include) {
  const bool member = utf8_InList(character, set, count) == 1;
  return member == (include == 1) ? 1 : 0;
}

}  // namespace quill::naive
