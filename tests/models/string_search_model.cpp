#include "tests/models/naive.h"
#include "tests/support/blocks.h"

namespace quill::naive {
namespace {

bool word_counts(const StringCall& c, Long start, Long end) {
  unsigned char before = 0;
  unsigned char after = 0;
  utf8_TestBreakChars(c.text, c.end, start, end, c.mask_keys, c.mask_values,
                      c.mask_count, c.breaks, c.break_count, c.edge, &before,
                      &after);
  if (c.invert == 1 && c.break_count > 0) {
    before = static_cast<unsigned char>(before ^ 1);
    after = static_cast<unsigned char>(after ^ 1);
  }
  return before == 1 && after == 1;
}

bool matches(const StringCall& c, Long position, Long* next) {
  return compare(c, position, next) && word_counts(c, position, *next);
}

Long full_scan(const StringCall& c, Long* found_start, Long* found_end,
               Long reference, QuillYield yield) {
  Meter meter(reference, yield);
  Long p = c.start;
  while (p < c.end && meter.go_on) {
    Long next = 0;
    const bool found = !is_continuation_at(c.text, p) && matches(c, p, &next);
    if (found) {
      *found_start = p;
      *found_end = next;
      p = next;
    } else {
      ++p;
    }
    meter.tick(p);
    if (found) return 1;
  }
  return 0;
}

Long first_byte_scan(const StringCall& c, Long* found_start, Long* found_end,
                     Long reference, QuillYield yield) {
  const char sought = static_cast<char>(c.pattern[0] & 0xFF);
  Meter meter(reference, yield);
  Long p = c.start;
  while (p < c.end && meter.go_on) {
    Long q = p;
    while (q < c.end && c.text[q] != sought) {
      if (!meter.go_on) break;
      ++q;
      meter.tick(q);
    }
    meter.count();
    Long next = 0;
    const bool found = q < c.end && c.text[q] == sought && matches(c, q, &next);
    if (found) {
      *found_start = q;
      *found_end = next;
    }
    p = found ? next : q + 1;
    meter.ask_if_due(p);
    if (found) return 1;
  }
  return 0;
}

}  // namespace

bool compare(const StringCall& c, Long position, Long* next) {
  return utf8_CompareSubstring(c.text, position, c.end, c.pattern,
                               c.pattern_count, c.flags, c.mask_keys,
                               c.mask_values, c.mask_count, next) == 1;
}

Long utf8_CompareSubstring(const char* text, Long position, Long end,
                           const Long* pattern, Long pattern_count,
                           const unsigned char* position_flags,
                           const Long* mask_keys, const Long* mask_values,
                           Long mask_count, Long* next) {
  for (Long i = 0; i < pattern_count; ++i) {
    const Character read = next_character(text, position, end);
    *next = position = read.next;
    if (!read.was_read) return 0;
    const bool fixed = position_flags == nullptr || position_flags[i] == 1;
    if (fixed && utf8_MaskChar(read.packed, mask_keys, mask_values, mask_count,
                               1) != pattern[i]) {
      return 0;
    }
  }
  return 1;
}

void utf8_TestBreakChars(const char* text, Long end, Long match_start,
                         Long match_end, const Long* mask_keys,
                         const Long* mask_values, Long mask_count,
                         const Long* break_characters, Long break_count,
                         unsigned char edge_flag, unsigned char* before,
                         unsigned char* after) {
  *before = *after = 1;
  if (break_characters == nullptr || break_count == 0) return;
  const auto is_break = [&](const Character& read) -> unsigned char {
    if (!read.was_read) return 0;
    const Long mapped =
        utf8_MaskChar(read.packed, mask_keys, mask_values, mask_count, 1);
    return utf8_InList(mapped, break_characters, break_count) == 1 ? 1 : 0;
  };
  *before = match_start == 0
                ? edge_flag
                : is_break(previous_character(text, match_start, end));
  *after = match_end == end ? edge_flag
                            : is_break(next_character(text, match_end, end));
}

Long find(const StringCall& c, Long* found_start, Long* found_end,
          Long reference, QuillYield yield) {
  *found_start = 0;
  *found_end = c.end;
  if (c.text == nullptr || c.start < 0 || c.end < c.start || c.end < 1 ||
      c.pattern == nullptr || c.pattern_count < 1) {
    return 0;
  }
  const bool fixed = c.flags == nullptr || c.flags[0] == 1;
  return fixed && c.mask_count <= 0
             ? first_byte_scan(c, found_start, found_end, reference, yield)
             : full_scan(c, found_start, found_end, reference, yield);
}

Long find_previous(const StringCall& c, Long* found_start, Long* found_end,
                   Long reference, QuillYield yield) {
  *found_start = 0;
  *found_end = c.start;
  const std::int64_t highest = std::int64_t{c.end} - c.pattern_count;
  if (c.text == nullptr || c.start < 0 || c.start > c.end || c.end < 1 ||
      c.pattern == nullptr || c.pattern_count < 1 || c.start > highest) {
    return 0;
  }
  auto p = static_cast<Long>(highest);
  Meter meter(reference, yield);
  while (p >= c.start && meter.go_on) {
    Long next = 0;
    const bool found = matches(c, p, &next);
    if (found) {
      *found_start = *found_end = p;
    } else {
      --p;
    }
    meter.tick(p);
    if (found) return 1;
  }
  return 0;
}

Long find_nth(const StringCall& c, Long* occurrence, Long* found_start,
              Long* found_end, Long reference, QuillYield yield) {
  *found_end = c.start;
  const Long n = *occurrence;
  Long made = 0;
  Long last = 1;
  Meter meter(reference, yield);
  while (made < n && last == 1 && meter.go_on) {
    StringCall rest = c;
    rest.start = *found_end;
    last = find(rest, found_start, found_end, reference, yield);
    ++made;
    meter.tick(*found_end);
  }
  *occurrence = made - 1;
  return last;
}

Long count_all(const StringCall& c, Long* match_count, Long* stop,
               Long reference, QuillYield yield) {
  QuillBlock list = nullptr;
  Long long_count = 0;
  find_all(c, &list, &long_count, stop, reference, yield);
  DisposeBlock(list);
  *match_count = long_count / 2;
  return 1;
}

Long find_all(const StringCall& c, QuillBlock* list, Long* long_count,
              Long* stop, Long reference, QuillYield yield) {
  test::Longs found;
  Long p = c.start;
  Meter meter(reference, yield);
  while (p < c.end && meter.go_on) {
    StringCall rest = c;
    rest.start = p;
    Long found_start = 0;
    if (find(rest, &found_start, &p, reference, yield) == 1) {
      found.push_back(found_start);
      found.push_back(p);
    }
    meter.tick(p);
  }
  *list = found.empty() ? nullptr : test::block_of(found);
  *long_count = test::length_of(found);
  *stop = p;
  return 1;
}

}  // namespace quill::naive
