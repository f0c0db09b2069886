// Readers and counters of characters.
#include <algorithm>

#include "bench/support/bench.h"

namespace quill::bench {
namespace {

std::int32_t count_lead_bytes(std::string_view text) {
  return static_cast<std::int32_t>(
      std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
      }));
}

using Reader = decltype(&utf8_GetNextCharAsLong);

std::int32_t walk_forward(Span text, Reader read) {
  std::int32_t count = 0;
  std::int32_t start = 0;
  std::int32_t character = 0;
  std::int32_t next = 0;
  while (read(text.data, next, text.end, &start, &character, &next) == 1) {
    ++count;
  }
  return count;
}

std::int32_t walk_values(Span text) {
  std::int32_t count = 0;
  std::int32_t start = 0;
  std::int32_t length = 0;
  std::int32_t value = 0;
  std::int32_t next = 0;
  while (utf8_GetNextCharValue(text.data, next, text.end, &start, &length,
                               &value, &next) == 1) {
    ++count;
  }
  return count;
}

std::int32_t walk_backward(Span text) {
  std::int32_t count = 0;
  std::int32_t start = text.end;
  std::int32_t character = 0;
  std::int32_t next = 0;
  while (utf8_GetPrevCharAsLong(text.data, start, text.end, &start, &character,
                                &next) == 1) {
    ++count;
  }
  return count;
}

std::int32_t count(Span text) {
  std::int32_t count = 0;
  utf8_CountCharacters(text.data, 0, text.end, &count);
  return count;
}

std::int32_t count_with_callback(Span text) {
  std::int32_t count = 0;
  utf8_CountCharactersTask(text.data, 0, text.end, &count, 0, go_on);
  return count;
}

// Steps over as many characters as the text has bytes.
std::int32_t step_to_end(Span text) {
  std::int32_t count = text.end;
  std::int32_t offset = 0;
  utf8_CountToOffset(text.data, 0, text.end, &count, &offset);
  return offset;
}

}  // namespace

void add_character_cases() {
  const struct {
    const char* name;
    Source text;
  } kinds[] = {
      {"ascii", english()}, {"two_bytes", greek()}, {"three_bytes", chinese()}};
  for (const auto& [name, text] : kinds) {
    const std::string kind = std::string("/") + name;
    add_scan(
        "utf8_GetNextCharAsLong" + kind, text,
        [](Span span) { return walk_forward(span, utf8_GetNextCharAsLong); },
        count_lead_bytes);
    add_scan(
        "utf8_GetCharAsLong" + kind, text,
        [](Span span) { return walk_forward(span, utf8_GetCharAsLong); },
        count_lead_bytes);
    add_scan("utf8_GetNextCharValue" + kind, text, walk_values,
             count_lead_bytes);
    add_scan("utf8_GetPrevCharAsLong" + kind, text, walk_backward,
             count_lead_bytes);
    add_scan("utf8_CountCharacters" + kind, text, count, count_lead_bytes);
    add_scan("utf8_CountCharactersTask" + kind, text, count_with_callback,
             count_lead_bytes);
    add_scan("utf8_CountToOffset" + kind, text, step_to_end,
             [](std::string_view bytes) {
               return static_cast<std::int32_t>(bytes.size());
             });
  }
  add_scan("utf8_CountCharacters/continuation_bytes_only", all('\x80'), count,
           [](std::string_view bytes) {
             return static_cast<std::int32_t>(bytes.size());
           });
}

}  // namespace quill::bench
