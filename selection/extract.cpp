// Gathering the text under selections into a new Block, each piece in a prefix
// and a suffix.
//
// A first pass over the list gives the exact size, so that the Block is made
// once and never resized.
#include <algorithm>
#include <optional>

#include "blocks/active_block.h"
#include "blocks/block_lock.h"
#include "blocks/repeated_string.h"
#include "blocks/short_move.h"
#include "blocks/yield_meter.h"
#include "quillcore.h"
#include "selection/selection_list.h"

using namespace quill;

namespace {

using Selections = std::span<const Selection>;

struct Piece {
  const char* bytes;
  Offset length;  // 0 for none

  bool is_missing() const { return length > 0 && bytes == nullptr; }
};

struct Wrapping {
  Piece prefix;
  Piece suffix;
};

// Size of the whole result. None when a selection begins before the text, or
// when bytes are to be copied from nowhere.
std::optional<Offset> measure(const char* text, Selections selections,
                              const Wrapping& wrapping) {
  Offset pieces = 0;
  Offset covered = 0;
  for (const Selection& selection : selections) {
    if (selection.start >= selection.end) continue;
    if (selection.start < 0) return std::nullopt;
    covered += selection.length();
    ++pieces;
  }
  if (pieces > 0 && (text == nullptr || wrapping.prefix.is_missing() ||
                     wrapping.suffix.is_missing())) {
    return std::nullopt;
  }
  return covered + pieces * (wrapping.prefix.length + wrapping.suffix.length);
}

char* append(char* to, const char* bytes, Offset length) {
  move_bytes(to, bytes, length);
  return to + length;
}

// Of one that is never appended no byte is looked at.
RepeatedString repeated(const Piece& piece, Offset times) {
  const Offset length = times == 0 ? 0 : piece.length;
  return {{piece.bytes, static_cast<std::size_t>(length)}, times};
}

// What is behind it in the output up to `end` is written later.
char* append(char* to, const RepeatedString& string, const char* end) {
  char* const behind = to + string.length();
  string.put(to, {0, end - behind});
  return behind;
}

// False when the host stopped the copying; what is in `out` is then partial.
// The host hears the index of the list's next long.
bool copy_pieces(const char* text, Selections selections,
                 const Wrapping& wrapping, std::span<char> output,
                 YieldMeter meter) {
  const Offset count = std::ssize(selections);
  const Offset times = output.empty() ? 0 : count;
  const RepeatedString prefix = repeated(wrapping.prefix, times);
  const RepeatedString suffix = repeated(wrapping.suffix, times);
  char* out = output.data();
  const char* const end = out + output.size();
  for (Offset i = 0; i < count && meter.go_on(); ++i) {
    const Selection& selection = selections[static_cast<std::size_t>(i)];
    if (i + kSelectionsAhead < count) {
      fetch_text(text, (&selection)[kSelectionsAhead]);
    }
    if (selection.start < selection.end) {
      out = append(out, prefix, end);
      out = append(out, text + selection.start, selection.length());
      out = append(out, suffix, end);
    }
    meter.tick(2 * (i + 1));
  }
  return meter.go_on();
}

}  // namespace

std::int32_t ExtractSelections(const char* text, QuillBlock list,
                               const char* prefix, std::int32_t prefix_length,
                               const char* suffix, std::int32_t suffix_length,
                               QuillBlock* result, std::int32_t reference,
                               QuillYield yield) {
  if (GetHandleSize(list) / 4 < 2) return 0;
  const BlockLock lock(list);
  const Selections selections = selections_of(lock.longs());
  const Wrapping wrapping{{prefix, std::max(prefix_length, 0)},
                          {suffix, std::max(suffix_length, 0)}};
  const std::optional<Offset> size = measure(text, selections, wrapping);
  if (!size || !fits_long(*size)) return 0;
  ActiveBlock output(to_long(*size));
  if (!output.alive()) return 0;
  const bool complete =
      copy_pieces(text, selections, wrapping,
                  {output.write_position(), static_cast<std::size_t>(*size)},
                  YieldMeter(reference, yield));
  if (complete) output.advance(*size);
  *result = complete ? output.finish() : nullptr;
  return 1;
}
