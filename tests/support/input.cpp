#include "tests/support/input.h"

#include <limits>
#include <random>

#include "tests/support/alphabet.h"
#include "tests/support/show.h"

namespace quill::test {

std::string show(const RangeParts& parts) {
  std::string shown;
  for (const auto& [set, minimum, maximum, include] : parts) {
    shown += (include != 0 ? "[" : "[^") + show(set) + "]{" + show(minimum) +
             ',' + show(maximum) + '}';
  }
  return shown;
}

PartPointers::PartPointers(const RangeParts& parts) {
  for (const auto& [set, minimum, maximum, include] : parts) {
    parts_.push_back({set.data(), length_of(set), minimum, maximum, include});
  }
  pointers_ = pointers_to(parts_);
}

// Takes no more bytes than the range needs, so that a change of one byte
// changes one draw.
int Input::between(int low, int high) {
  const auto range = static_cast<std::uint64_t>(std::int64_t{high} - low);
  std::uint64_t drawn = 0;
  for (std::uint64_t left = range; left > 0; left >>= 8) {
    drawn <<= 8;
    if (bytes_.empty()) continue;
    drawn |= bytes_.front();
    bytes_ = bytes_.subspan(1);
  }
  return static_cast<int>(low + static_cast<std::int64_t>(drawn % (range + 1)));
}

std::int32_t Input::any_long() {
  return between(std::numeric_limits<std::int32_t>::min(),
                 std::numeric_limits<std::int32_t>::max());
}

std::string Input::piece() {
  const int kind = between(0, 15);
  if (kind < 12) return pick(alphabet());
  if (kind < 15) return pick(strays());
  return std::string(1, static_cast<char>(byte()));
}

std::string Input::well_formed(int most) {
  std::string text;
  for (int left = between(0, most); left > 0; --left) text += pick(alphabet());
  return text;
}

std::string Input::text(int most) {
  std::string text;
  for (int left = between(0, most); left > 0; --left) text += piece();
  return text;
}

std::string Input::letters(int length, int kinds) {
  std::string text;
  for (int i = 0; i < length; ++i) {
    text += static_cast<char>('a' + between(0, kinds - 1));
  }
  return text;
}

std::string Input::any_text(int most_pieces) {
  switch (between(0, 3)) {
    case 0:
      return text(most_pieces);
    case 1:
      return well_formed(most_pieces);
    case 2:
      return letters(between(0, 2 * most_pieces), pick({1, 2, 2, 3, 26}));
    default: {
      const std::string once = text(12);
      std::string many = text(3);
      for (int left = between(1, 40); left > 0; --left) many += once;
      return many + text(most_pieces);
    }
  }
}

std::string Input::long_text(int pieces) {
  const int kind = between(0, 2);
  std::minstd_rand generator(static_cast<std::uint32_t>(between(1, 0xFFFF)));
  std::vector<std::uint8_t> bytes(2 * static_cast<std::size_t>(pieces));
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>(generator() >> 8);
  }
  Input grown(bytes);
  std::string text;
  for (int i = 0; i < pieces; ++i) {
    text += kind == 0   ? std::string(1, grown.pick({'a', 'b', ' ', 'A', '\n'}))
            : kind == 1 ? grown.pick(alphabet())
                        : grown.piece();
  }
  return text;
}

Longs Input::characters(int most) {
  Longs characters;
  for (int left = between(0, most); left > 0; --left) {
    characters.push_back(one_in(16) ? any_long() : packed(pick(alphabet())));
  }
  return characters;
}

std::vector<unsigned char> Input::flags(std::size_t count) {
  std::vector<unsigned char> flags(count);
  for (unsigned char& flag : flags) {
    const int kind = between(0, 7);
    flag = kind == 7 ? byte() : static_cast<unsigned char>(kind > 2);
  }
  return flags;
}

std::int32_t Input::offset(std::size_t size) {
  const int inside = static_cast<int>(size);
  const int kind = between(0, 15);
  if (kind < 12) return between(0, inside);
  if (kind < 15) return between(-3, inside + 3);
  return pick({std::numeric_limits<std::int32_t>::min(),
               std::numeric_limits<std::int32_t>::max(), -1, inside + 100});
}

Mask Input::mask(int most) {
  Mask mask;
  mask.keys = characters(most);
  std::sort(mask.keys.begin(), mask.keys.end());
  for (std::size_t i = 0; i < mask.keys.size(); ++i) {
    mask.values.push_back(packed(pick(alphabet())));
  }
  return mask;
}

Longs Input::selections(std::size_t size, int most) {
  Longs list(static_cast<std::size_t>(between(0, most / 2)) * 2);
  const bool is_clean = !one_in(4);
  for (std::int32_t& each : list) {
    each = is_clean ? between(0, static_cast<int>(size)) : offset(size);
  }
  if (!one_in(8)) std::sort(list.begin(), list.end());
  // Some touch, and some are empty.
  for (std::size_t i = 1; i < list.size(); ++i) {
    if (one_in(6)) list[i] = list[i - 1];
  }
  if (one_in(16)) list.push_back(static_cast<std::int32_t>(size));
  return list;
}

RangeParts Input::range_parts() {
  RangeParts parts(static_cast<std::size_t>(
      one_in(16) ? pick({0, 0, 9}) : between(1, pick({2, 2, 5}))));
  for (RangePart& part : parts) {
    part.set = characters(pick({1, 2, 2, 9}));
    if (!one_in(10)) std::sort(part.set.begin(), part.set.end());
    part.minimum = pick({1, 1, 1, 0, 0, 2, 3, -1});
    part.maximum = pick({0, 0, 0, 1, 1, 2, 4, 30, -1});
    part.include = pick<unsigned char>({1, 1, 1, 1, 0, 0, 2, 255});
  }
  return parts;
}

HostPlan Input::host() {
  HostPlan plan;
  const int kind = between(0, 7);
  plan.yield_max = kind < 6 ? kYieldMaxima[kind] : between(1, 64);
  if (flag()) {
    plan.stop_at = between(0, 0xFFFF);
    plan.answer = pick<unsigned char>({0, 2, 255});
  }
  if (one_in(4)) {
    plan.change_at = between(0, 3);
    plan.change_to = pick({-1, 0, 1, 3, 50});
  }
  return plan;
}

}  // namespace quill::test
