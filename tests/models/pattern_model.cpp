#include "tests/models/pattern_model.h"

#include <cstddef>

namespace quill::model {
namespace {

int byte_at(const char* text, std::int32_t offset) {
  return static_cast<unsigned char>(text[offset]);
}

// The next character at or after `position`; false writes only `next`.
bool read(const char* text, std::int32_t position, std::int32_t end,
          std::int32_t* character, std::int32_t* next) {
  *next = end;
  if (position >= end || text == nullptr || position < 0) return false;
  while ((byte_at(text, position) & 0xC0) == 0x80) {
    if (++position == end) return false;
  }
  const int lead = byte_at(text, position);
  int length = 1;
  if (lead >= 0xC0) length = 2;
  if (lead >= 0xE0) length = 3;
  if (lead >= 0xF0) length = 4;
  if (std::int64_t{position} + length > end) return false;
  std::uint32_t value = 0;
  for (int i = length; i-- > 0;) {
    value =
        value << 8 | static_cast<std::uint32_t>(byte_at(text, position + i));
  }
  *character = static_cast<std::int32_t>(value);
  *next = position + length;
  return true;
}

bool in_set(const QuillRangePart& part, std::int32_t key) {
  if (part.character_count <= 0) return false;
  std::int32_t low = 0;
  std::int32_t high = part.character_count - 1;
  while (low < high) {
    const std::int32_t middle = (low + high) / 2;
    if (key > part.characters[middle]) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return part.characters[low] == key;
}

// The byte search of the fast start.
std::int32_t find_byte(const char* text, std::int32_t start, std::int32_t end,
                       int wanted, test::NaiveMeter meter) {
  std::int32_t position = start;
  while (position < end) {
    if (byte_at(text, position) == wanted) return position;
    if (!meter.go_on) return -1;
    ++position;
    meter.tick(position);
  }
  return -1;
}

}  // namespace

bool compare_part(const QuillRangePart& part, const char* text,
                  std::int32_t position, std::int32_t end, std::int32_t* next) {
  const std::int32_t limit = part.maximum == 0 ? 0x7FFFFFFF : part.maximum;
  std::int32_t count = 0;
  std::int32_t current = position;
  std::int32_t last = position;
  bool passed = true;
  for (;;) {
    if (current >= end) {
      *next = passed ? current : last;
      break;
    }
    if (!passed) {
      *next = last;
      break;
    }
    if (count >= limit) {
      *next = current;
      break;
    }
    std::int32_t character = 0;
    std::int32_t after = 0;
    if (!read(text, current, end, &character, &after)) return false;
    last = current;
    current = after;
    passed =
        part.include != 0 ? in_set(part, character) : !in_set(part, character);
    if (passed) ++count;
  }
  return part.minimum <= count && count <= limit;
}

bool compare_pattern(const char* text, std::int32_t position, std::int32_t end,
                     const Pattern& pattern, std::int32_t* next) {
  std::int32_t current = position;
  for (std::int32_t i = 0; i < pattern.count; ++i) {
    if (!compare_part(*pattern.parts[i], text, current, end, &current)) {
      std::int32_t character = 0;
      read(text, position, end, &character, next);
      return false;
    }
  }
  *next = current;
  return true;
}

bool find(const char* text, std::int32_t from, std::int32_t to,
          const Pattern& pattern, Found& found, std::int32_t reference,
          test::YieldRecorder& host) {
  found.next = to;
  if (text == nullptr || from < 0 || to < from || to < 1 || pattern.count < 1) {
    return false;
  }
  std::int32_t position = from;
  const QuillRangePart& first = *pattern.parts[0];
  if (first.character_count == 1 && first.minimum >= 1 && first.include == 1) {
    position = find_byte(text, from, to, first.characters[0] & 0xFF,
                         {host, reference});
    if (position == -1) return false;
  }
  test::NaiveMeter meter{host, reference};
  while (position < to) {
    const bool matched =
        compare_pattern(text, position, to, pattern, &found.end);
    if (matched) {
      found.start = position;
      found.next = found.end;
    }
    position = found.end;
    meter.tick(position);
    if (matched) return true;
    if (!meter.go_on) return false;
  }
  return false;
}

bool find_previous(const char* text, std::int32_t from, std::int32_t to,
                   const Pattern& pattern, Found& found, std::int32_t reference,
                   test::YieldRecorder& host) {
  found.next = from;
  if (text == nullptr || from < 0 || from > to || to < 1 || pattern.count < 1) {
    return false;
  }
  test::NaiveMeter meter{host, reference};
  for (std::int32_t position = to - 1; position >= from;) {
    const bool matched =
        compare_pattern(text, position, to, pattern, &found.end);
    if (matched) found.start = found.next = position;
    --position;
    meter.tick(position);
    if (matched) return true;
    if (!meter.go_on) return false;
  }
  return false;
}

All find_all(const char* text, std::int32_t from, std::int32_t to,
             const Pattern& pattern, const Pattern* key, std::int32_t reference,
             test::YieldRecorder& host) {
  All all{{}, 0, from};
  test::NaiveMeter meter{host, reference};
  while (all.stop < to && meter.go_on) {
    Found found{};
    const bool matched =
        find(text, all.stop, to, pattern, found, reference, host);
    all.stop = found.next;
    if (matched) {
      ++all.number;
      Found inner{};
      if (key == nullptr) {
        all.longs.insert(all.longs.end(), {found.start, found.end});
      } else if (find(text, found.start, found.end, *key, inner, reference,
                      host)) {
        all.longs.insert(all.longs.end(),
                         {inner.start, inner.end, found.start, found.end});
      }
      std::int32_t ignored = 0;
      if (found.start == found.end) {
        read(text, found.end, to, &ignored, &all.stop);
      }
    }
    meter.tick(all.stop);
  }
  return all;
}

}  // namespace quill::model
