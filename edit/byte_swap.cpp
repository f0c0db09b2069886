// BytePatternSwap: every occurrence of one byte string overwritten in place by
// another of the same length.
#include <algorithm>
#include <cstring>
#include <functional>
#include <optional>

#include "blocks/yield_meter.h"
#include "quillcore.h"
#include "search/byte_searcher.h"

namespace quill {
namespace {

// Whether overwriting bytes of the buffer could change the pattern.
bool overlap(const Byte* buffer, Offset buffer_length, const Byte* pattern,
             Offset pattern_length) {
  const std::less<const Byte*> before;
  return before(pattern, buffer + buffer_length) &&
         before(buffer, pattern + pattern_length);
}

struct Swap {
  const Byte* pattern;
  const char* replacement;
  Offset length;
};

// The host hears the last byte dealt with: the position examined, or the last
// one swapped.
void swap_all(char* buffer, Offset start, Offset end, const Swap& swap,
              YieldMeter& meter) {
  const Byte* const text = as_bytes(buffer);
  const bool pattern_may_change =
      overlap(text + start, end - start, swap.pattern, swap.length);
  std::optional<ByteSearcher> searcher(std::in_place, swap.pattern,
                                       swap.length);
  Offset position = start;
  while (position < end && meter.go_on()) {
    const Offset stretch = meter.stretch_end(position, end);
    const Offset found =
        searcher->find(text + position, text + stretch, text + end) - text;
    if (found == stretch) {
      meter.skip(stretch - position - 1);
      meter.tick(stretch - 1);
      position = stretch;
      continue;
    }
    std::memmove(buffer + found, swap.replacement,
                 static_cast<std::size_t>(swap.length));
    if (pattern_may_change) searcher.emplace(swap.pattern, swap.length);
    meter.skip(found - position);
    position = found + swap.length;
    meter.tick(position - 1);
  }
}

}  // namespace
}  // namespace quill

using namespace quill;

std::int32_t BytePatternSwap(char* buffer, std::int32_t start, std::int32_t end,
                             const char* pattern, const char* replacement,
                             std::int32_t length, std::int32_t reference,
                             QuillYield yield) {
  if (start >= end || end < 0 || length < 1) return 1;
  YieldMeter meter(reference, yield);
  // What lies before the buffer is not the host's to examine.
  swap_all(buffer, std::max(start, 0), end,
           {as_bytes(pattern), replacement, length}, meter);
  return 1;
}
