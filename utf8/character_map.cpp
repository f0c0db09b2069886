#include "utf8/character_map.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <numeric>
#include <span>

#include "blocks/instructions.h"
#include "utf8/ascii_keys.h"
#include "utf8/character_map_kernels.h"
#include "utf8/characters.h"

namespace quill {
namespace {

using Row = CharacterMap::Row;

constexpr auto kIdentity = [] {
  std::array<Byte, 128> table{};
  std::iota(table.begin(), table.end(), Byte{0});
  return table;
}();

bool are_strictly_ascending(std::span<const std::int32_t> keys) {
  return std::adjacent_find(keys.begin(), keys.end(), std::greater_equal<>()) ==
         keys.end();
}

void set_ascii(CharacterMap& map, std::size_t key, std::int32_t value) {
  const bool is_stop = (value & ~0xFF) != 0;
  if (is_stop && !map.has_ascii_stops) {
    map.ascii_stops.fill(0);
    map.has_ascii_stops = true;
  }
  map.ascii[key] = static_cast<Byte>(value);
  if (map.has_ascii_stops) map.ascii_stops[key] = is_stop ? 0xFF : 0;
  map.changed_rows = static_cast<Byte>(map.changed_rows | 1u << (key >> 4));
}

bool set_neighbours_plainly(const std::int32_t* keys,
                            const std::int32_t* values, std::int32_t count,
                            CharacterMap& map) {
  map.ascii = kIdentity;
  if (count <= 0) return true;
  const std::int32_t key = keys[0];
  if (key < 0 || key > 128 - count) return false;
  std::int32_t wrong = 0;
  for (std::int32_t i = 0; i < count; ++i) {
    wrong |= (keys[i] ^ (key + i)) | (values[i] & ~0xFF);
  }
  if (wrong != 0) return false;
  Byte* const to = map.ascii.data() + key;
  for (std::int32_t i = 0; i < count; ++i) to[i] = static_cast<Byte>(values[i]);
  return true;
}

// Sets none, or neighbours, such as the letters from A to Z, that have single
// bytes for values. False, with all ASCII unchanged, when they are others.
bool set_neighbours(const std::int32_t* keys, const std::int32_t* values,
                    std::int32_t count, CharacterMap& map) {
  bool is_set = false;
#if defined(__x86_64__)
  is_set = instructions() == Instructions::kAvx512 && count > 0 &&
           map_neighbours_avx512(keys, values, count, map);
#endif
  is_set = is_set || set_neighbours_plainly(keys, values, count, map);
  if (is_set && count > 0) {
    const int rows =
        (2 << ((keys[0] + count - 1) >> 4)) - (1 << (keys[0] >> 4));
    map.changed_rows = static_cast<Byte>(rows);
  }
  return is_set;
}

// Fills the tables for longer characters from a mask.
class Filler {
 public:
  Filler(const Mask& mask, CharacterMap& map)
      : mask_(mask),
        map_(map),
        ascending_(are_strictly_ascending(
            {mask.keys, static_cast<std::size_t>(mask.count)})) {}

  void fill() {
    map_.kinds.fill(CharacterMap::kCopied);
    for (std::int32_t i = 0; i < mask_.count; ++i) {
      const auto key = static_cast<std::uint32_t>(mask_.keys[i]);
      const auto lead = static_cast<Byte>(key);
      if (lead < 0xC0) continue;
      // Keys that no character in order is equal to are not looked for here.
      if ((key & 0xFFFFC0E0) == 0x80C0) {
        set_pair(key, value_at(i));
      } else if ((key & 0xFFC0C0F0) == 0x8080E0) {
        set_triple(key, value_at(i));
      } else if (lead >= 0xF0) {
        pages_from(lead)[key >> 8 & 63] = CharacterMap::kStopPage;
      }
    }
  }

 private:
  // What the bisection finds in keys that are in no order is asked of it.
  std::int32_t value_at(std::int32_t index) const {
    return ascending_ ? mask_.values[index] : mask_.map(mask_.keys[index]);
  }

  static void fill_last(Row& row) {
    std::iota(row.begin(), row.end(), Byte{0x80});
  }

  void set_pair(std::uint32_t key, std::int32_t value) {
    const auto lead = static_cast<Byte>(key);
    Row& leads = map_.leads[lead & 31];
    Row& seconds = map_.seconds[lead & 31];
    Byte& kind = map_.kinds[lead & 63];
    if (kind == CharacterMap::kCopied) {
      kind = CharacterMap::kPaired;
      leads.fill(lead);
      fill_last(seconds);
    }
    const std::uint32_t index = key >> 8 & 63;
    const bool keeps_length = (value & ~0xFFFF) == 0;
    leads[index] = byte_of(value, 0);
    seconds[index] = keeps_length ? byte_of(value, 1) : Byte{0};
  }

  Row& pages_from(Byte lead) {
    Row& pages = map_.pages[lead & 31];
    Byte& kind = map_.kinds[lead & 63];
    if (kind == CharacterMap::kCopied) {
      kind = CharacterMap::kPaged;
      pages.fill(CharacterMap::kNoPage);
    }
    return pages;
  }

  void set_triple(std::uint32_t key, std::int32_t value) {
    const auto lead = static_cast<Byte>(key);
    Byte& number = pages_from(lead)[key >> 8 & 63];
    if (number == CharacterMap::kNoPage) number = new_page(key);
    if (number == CharacterMap::kStopPage) return;
    CharacterMap::Page& page = map_.page[number - 1u];
    const std::uint32_t index = key >> 16 & 63;
    const bool keeps_length = byte_of(value, 1) != 0 && byte_of(value, 3) == 0;
    page.first[index] = byte_of(value, 0);
    page.second[index] = byte_of(value, 1);
    page.third[index] = keeps_length ? byte_of(value, 2) : Byte{0};
  }

  Byte new_page(std::uint32_t key) {
    if (page_count_ == CharacterMap::kMostPages) {
      return CharacterMap::kStopPage;
    }
    CharacterMap::Page& page = map_.page[page_count_++];
    page.first.fill(static_cast<Byte>(key));
    page.second.fill(static_cast<Byte>(key >> 8));
    fill_last(page.third);
    return static_cast<Byte>(page_count_);
  }

  const Mask& mask_;
  CharacterMap& map_;
  bool ascending_;
  std::size_t page_count_ = 0;
};

// Maps the character in order of two or more bytes at `from`. False for a stop.
bool map_long(const CharacterMap& map, const Byte* from, Offset length,
              char* to) {
  const Byte lead = from[0];
  std::array<Byte, 4> bytes{};
  std::memcpy(bytes.data(), from, static_cast<std::size_t>(length));
  switch (map.kinds[lead & 63]) {
    case CharacterMap::kCopied:
      break;
    case CharacterMap::kPaired: {
      bytes[0] = map.leads[lead & 31][from[1] & 63];
      bytes[1] = map.seconds[lead & 31][from[1] & 63];
      if (bytes[1] == 0) return false;
      break;
    }
    case CharacterMap::kPaged: {
      const Byte number = map.pages[lead & 31][from[1] & 63];
      if (number == CharacterMap::kNoPage) break;
      if (number == CharacterMap::kStopPage) return false;
      const CharacterMap::Page& page = map.page[number - 1u];
      bytes[0] = page.first[from[2] & 63];
      bytes[1] = page.second[from[2] & 63];
      bytes[2] = page.third[from[2] & 63];
      if (bytes[2] == 0) return false;
      break;
    }
    default:
      return false;
  }
  std::memcpy(to, bytes.data(), static_cast<std::size_t>(length));
  return true;
}

bool is_in_order(const Byte* from, Offset length, Offset room) {
  if (length > room) return false;
  for (Offset i = 1; i < length; ++i) {
    if (!is_continuation(from[i])) return false;
  }
  return true;
}

}  // namespace

void map_ascii(const Mask& mask, CharacterMap& map) {
  if (mask.is_identity()) {
    map.ascii = kIdentity;
    map.kinds.fill(CharacterMap::kCopied);
    return;
  }
  map.kinds.fill(CharacterMap::kStop);
  const AsciiKeys place(mask);
  const auto count = static_cast<std::int32_t>(place.limit - place.first);
  if (set_neighbours(mask.keys + place.first, mask.values + place.first, count,
                     map)) {
    return;
  }
  const bool ascending = place.are_ascending(mask);
  for (Offset i = place.limit; i-- > place.first;) {
    const auto key = static_cast<std::uint32_t>(mask.keys[i]);
    if (key >= 128) continue;
    set_ascii(map, key, ascending ? mask.values[i] : mask.map(mask.keys[i]));
  }
}

void map_longer(const Mask& mask, CharacterMap& map) {
  if (!mask.is_identity()) Filler(mask, map).fill();
}

MappedRun map_characters_plainly(const CharacterMap& map, const Byte* from,
                                 Offset size, char* to, Offset most) {
  Offset at = 0;
  Offset characters = 0;
  for (; characters < most && at < size; ++characters) {
    const Byte lead = from[at];
    if (lead < 0x80) {
      if (map.has_ascii_stops && map.ascii_stops[lead] != 0) break;
      to[at++] = static_cast<char>(map.ascii[lead]);
      continue;
    }
    const Offset length = length_from_lead(lead);
    if (lead < 0xC0 || !is_in_order(from + at, length, size - at) ||
        !map_long(map, from + at, length, to + at)) {
      break;
    }
    at += length;
  }
  return {at, characters};
}

MappedRun map_characters(const CharacterMap& map, const Byte* from, Offset size,
                         char* to, Offset most) {
#if defined(__x86_64__)
  switch (instructions()) {
    case Instructions::kAvx512:
      return map_characters_avx512(map, from, size, to, most);
    case Instructions::kAvx2:
      return map_characters_avx2(map, from, size, to, most);
    default:
      break;
  }
#endif
  return map_characters_plainly(map, from, size, to, most);
}

Offset map_selections([[maybe_unused]] const CharacterMap& map,
                      [[maybe_unused]] const Byte* text,
                      [[maybe_unused]] Offset position,
                      [[maybe_unused]] Offset limit,
                      [[maybe_unused]] std::span<const Selection> selections,
                      [[maybe_unused]] char* to,
                      [[maybe_unused]] Offset& most) {
#if defined(__x86_64__)
  if (instructions() == Instructions::kAvx512) {
    return map_selections_avx512(map, text, position, limit, selections, to,
                                 most);
  }
#endif
  return 0;
}

}  // namespace quill
