#include "tests/models/break_model.h"

#include <utility>

namespace quill::model {
namespace {

bool is_widened_over(const CharacterClass& over, std::int32_t character) {
  bool member = false;
  for (const std::int32_t one : over.members) member |= one == character;
  return member == (over.flag == 1);
}

bool is_refused(const Breaking& of) {
  return of.start < 0 || std::int64_t{of.end} - of.start < 1 || of.unit < 1 ||
         std::cmp_greater(of.end, of.text.size());
}

void store(Longs& list, std::int64_t position) {
  list.insert(list.end(), 2, static_cast<std::int32_t>(position));
}

// Steps over `count` characters; false when there are fewer, or when one can't
// be read or does not lead on and `count` becomes 0.
bool count_to_offset(std::string_view text, std::int64_t& offset,
                     std::int64_t end, std::int32_t& count) {
  std::int32_t n = 0;
  while (n < count && offset < end) {
    const Read read = containing_character(text, offset, end);
    if (!read.found || read.next <= offset) {
      count = 0;
      return false;
    }
    offset = read.next;
    ++n;
  }
  if (n == count) return true;
  count = n;
  return false;
}

}  // namespace

bool find_breaks(const Widening& of, WidenedSelection& selection,
                 test::YieldRecorder& host) {
  selection.break_found = 1;
  const auto fail = [&] {
    selection.break_found = 0;
    return false;
  };
  if (!of.backward.members.empty()) {
    test::NaiveMeter meter{host, of.reference};
    std::int64_t p = selection.start;
    for (bool go_on = true; go_on;) {
      if (p <= of.lower_bound) {
        selection.start = of.lower_bound;
        selection.break_found = 0;
        break;
      }
      const Read read = previous_character(of.text, p, of.end);
      if (!read.found) return fail();
      p = read.start;
      if (!is_widened_over(of.backward, read.packed)) {
        selection.start = static_cast<std::int32_t>(read.next);
        go_on = false;
      }
      meter.tick(of.lower_bound);
      if (!meter.go_on) return fail();
    }
  }
  if (of.forward.members.empty()) return true;
  test::NaiveMeter meter{host, of.reference};
  std::int64_t q = selection.end;
  for (bool go_on = true; go_on;) {
    if (q >= of.end) {
      selection.end = of.end;
      selection.break_found = 0;
      return true;
    }
    const Read read = next_character(of.text, q, of.end);
    if (!read.found) return fail();
    q = read.next;
    if (!is_widened_over(of.forward, read.packed)) {
      selection.end = static_cast<std::int32_t>(read.start);
      go_on = false;
    }
    meter.tick(of.lower_bound);
    if (!meter.go_on) return fail();
  }
  return true;
}

std::optional<Longs> breaks(const Breaking& of, test::YieldRecorder& host) {
  if (is_refused(of)) return std::nullopt;
  Longs list;
  test::NaiveMeter meter{host, of.reference};
  std::int64_t p = of.start;
  while (p < of.end && meter.go_on) {
    std::int32_t count = of.unit;
    if (count_to_offset(of.text, p, of.end, count)) {
      store(list, p);
    } else if (count == 0) {
      return std::nullopt;
    }
    meter.tick(p);
  }
  return list;
}

std::optional<Longs> space_breaks(const Breaking& of,
                                  test::YieldRecorder& host) {
  if (is_refused(of)) return std::nullopt;
  Longs list;
  test::NaiveMeter meter{host, of.reference};
  std::int64_t p = of.start;
  while (p < of.end && meter.go_on) {
    std::int64_t limit = p + of.unit;
    std::int64_t last_space = -1;
    while (p < limit && p < of.end) {
      const Read read = next_character(of.text, p, of.end);
      if (!read.found) return std::nullopt;
      const char byte = of.text[static_cast<std::size_t>(read.start)];
      p = read.next;
      if (byte == '\r' || byte == '\n') limit = p + of.unit;
      if (byte == ' ') last_space = read.start;
    }
    if (p != of.end) {
      if (last_space >= 0) p = last_space + 1;
      store(list, p);
    }
    meter.tick(p);
  }
  return list;
}

}  // namespace quill::model
