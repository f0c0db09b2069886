#include "tests/models/characters_model.h"

#include "tests/models/meter.h"

namespace quill::naive {
namespace {

std::uint32_t byte_at(const char* text, std::int64_t position) {
  return static_cast<unsigned char>(text[position]);
}

// By the first test that the byte passes.
int32_t announced_length(const char* text, int32_t position) {
  const std::uint32_t byte = byte_at(text, position);
  if (byte >= 0xF0) return 4;
  if (byte >= 0xE0) return 3;
  if (byte >= 0xC0) return 2;
  return 1;
}

int32_t code_point_at(const char* text, int32_t start, int32_t length) {
  static constexpr std::uint32_t kLeadBits[] = {0, 0xFF, 0x1F, 0x0F, 0x07};
  std::uint32_t value = byte_at(text, start) & kLeadBits[length];
  for (int32_t i = 1; i < length; ++i) {
    value = value << 6 | (byte_at(text, start + i) & 0x3F);
  }
  return static_cast<int32_t>(value);
}

int32_t report(const Character& read, int32_t* start, int32_t* character,
               int32_t* next) {
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

Character next_character(const char* text, int32_t position, int32_t end) {
  const Character failed = {.next = end};
  if (position < 0 || position >= end || text == nullptr) return failed;
  while (is_continuation_at(text, position)) {
    if (++position == end) return failed;
  }
  const int32_t length = announced_length(text, position);
  if (position + length > end) return failed;
  std::uint32_t packed = 0;
  for (int32_t i = 0; i < length; ++i) {
    packed |= byte_at(text, position + i) << (8 * i);
  }
  return {true, position, static_cast<int32_t>(packed), position + length};
}

Character containing_character(const char* text, int32_t position,
                               int32_t end) {
  if (position < 0 || position >= end || text == nullptr) return {.next = end};
  int32_t lead = position;
  while (lead >= 0 && is_continuation_at(text, lead)) --lead;
  return next_character(text, lead >= 0 ? lead : position, end);
}

Character previous_character(const char* text, int32_t position, int32_t end) {
  if (position > end || position < 1 || text == nullptr) return {.next = end};
  int32_t lead = position - 1;
  while (lead >= 0 && is_continuation_at(text, lead)) --lead;
  if (lead < 0) return {.next = end};
  return containing_character(text, lead, end);
}

int32_t utf8_GetNextCharAsLong(const char* text, int32_t position, int32_t end,
                               int32_t* start, int32_t* character,
                               int32_t* next) {
  return report(next_character(text, position, end), start, character, next);
}

int32_t utf8_GetNextCharValue(const char* text, int32_t position, int32_t end,
                              int32_t* start, int32_t* length,
                              int32_t* code_point, int32_t* next) {
  const Character read = next_character(text, position, end);
  if (report(read, start, code_point, next) == 0) return 0;
  *length = read.next - read.start;
  *code_point = code_point_at(text, read.start, *length);
  return 1;
}

int32_t utf8_GetCharAsLong(const char* text, int32_t position, int32_t end,
                           int32_t* start, int32_t* character, int32_t* next) {
  return report(containing_character(text, position, end), start, character,
                next);
}

int32_t utf8_GetPrevCharAsLong(const char* text, int32_t position, int32_t end,
                               int32_t* start, int32_t* character,
                               int32_t* next) {
  return report(previous_character(text, position, end), start, character,
                next);
}

int32_t utf8_CountCharacters(const char* text, int32_t start, int32_t end,
                             int32_t* count) {
  *count = 0;
  if (start > end || start < 0 || text == nullptr) return 0;
  for (int32_t i = start; i < end; i += announced_length(text, i)) {
    ++*count;
  }
  return 1;
}

int32_t utf8_CountCharactersTask(const char* text, int32_t start, int32_t end,
                                 int32_t* count, int32_t reference,
                                 QuillYield yield) {
  *count = 0;
  if (start > end || start < 0 || text == nullptr) return 0;
  Meter meter(reference, yield);
  int32_t i = start;
  while (i < end && meter.go_on) {
    i += announced_length(text, i);
    ++*count;
    meter.tick(i);
  }
  return 1;
}

int32_t utf8_CountToOffset(const char* text, int32_t start, int32_t end,
                           int32_t* count, int32_t* offset) {
  const bool refused = *count < 1 || start < 0 || start >= end;
  *offset = refused ? end : start;
  if (refused) {
    if (*count >= 1) *count = 0;
    return 0;
  }
  int32_t stepped = 0;
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

// Bisects whether or not the keys are in order.
int32_t utf8_MaskChar(int32_t character, const int32_t* mask_keys,
                      const int32_t* mask_values, int32_t mask_count,
                      unsigned char sorted) {
  if (mask_count <= 0 || mask_keys == nullptr || mask_values == nullptr) {
    return character;
  }
  if (sorted != 1) {
    for (int32_t i = 0; i < mask_count; ++i) {
      if (mask_keys[i] == character) return mask_values[i];
    }
    return character;
  }
  int32_t low = 0;
  int32_t high = mask_count - 1;
  while (low < high) {
    const int32_t middle = (low + high) / 2;
    if (character > mask_keys[middle]) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return mask_keys[low] == character ? mask_values[low] : character;
}

int32_t utf8_InList(int32_t character, const int32_t* list, int32_t count) {
  for (int32_t i = 0; i < count; ++i) {
    if (list[i] == character) return 1;
  }
  return 0;
}

int32_t utf8_MatchChar(const int32_t* set, int32_t count, int32_t character,
                       unsigned char include) {
  const bool member = utf8_InList(character, set, count) == 1;
  return member == (include == 1) ? 1 : 0;
}

}  // namespace quill::naive
