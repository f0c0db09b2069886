// The view of a selection list as (start, end) pairs. A leaf: every folder may
// include it.
//
// A list is a Block of longs read two by two; a lone last long belongs to no
// selection. Offsets come from the host, and nothing here trusts them.
#pragma once

#include <cstddef>
#include <span>

#include "blocks/base.h"
#include "blocks/byte_scan.h"

namespace quill {

struct Selection {
  std::int32_t start;
  std::int32_t end;

  Offset length() const { return Offset{end} - start; }
};
static_assert(sizeof(Selection) == 8);

// An element of a key selection list: a match and the key found inside it.
struct KeyRecord {
  Selection key;
  Selection super;
};
static_assert(sizeof(KeyRecord) == 16);

// The whole selections of a list of longs.
inline std::span<Selection> selections_of(std::span<std::int32_t> longs) {
  return {reinterpret_cast<Selection*>(longs.data()), longs.size() / 2};
}
inline std::span<const Selection> selections_of(
    std::span<const std::int32_t> longs) {
  return {reinterpret_cast<const Selection*>(longs.data()), longs.size() / 2};
}

// Asks early for the text of a selection some places further on in a list. Only
// a hint: nothing is read, wherever the selection lies.
constexpr Offset kSelectionsAhead = 64;
inline void fetch_text(const char* text, const Selection& selection) {
  const auto offset = static_cast<std::uintptr_t>(selection.start);
  const auto address = reinterpret_cast<std::uintptr_t>(text) + offset;
  // No pointer may point there by arithmetic.
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  __builtin_prefetch(reinterpret_cast<const void*>(address));
}

// Calls `visit` with the text of each selection, all of which lie in the text,
// and its length, up to one for which it answers false. Tells whether there was
// none.
template <class Visit>
bool visit_each(char* text, std::span<const Selection> selections,
                Visit visit) {
  const Offset count = std::ssize(selections);
  for (Offset i = 0; i < count; ++i) {
    const Selection& selection = selections[static_cast<std::size_t>(i)];
    if (i + kSelectionsAhead < count) {
      fetch_text(text, (&selection)[kSelectionsAhead]);
    }
    if (!visit(text + selection.start, selection.length())) return false;
  }
  return true;
}

inline PairSurvey survey(std::span<const std::int32_t> longs,
                         std::int32_t limit = 0) {
  return survey_pairs(longs.data(), longs.data() + longs.size(), limit);
}

// Whether an editing operation may trust a list, as it lies in its Block:
// whole selections, ascending, not overlapping, inside a text of `text_length`
// bytes. `found` is what a survey of its longs found.
inline bool is_canonical(std::span<const std::int32_t> longs,
                         const PairSurvey& found, Offset text_length) {
  return longs.empty() || (longs.size() % 2 == 0 && found.ascends &&
                           longs.front() >= 0 && longs.back() <= text_length);
}
inline bool is_canonical(std::span<const std::int32_t> longs,
                         Offset text_length) {
  return is_canonical(longs, survey(longs), text_length);
}

}  // namespace quill
