// Runs of bits in a bit set, set and found word by word.
//
// Bits are numbered as in every bit set here: bit n is bit n mod 8, least
// significant first, of byte n div 8. Only the bytes that the caller names are
// read or written, whatever their alignment.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <span>

#include "blocks/base.h"
#include "selection/edge_kernel.h"
#include "selection/selection_list.h"

namespace quill {

static_assert(std::endian::native == std::endian::little,
              "words of a bit set are read as they lie in memory");

inline std::uint64_t load_word(const Byte* bits, Offset word) {
  std::uint64_t value;
  std::memcpy(&value, bits + word * 8, sizeof value);
  return value;
}

inline void set_in_bytes(Byte* eight, std::uint64_t value) {
  value |= load_word(eight, 0);
  std::memcpy(eight, &value, sizeof value);
}

inline void set_in_word(Byte* bits, Offset word, std::uint64_t value) {
  set_in_bytes(bits + word * 8, value);
}

// Sets the bits from `first` to `last`, both included. Whether a short run lies
// in one word or in two can mostly not be foreseen: both are written, without a
// branch, and may be the same one.
inline void set_run_in_words(Byte* bits, std::uint32_t first,
                             std::uint32_t last) {
  const std::uint32_t first_word = first >> 6;
  const std::uint32_t last_word = last >> 6;
  const std::uint64_t from_first = ~std::uint64_t{0} << (first & 63);
  const std::uint64_t to_last = ~std::uint64_t{0} >> (~last & 63);
  const std::uint64_t other = std::uint64_t{first_word == last_word} - 1;
  set_in_word(bits, first_word, from_first & (to_last | other));
  set_in_word(bits, last_word, to_last & (from_first | other));
  if (last_word - first_word > 1) [[unlikely]] {
    std::memset(bits + (first_word + Offset{1}) * 8, 0xFF,
                std::size_t{last_word - first_word - 1} * 8);
  }
}

// The same where `last` may lie among the last bytes, less than a word, of the
// `byte_count` that may be touched.
inline void set_run(Byte* bits, Offset byte_count, std::uint32_t first,
                    std::uint32_t last) {
  const auto whole = static_cast<std::uint32_t>(byte_count / 8 * 64);
  if (first < whole) set_run_in_words(bits, first, std::min(last, whole - 1));
  for (std::uint32_t bit = std::max(first, whole); bit <= last; ++bit) {
    Byte& byte = bits[bit >> 3];
    byte = static_cast<Byte>(byte | 1u << (bit & 7));
  }
}

// How the runs of a list are written. Where they are short and far apart, each
// is one write of the eight bytes from its first byte on; where they are close,
// such a write would have to wait for the one before it, which it overlaps.
enum class Placing { kClose, kApart };

// Runs of up to so many bits lie in the eight bytes from their first byte on.
constexpr std::uint32_t kMostInEightBytes = 57;

// Sets the bits start + 1 to end of each selection, cut to the text. The set
// has those bits in its first `byte_count` bytes.
template <Placing kPlacing>
inline void set_selections(Byte* bits, Offset byte_count,
                           std::span<const Selection> selections,
                           std::int32_t text_length) {
  const Offset in_words =
      std::min<Offset>(text_length, byte_count / 8 * 64 - 1);
  // From the first byte of a run that begins up to here eight bytes may be
  // written: bit `text_length` belongs to the set.
  const Offset apart_up_to = Offset{text_length} - kMostInEightBytes;
  // In a list that is out of order the words to come are fetched early.
  constexpr std::size_t kAhead = 24;
  for (std::size_t i = 0; i < selections.size(); ++i) {
    if (kPlacing == Placing::kClose && i + kAhead < selections.size()) {
      __builtin_prefetch(bits + (selections[i + kAhead].start >> 3), 1);
    }
    const auto [start, end] = selections[i];
    const auto first = static_cast<std::uint32_t>(start) + 1;
    const auto last = static_cast<std::uint32_t>(end);
    // Negative offsets are beyond every text here.
    if (kPlacing == Placing::kApart && first - 1 <= apart_up_to &&
        last - first < kMostInEightBytes) [[likely]] {
      const std::uint64_t run = ~std::uint64_t{0} >> (63 - (last - first));
      set_in_bytes(bits + (first >> 3), run << (first & 7));
    } else if (first - 1 < last && last <= in_words) [[likely]] {
      set_run_in_words(bits, first, last);
    } else {
      const std::int32_t from = std::max(start, 0);
      const std::int32_t to = std::min(end, text_length);
      if (from >= to) continue;
      set_run(bits, byte_count, static_cast<std::uint32_t>(from) + 1,
              static_cast<std::uint32_t>(to));
    }
  }
}

// A guess from the first few selections; only speed depends on it.
inline Placing placing_of(std::span<const Selection> selections) {
  constexpr std::size_t kFew = 24;
  if (selections.size() < kFew) return Placing::kClose;
  for (std::size_t i = 1; i < kFew; ++i) {
    const Offset apart = Offset{selections[i].start} - selections[i - 1].start;
    if (apart < 64 || selections[i].length() > Offset{kMostInEightBytes}) {
      return Placing::kClose;
    }
  }
  return Placing::kApart;
}

inline void set_selections(Byte* bits, Offset byte_count,
                           std::span<const Selection> selections,
                           std::int32_t text_length) {
  constexpr std::size_t kAtOnce = 1024;
  while (!selections.empty()) {
    const auto some = selections.first(std::min(kAtOnce, selections.size()));
    if (placing_of(some) == Placing::kApart) {
      set_selections<Placing::kApart>(bits, byte_count, some, text_length);
    } else {
      set_selections<Placing::kClose>(bits, byte_count, some, text_length);
    }
    selections = selections.subspan(some.size());
  }
}

// The word at bit `base`; bits from `bit_count` on count as clear.
inline std::uint64_t load_bits(const Byte* bits, Offset base,
                               Offset bit_count) {
  const Offset left = bit_count - base;
  if (left >= 64) return load_word(bits, base >> 6);
  std::uint64_t word = 0;
  std::memcpy(&word, bits + (base >> 3),
              static_cast<std::size_t>(left + 7) / 8);
  return word & ((std::uint64_t{1} << left) - 1);
}

// Lists where the bits change: `out` gets, for each set bit of `edges`, `base`
// plus its number. Returns the place behind the last one, which is written to
// as well: bits are taken in pairs, since how many there are can't be foreseen.
inline std::int32_t* list_edges(std::uint64_t edges, std::int32_t base,
                                std::int32_t* out) {
  constexpr std::uint64_t kLastBit = std::uint64_t{1} << 63;
  const auto put = [base, &out](int place, std::uint64_t rest) {
    const auto bit = static_cast<std::uint32_t>(std::countr_zero(rest));
    out[place] =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(base) + bit);
  };
  while (edges != 0) {
    put(0, edges);
    edges &= edges - 1;
    put(1, edges | kLastBit);
    out += edges != 0 ? 2 : 1;
    edges &= edges - 1;
  }
  return out;
}

// Finds the runs of set bits among the first `bit_count` and hands them on as
// the longs of selections, the bit before the run and its last bit, ascending,
// many at a time: `take(span)`, which answers false to end it.
template <class Take>
void take_runs(const Byte* bits, Offset bit_count, Take take) {
  constexpr Offset kBitsAtOnce = kWordsAtOnce * 64;
  std::array<std::int32_t, 2048> longs;  // undefined before `next`
  // A step writes a long for each bit, and one more.
  std::int32_t* const full = longs.data() + longs.size() - kBitsAtOnce - 1;
  std::int32_t* next = longs.data();
  const auto hand_on = [&] {
    const auto count = static_cast<std::size_t>(next - longs.data());
    const std::size_t whole = count & ~std::size_t{1};
    const bool go_on = take(std::span<const std::int32_t>(longs.data(), whole));
    longs[0] = longs[whole];  // a run that has only begun stays
    next = longs.data() + (count - whole);
    return go_on;
  };
  std::uint64_t before = 0;  // the last bit of the word before
  const Offset at_once =
      lists_words_at_once() ? bit_count / kBitsAtOnce * kBitsAtOnce : 0;
  for (Offset base = 0; base < bit_count;) {
    if (base < at_once) {
      next =
          list_edges_avx512(bits + base / 8, before, to_long(base - 1), next);
      base += kBitsAtOnce;
      before = load_word(bits, base / 64 - 1) >> 63;
    } else {
      const std::uint64_t word = load_bits(bits, base, bit_count);
      next = list_edges(word ^ (word << 1 | before), to_long(base - 1), next);
      base += 64;
      before = word >> 63;
    }
    if (next > full && !hand_on()) return;
  }
  // The last bit of all, when the last word is full.
  if ((next - longs.data()) % 2 != 0) *next++ = to_long(bit_count - 1);
  hand_on();
}

}  // namespace quill
