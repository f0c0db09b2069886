#include "tests/models/string_search_model.h"

namespace quill::test {

// Skips continuation bytes, then takes what the lead byte announces.
bool StringModel::read(std::int64_t position, std::int32_t* packed,
                       std::int32_t* next) const {
  *next = c_.end;
  if (position >= c_.end || c_.text == nullptr) return false;
  while (is_continuation(position)) {
    if (++position == c_.end) return false;
  }
  const unsigned char lead = byte(position);
  const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  if (position + length > c_.end) return false;
  std::uint32_t value = 0;
  for (int i = 0; i < length; ++i) {
    value |= std::uint32_t{byte(position + i)} << (8 * i);
  }
  *packed = static_cast<std::int32_t>(value);
  *next = static_cast<std::int32_t>(position + length);
  return true;
}

// Bisects, whether or not the keys are sorted.
std::int32_t StringModel::map(std::int32_t character) const {
  if (c_.mask_count <= 0 || c_.mask_keys == nullptr ||
      c_.mask_values == nullptr) {
    return character;
  }
  std::int32_t low = 0;
  std::int32_t high = c_.mask_count - 1;
  while (low < high) {
    const std::int32_t middle = (low + high) / 2;
    if (character > c_.mask_keys[middle]) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return c_.mask_keys[low] == character ? c_.mask_values[low] : character;
}

bool StringModel::compare(std::int32_t position, std::int32_t* next) const {
  std::int32_t p = position;
  for (std::int32_t i = 0; i < c_.pattern_count; ++i) {
    std::int32_t character = 0;
    const bool was_read = read(p, &character, &p);
    *next = p;
    if (!was_read) return false;
    const bool fixed = c_.flags == nullptr || c_.flags[i] == 1;
    if (fixed && map(character) != c_.pattern[i]) return false;
  }
  return true;
}

bool StringModel::is_break(std::int32_t character) const {
  for (std::int32_t i = 0; i < c_.break_count; ++i) {
    if (map(character) == c_.breaks[i]) return true;
  }
  return false;
}

void StringModel::test_breaks(std::int32_t match_start, std::int32_t match_end,
                              unsigned char* before,
                              unsigned char* after) const {
  *before = *after = 1;
  if (c_.breaks == nullptr || c_.break_count == 0) return;
  std::int32_t character = 0;
  std::int32_t next = 0;
  if (match_start == 0) {
    *before = c_.edge;
  } else {
    *before = 0;
    std::int64_t lead = std::int64_t{match_start} - 1;
    const bool inside =
        match_start >= 1 && match_start <= c_.end && c_.text != nullptr;
    while (inside && lead >= 0 && is_continuation(lead)) --lead;
    if (inside && lead >= 0 && read(lead, &character, &next)) {
      *before = is_break(character) ? 1 : 0;
    }
  }
  if (match_end == c_.end) {
    *after = c_.edge;
  } else {
    const bool was_read = read(match_end, &character, &next);
    *after = was_read && is_break(character) ? 1 : 0;
  }
}

bool StringModel::word_counts(std::int32_t start, std::int32_t end) const {
  unsigned char before = 0;
  unsigned char after = 0;
  test_breaks(start, end, &before, &after);
  if (c_.invert == 1 && c_.break_count > 0) {
    before = static_cast<unsigned char>(before ^ 1);
    after = static_cast<unsigned char>(after ^ 1);
  }
  return before == 1 && after == 1;
}

bool StringModel::matches(std::int32_t position, std::int32_t* next) const {
  return compare(position, next) && word_counts(position, *next);
}

bool StringModel::find(std::int32_t start, std::int32_t* found_start,
                       std::int32_t* found_end) const {
  *found_start = 0;
  *found_end = c_.end;
  if (c_.text == nullptr || start < 0 || c_.end < start || c_.end < 1 ||
      c_.pattern == nullptr || c_.pattern_count < 1) {
    return false;
  }
  const bool fixed = c_.flags == nullptr || c_.flags[0] == 1;
  return fixed && c_.mask_count <= 0
             ? first_byte_scan(start, found_start, found_end)
             : full_scan(start, found_start, found_end);
}

bool StringModel::full_scan(std::int32_t p, std::int32_t* found_start,
                            std::int32_t* found_end) const {
  NaiveMeter meter{host_, reference_};
  while (p < c_.end && meter.go_on) {
    std::int32_t next = 0;
    const bool found = !is_continuation(p) && matches(p, &next);
    if (found) {
      *found_start = p;
      *found_end = next;
      p = next;
    } else {
      ++p;
    }
    meter.tick(p);
    if (found) return true;
  }
  return false;
}

bool StringModel::first_byte_scan(std::int32_t start, std::int32_t* found_start,
                                  std::int32_t* found_end) const {
  const auto b = static_cast<unsigned char>(c_.pattern[0] & 0xFF);
  NaiveMeter meter{host_, reference_};
  std::int64_t p = start;
  while (p < c_.end && meter.go_on) {
    std::int64_t q = p;
    while (q < c_.end && byte(q) != b) {
      if (!meter.go_on) break;
      ++q;
      meter.tick(q);
    }
    ++meter.count;
    std::int32_t next = 0;
    const bool found = q < c_.end && byte(q) == b &&
                       matches(static_cast<std::int32_t>(q), &next);
    if (found) {
      *found_start = static_cast<std::int32_t>(q);
      *found_end = next;
    }
    p = found ? next : q + 1;
    meter.ask_if_due(p);
    if (found) return true;
  }
  return false;
}

bool StringModel::find_previous(std::int32_t* found_start,
                                std::int32_t* found_end) const {
  *found_start = 0;
  *found_end = c_.start;
  const std::int64_t highest = std::int64_t{c_.end} - c_.pattern_count;
  if (c_.text == nullptr || c_.start < 0 || c_.start > c_.end || c_.end < 1 ||
      c_.pattern == nullptr || c_.pattern_count < 1 || c_.start > highest) {
    return false;
  }
  auto p = static_cast<std::int32_t>(highest);
  NaiveMeter meter{host_, reference_};
  while (p >= c_.start && meter.go_on) {
    std::int32_t next = 0;
    const bool found = matches(p, &next);
    if (found) {
      *found_start = *found_end = p;
    } else {
      --p;
    }
    meter.tick(p);
    if (found) return true;
  }
  return false;
}

bool StringModel::find_nth(std::int32_t* occurrence, std::int32_t* found_start,
                           std::int32_t* found_end) const {
  *found_end = c_.start;
  const std::int32_t n = *occurrence;
  std::int32_t made = 0;
  bool last = true;
  NaiveMeter meter{host_, reference_};
  while (made < n && last && meter.go_on) {
    last = find(*found_end, found_start, found_end);
    ++made;
    meter.tick(*found_end);
  }
  *occurrence = made - 1;
  return last;
}

bool StringModel::count_all(std::int32_t* match_count,
                            std::int32_t* stop) const {
  std::int32_t p = c_.start;
  std::int32_t matches = 0;
  NaiveMeter meter{host_, reference_};
  while (p < c_.end && meter.go_on) {
    std::int32_t s = 0;
    if (find(p, &s, &p)) ++matches;
    meter.tick(p);
  }
  *match_count = matches;
  *stop = p;
  return true;
}

std::vector<std::int32_t> StringModel::find_all(std::int32_t* stop) const {
  std::vector<std::int32_t> list;
  std::int32_t p = c_.start;
  NaiveMeter meter{host_, reference_};
  while (p < c_.end && meter.go_on) {
    std::int32_t s = 0;
    if (find(p, &s, &p)) {
      list.push_back(s);
      list.push_back(p);
    }
    meter.tick(p);
  }
  *stop = p;
  return list;
}

}  // namespace quill::test
