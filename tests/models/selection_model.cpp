#include "tests/models/selection_model.h"

#include <algorithm>
#include <climits>

namespace quill::test::model {
namespace {

int byte_at(std::string_view text, std::int64_t i) {
  return static_cast<unsigned char>(text[static_cast<std::size_t>(i)]);
}

bool continues(std::string_view text, std::int64_t i) {
  return byte_at(text, i) >= 0x80 && byte_at(text, i) <= 0xBF;
}

struct Read {
  bool found;
  std::int64_t next;
  std::int64_t packed;
  std::int32_t code_point;
};

Read read_next(std::string_view text, std::int64_t position, std::int64_t end) {
  if (position < 0 || position >= end) return {false, end, 0, 0};
  while (continues(text, position)) {
    ++position;
    if (position == end) return {false, end, 0, 0};
  }
  const int lead = byte_at(text, position);
  const int length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
  if (position + length > end) return {false, end, 0, 0};
  const int kept[] = {0, 0xFF, 0x1F, 0x0F, 0x07};
  std::int32_t value = lead & kept[length];
  std::int64_t packed = lead;
  for (int i = 1; i < length; ++i) {
    value = value * 64 + byte_at(text, position + i) % 64;
    packed += std::int64_t{byte_at(text, position + i)} << (8 * i);
  }
  return {true, position + length, packed, value};
}

Read read_containing(std::string_view text, std::int64_t position,
                     std::int64_t end) {
  if (position < 0 || position >= end) return {false, end, 0, 0};
  if (continues(text, position)) {
    for (std::int64_t i = position - 1; i >= 0; --i) {
      if (!continues(text, i)) return read_next(text, i, end);
    }
  }
  return read_next(text, position, end);
}

// The first entry with the key, as a bisection over sorted keys finds it.
std::int32_t map_character(const Mask& mask, std::int32_t character) {
  for (std::int32_t i = 0; i < mask.count; ++i) {
    const auto index = static_cast<std::size_t>(i);
    if (mask.keys[index] == character) return mask.values[index];
  }
  return character;
}

Read read_compared(std::string_view text, std::int64_t position,
                   std::int64_t end, const Mask& mask) {
  if (mask.count == 0) return read_next(text, position, end);
  Read read = read_containing(text, position, end);
  if (!read.found) return read;
  const auto character =
      static_cast<std::int32_t>(static_cast<std::uint32_t>(read.packed));
  const auto mapped =
      static_cast<std::uint32_t>(map_character(mask, character));
  std::string bytes;
  for (int i = 0; i < 4; ++i) {
    bytes.push_back(static_cast<char>(mapped >> (8 * i)));
  }
  const Read value = read_next(bytes, 0, 4);
  return {value.found, read.next, 0, value.code_point};
}

}  // namespace

Copied copy(std::string_view text, std::int32_t capacity, std::int32_t before,
            const Longs& list, std::int32_t count, std::size_t stride,
            std::size_t pair, std::int32_t reference, YieldRecorder& host) {
  if (capacity < 1) return {0, before, {}};
  Copied out{1, 0, {}};
  std::int32_t done = 0;
  bool go_on = true;
  while (done < count && go_on && capacity > out.copied) {
    const std::size_t at = static_cast<std::size_t>(done) * stride + 2 * pair;
    ++done;
    const std::int64_t start = list[at];
    // An end before the start is the copy's to decide: nothing.
    const std::int64_t length = std::max<std::int64_t>(list[at + 1] - start, 0);
    if (capacity < out.copied + length) return {0, out.copied, out.bytes};
    if (length > 0 && start < 0) return {0, out.copied, out.bytes};
    if (length > 0) {
      out.bytes += text.substr(static_cast<std::size_t>(start),
                               static_cast<std::size_t>(length));
    }
    out.copied += static_cast<std::int32_t>(length);
    if (done == YieldMax) {
      go_on = host.ask(reference, done);
      if (!go_on) return out;
    }
  }
  return out;
}

int compare(std::string_view text, const std::int32_t* a, const std::int32_t* b,
            const Mask& mask) {
  const std::int64_t length_a = std::int64_t{a[1]} - a[0];
  const std::int64_t length_b = std::int64_t{b[1]} - b[0];
  const int by_length = static_cast<int>(
      std::clamp<std::int64_t>(length_a - length_b, INT_MIN, INT_MAX));
  if (length_a <= 0 || length_b <= 0) return by_length;
  std::int64_t in_a = a[0];
  std::int64_t in_b = b[0];
  // Whoever reads on for so long stands still.
  for (std::int64_t step = 0; step <= length_a + length_b + 4; ++step) {
    if (in_a >= a[1] || in_b >= b[1]) return by_length;
    const Read read_a = read_compared(text, in_a, a[1], mask);
    const Read read_b = read_compared(text, in_b, b[1], mask);
    if (!read_a.found || !read_b.found) return 0;
    if (read_a.code_point != read_b.code_point) {
      return read_a.code_point - read_b.code_point;
    }
    in_a = read_a.next;
    in_b = read_b.next;
  }
  return 0;
}

void heap_sort(std::uint32_t count,
               const std::function<int(std::uint64_t, std::uint64_t)>& compare,
               const std::function<void(std::uint64_t, std::uint64_t)>& swap) {
  if (count <= 1) return;
  std::uint64_t l = count / 2 + 1;
  std::uint64_t r = count;
  while (true) {
    if (l > 1) {
      l = l - 1;
    } else {
      swap(1, r);
      r = r - 1;
      if (r == 1) return;
    }
    std::uint64_t i = l;
    std::uint64_t j = 2 * l;
    while (j <= r) {
      if (j < r && compare(j, j + 1) < 0) j = j + 1;
      if (compare(i, j) >= 0) break;
      swap(i, j);
      i = j;
      j = 2 * j;
    }
  }
}

Longs sort(std::string_view text, Longs list, std::size_t stride,
           const Mask& mask) {
  const auto at = [&](std::uint64_t number) {
    return list.data() + (number - 1) * stride;
  };
  heap_sort(
      static_cast<std::uint32_t>(list.size() / stride),
      [&](auto a, auto b) { return compare(text, at(a), at(b), mask); },
      [&](auto a, auto b) { std::swap_ranges(at(a), at(a) + stride, at(b)); });
  return list;
}

Bits add_to_map(Bits map, std::int32_t text_length, const Longs& list) {
  for (std::size_t i = 0; i + 1 < list.size(); i += 2) {
    for (std::int32_t bit = 1; bit <= text_length; ++bit) {
      if (bit > list[i] && bit <= list[i + 1]) {
        map[static_cast<std::size_t>(bit)] = true;
      }
    }
  }
  return map;
}

Longs list_of_map(const Bits& map, std::int32_t text_length) {
  Longs list;
  bool inside = false;
  for (std::int32_t bit = 0; bit < text_length + 2; ++bit) {
    const bool set = map[static_cast<std::size_t>(bit)];
    if (set != inside) list.push_back(bit - 1);
    inside = set;
  }
  if (inside) list.push_back(text_length + 1);
  return list;
}

Longs order(const Longs& list, std::int32_t text_length) {
  const Bits none(static_cast<std::size_t>(text_length) + 2);
  return list_of_map(add_to_map(none, text_length, list), text_length);
}

Longs invert(const Longs& list, std::int32_t start, std::int32_t end) {
  Longs out = {start};
  out.insert(out.end(), list.begin(), list.end());
  out.push_back(end);
  if (!list.empty() && list.front() == start) {
    out.erase(out.begin(), out.begin() + 2);
  }
  if (!list.empty() && list.back() == end) out.resize(out.size() - 2);
  return out;
}

Extracted extract(std::string_view text, const Longs& list,
                  std::string_view prefix, std::string_view suffix,
                  std::int32_t reference, YieldRecorder& host) {
  if (list.size() < 2) return {0, false, {}};
  for (std::size_t i = 0; i + 1 < list.size(); i += 2) {
    if (list[i] < list[i + 1] && list[i] < 0) return {0, false, {}};
  }
  std::string out;
  NaiveMeter meter{host, reference};
  for (std::size_t i = 0; i + 1 < list.size() && meter.go_on;) {
    const std::int32_t start = list[i++];
    const std::int32_t end = list[i++];
    if (start < end) {
      out += prefix;
      for (std::int32_t at = start; at < end; ++at) {
        out += text[static_cast<std::size_t>(at)];
      }
      out += suffix;
    }
    meter.tick(static_cast<std::int64_t>(i));
  }
  if (!meter.go_on) return {1, false, {}};
  return {1, true, out};
}

}  // namespace quill::test::model
