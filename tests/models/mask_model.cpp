#include "tests/models/mask_model.h"

#include <utility>

namespace quill::model {
namespace {

void write(std::string& out, std::int32_t packed) {
  const auto bits = static_cast<std::uint32_t>(packed);
  out += static_cast<char>(bits & 0xFF);
  for (const int shift : {8, 16, 24}) {
    if ((bits >> shift & 0xFF) != 0) out += static_cast<char>(bits >> shift);
  }
}

std::size_t unsigned_of(std::int64_t offset) {
  return static_cast<std::size_t>(offset);
}

}  // namespace

void sort_mask(Longs& keys, Longs& values, std::size_t first,
               std::size_t limit) {
  const auto exchange = [&](std::size_t a, std::size_t b) {
    std::swap(keys[a], keys[b]);
    std::swap(values[a], values[b]);
  };
  while (first + 1 < limit) {
    std::size_t left = first + 1;
    std::size_t right = limit;
    while (left < right) {
      if (keys[left] <= keys[first]) {
        ++left;
      } else {
        exchange(left, --right);
      }
    }
    exchange(first, left - 1);
    sort_mask(keys, values, first, left - 1);
    first = right;
  }
}

std::optional<std::string> mask_string(const Masking& of, std::int32_t start,
                                       std::int32_t end,
                                       test::YieldRecorder& host) {
  if (start < 0 || std::int64_t{end} - start < 1 || of.keys.empty() ||
      std::cmp_greater(end, of.text.size())) {
    return std::nullopt;
  }
  std::string out;
  test::NaiveMeter meter{host, of.reference};
  std::int64_t position = start;
  while (position < end && meter.go_on) {
    const Read read = next_character(of.text, position, end);
    if (!read.found) return std::nullopt;
    position = read.next;
    write(out, map(of.keys, of.values, read.packed));
    meter.tick(position);
  }
  return out;
}

std::optional<std::string> mask_selections(const Masking& of,
                                           const Longs& selections,
                                           test::YieldRecorder& host) {
  const auto size = static_cast<std::int64_t>(of.text.size());
  bool inside = true;  // a lone last long is no selection
  for (std::size_t i = 0; i < selections.size() / 2 * 2; ++i) {
    inside = inside && selections[i] <= size;
  }
  if (size < 1 || of.keys.empty() || !inside) return std::nullopt;
  std::string out;
  test::NaiveMeter meter{host, of.reference};
  std::int64_t position = 0;
  std::size_t consumed = 0;
  while (consumed + 2 <= selections.size() && meter.go_on) {
    const std::int64_t start = selections[consumed];
    const std::int64_t end = selections[consumed + 1];
    consumed += 2;
    if (start > position) {
      out +=
          of.text.substr(unsigned_of(position), unsigned_of(start - position));
      position = start;
    }
    meter.go_on = true;
    while (position < end) {
      const Read read = next_character(of.text, position, end);
      if (!read.found) return std::nullopt;
      position = read.next;
      write(out, map(of.keys, of.values, read.packed));
      meter.tick(static_cast<std::int64_t>(consumed));
    }
  }
  return out + of.text.substr(unsigned_of(position));
}

}  // namespace quill::model
