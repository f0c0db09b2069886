// The exported readers.
#include "quillcore.h"
#include "utf8/characters.h"

using namespace quill;

namespace {

// Writes what a reader found, in this order; after a failed read only `next`.
std::int32_t report(const Character& read, std::int32_t* start,
                    std::int32_t* character, std::int32_t* next) {
  if (!read.found) {
    *next = to_long(read.next);
    return 0;
  }
  *start = to_long(read.start);
  *next = to_long(read.next);
  *character = read.packed;
  return 1;
}

// A negative position lies outside every text.
bool is_before_text(std::int32_t position, std::int32_t end,
                    std::int32_t* next) {
  if (position >= 0) return false;
  *next = end;
  return true;
}

}  // namespace

std::int32_t utf8_GetNextCharAsLong(const char* text, std::int32_t position,
                                    std::int32_t end, std::int32_t* start,
                                    std::int32_t* character,
                                    std::int32_t* next) {
  if (is_before_text(position, end, next)) return 0;
  return report(read_next(as_bytes(text), position, end), start, character,
                next);
}

std::int32_t utf8_GetNextCharValue(const char* text, std::int32_t position,
                                   std::int32_t end, std::int32_t* start,
                                   std::int32_t* length, std::int32_t* value,
                                   std::int32_t* next) {
  if (is_before_text(position, end, next)) return 0;
  const Character read = read_next(as_bytes(text), position, end);
  if (report(read, start, value, next) == 0) return 0;
  *length = to_long(read.length());
  *value = code_point(read.packed, read.length());
  return 1;
}

std::int32_t utf8_GetCharAsLong(const char* text, std::int32_t position,
                                std::int32_t end, std::int32_t* start,
                                std::int32_t* character, std::int32_t* next) {
  if (is_before_text(position, end, next)) return 0;
  return report(read_containing(as_bytes(text), position, end), start,
                character, next);
}

std::int32_t utf8_GetPrevCharAsLong(const char* text, std::int32_t position,
                                    std::int32_t end, std::int32_t* start,
                                    std::int32_t* character,
                                    std::int32_t* next) {
  return report(read_previous(as_bytes(text), position, end), start, character,
                next);
}
