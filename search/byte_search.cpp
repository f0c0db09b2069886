// FindStr, FindByte and FindStrAll.
//
// Every offset passed counts as one unit. From one question to the host to the
// next the units are known beforehand, so each stretch between two questions
// is searched at once and its units are counted together.
#include "search/byte_search.h"

#include <algorithm>
#include <array>
#include <span>

#include "blocks/byte_scan.h"
#include "blocks/long_list.h"
#include "blocks/yield_meter.h"
#include "quillcore.h"
#include "search/byte_searcher.h"

namespace quill {
namespace {

bool are_searchable(const char* text, std::int32_t start, std::int32_t end,
                    const char* pattern, std::int32_t pattern_length) {
  return text != nullptr && start >= 0 && start <= end && end >= 1 &&
         pattern != nullptr && pattern_length >= 1 &&
         pattern_length <= end - start;
}

// Goes from `position` to the next match; counts every position without one.
// `position` is then that of the match, or where the scan ended. The host
// hears the position just examined, and a stop takes effect at once.
bool find_match(const TextRange& range, Offset& position,
                ByteSearcher& searcher, YieldMeter& meter) {
  const Byte* const text = range.text;
  while (position < range.end && meter.go_on()) {
    const Offset stretch = meter.stretch_end(position, range.end);
    const Offset found =
        searcher.find(text + position, text + stretch, text + range.end) - text;
    if (found < stretch) {
      meter.skip(found - position);
      position = found;
      return true;
    }
    meter.skip(stretch - position - 1);
    meter.tick(stretch - 1);
    position = stretch;
  }
  return false;
}

// The same with a searcher and a count of its own.
[[gnu::noinline]] bool find_from(Offset& position, const TextRange& range,
                                 std::span<const Byte> needle,
                                 YieldMeter meter) {
  ByteSearcher searcher(needle.data(), std::ssize(needle));
  return find_match(range, position, searcher, meter);
}

// Lists the matches from `position` on that are known at once and come before
// the host is due. False when the list has no room for the one that `position`
// is then at.
[[gnu::noinline]] bool list_known(const TextRange& range, Offset& position,
                                  ByteSearcher& searcher, YieldMeter& meter,
                                  LongList& list) {
  std::array<std::int32_t, 128> pairs;
  while (meter.go_on()) {
    const Offset silent = meter.stretch_end(position, range.end) - 1;
    const Offset count = searcher.write_known(range.text, range.text + position,
                                              range.text + silent, pairs);
    if (count == 0) break;
    const Offset listed = list.append_pairs(
        std::span(pairs).first(static_cast<std::size_t>(count)));
    if (listed < count) {
      position = pairs[static_cast<std::size_t>(listed)];
      return false;
    }
    const Offset reached = pairs[static_cast<std::size_t>(count - 1)];
    meter.skip(reached - position - count / 2 * (searcher.length() - 1));
    position = reached;
  }
  return true;
}

// Returns where the scan stopped: `end` when the whole range was scanned. A
// match that the list has no room for is not passed.
Offset list_matches(const TextRange& range, ByteSearcher& searcher,
                    YieldMeter& meter, LongList& list) {
  Offset position = range.start;
  while (find_match(range, position, searcher, meter)) {
    const Offset match_end = position + searcher.length();
    meter.tick(match_end);
    if (!list.append(position, match_end)) break;
    position = match_end;
    if (searcher.lists_all() &&
        !list_known(range, position, searcher, meter, list)) {
      break;
    }
  }
  return position;
}

// Whether a scan of the range may come to ask the host, each offset a unit.
bool is_host_due(Offset start, Offset end) {
  return YieldMeter(0, nullptr).units_left() <= end - start;
}

// Apart, so that a scan in which the host is not due keeps nothing for it.
[[gnu::noinline]] std::int32_t find_byte_asking(const Byte* text, Offset start,
                                                Offset end, Byte wanted,
                                                std::int32_t reference,
                                                QuillYield yield) {
  YieldMeter meter(reference, yield);
  return to_long(scan_for_byte({text, start, end}, wanted, meter));
}

}  // namespace

Offset scan_on_for_byte(const TextRange& range, Offset reached, Byte wanted,
                        YieldMeter& meter) {
  const Byte* const text = range.text;
  for (Offset position = range.start;;) {
    meter.skip(reached - position - 1);
    meter.tick(reached);
    position = reached;
    if (position == range.end) return -1;
    if (!meter.go_on()) return text[position] == wanted ? position : -1;
    reached = meter.stretch_end(position, range.end);
    const Byte* const last = text + reached;
    const Byte* const found = find_byte(text + position, last, wanted);
    if (found != last) return found - text;
  }
}

}  // namespace quill

using namespace quill;

std::int32_t FindStr(const char* text, std::int32_t start, std::int32_t end,
                     const char* pattern, std::int32_t pattern_length,
                     std::int32_t /*reserved1*/, std::int32_t /*reserved2*/,
                     std::int32_t /*reserved3*/, std::int32_t /*reserved4*/,
                     std::int32_t* found_start, std::int32_t* found_end,
                     std::int32_t reference, QuillYield yield) {
  if (!are_searchable(text, start, end, pattern, pattern_length)) return 0;
  *found_start = 0;
  *found_end = end;
  const TextRange range{as_bytes(text), start, end};
  const std::span needle(as_bytes(pattern),
                         static_cast<std::size_t>(pattern_length));
  Offset position = start;
  bool found = false;
  if (!is_host_due(start, end)) {
    const ShortLook look =
        look_shortly(needle, range.text + start, range.text + end);
    position = look.reached - range.text;
    found = look.found;
  }
  if (!found && position < end) {
    found = find_from(position, range, needle, {reference, yield});
  }
  if (!found) {
    *found_end = to_long(position);
    return 0;
  }
  *found_start = to_long(position);
  *found_end = to_long(position + pattern_length);
  return 1;
}

std::int32_t FindStrAll(const char* text, std::int32_t start, std::int32_t end,
                        const char* pattern, std::int32_t pattern_length,
                        std::int32_t /*reserved1*/, std::int32_t /*reserved2*/,
                        std::int32_t /*reserved3*/, std::int32_t /*reserved4*/,
                        QuillBlock* list, std::int32_t* long_count,
                        std::int32_t* stop, std::int32_t reference,
                        QuillYield yield) {
  if (!are_searchable(text, start, end, pattern, pattern_length)) return 0;
  LongList matches;
  if (matches.start()) {
    ByteSearcher searcher(as_bytes(pattern), pattern_length);
    YieldMeter meter(reference, yield);
    const Offset stopped =
        list_matches({as_bytes(text), start, end}, searcher, meter, matches);
    const Offset count = matches.long_count();
    if (QuillBlock block = matches.hand_over(); block != nullptr) {
      *list = block;
      *long_count = to_long(count);
      *stop = to_long(stopped);
      return 1;
    }
  }
  *list = nullptr;
  *long_count = 0;
  *stop = end;
  return 0;
}

std::int32_t FindByte(char* text, std::int32_t start, std::int32_t end,
                      char byte, std::int32_t reference, QuillYield yield) {
  if (start >= end) return -1;
  const auto wanted = static_cast<Byte>(byte);
  if (is_host_due(start, end)) {
    return find_byte_asking(as_bytes(text), start, end, wanted, reference,
                            yield);
  }
  const Byte* const last = as_bytes(text) + end;
  const Byte* const found = find_byte(as_bytes(text) + start, last, wanted);
  return found == last ? -1 : to_long(found - as_bytes(text));
}
