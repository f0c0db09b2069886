// Break lists: every n characters, or where lines are cut at spaces.
//
// A break list is a selection list in which every break is an empty selection.
#include "blocks/active_block.h"
#include "blocks/block_lock.h"
#include "blocks/yield_meter.h"
#include "quillcore.h"
#include "search/line_scan.h"
#include "utf8/counters.h"

using namespace quill;

namespace {

constexpr Offset kBytesPerBreak = 8;

struct Range {
  const Byte* text;
  Offset start;
  Offset end;
};

struct BreakList {
  explicit BreakList(Offset breaks) : block(to_long(breaks * kBytesPerBreak)) {}

  bool is_full() const { return block.room() < kBytesPerBreak; }
  [[nodiscard]] bool grow() {
    return block.resize(block.capacity() + 1'000'000);
  }
  void store(Offset position) {
    const std::int32_t pair[] = {to_long(position), to_long(position)};
    block.append(pair, sizeof pair);
  }

  ActiveBlock block;
};

// False when a character can't be read, or when stray continuation bytes keep
// a step from moving: it would never end. Every break lies at least `chunk`
// bytes behind the one before it, so the list holds them all.
bool break_every(const Range& in, Offset chunk, BreakList& list,
                 YieldMeter meter) {
  Offset position = in.start;
  while (position < in.end && meter.go_on()) {
    const Stepped stepped = step_characters(in.text, position, in.end, chunk);
    if (stepped.failed || stepped.stuck) return false;
    position = stepped.offset;
    if (stepped.characters == chunk) list.store(position);
    meter.tick(position);
  }
  return true;
}

// False when a character can't be read or the list can't grow.
bool break_at_spaces(const Range& in, Offset width, BreakList& list,
                     YieldMeter meter) {
  LineScan scan(in.text, in.end);
  Offset position = in.start;
  while (position < in.end && meter.go_on()) {
    const LineScan::Line line = scan.find_line(position, width);
    if (!line.readable) return false;
    position = line.end;
    if (position < in.end) {
      if (list.is_full() && !list.grow()) return false;
      list.store(position);
    }
    meter.tick(position);
  }
  return true;
}

struct Request {
  QuillBlock text;
  std::int32_t start;
  std::int32_t end;
  std::int32_t unit;  // characters or bytes from one break to the next
  QuillBlock* list;
  std::int32_t* long_count;
};

// Checks the request, has `fill` find the breaks, and hands the list over.
template <class Fill>
std::int32_t make_list(const Request& request, Fill fill) {
  const Offset length = Offset{request.end} - request.start;
  if (request.start < 0 || length < 1 || request.unit < 1 ||
      request.end > GetHandleSize(request.text)) {
    return 0;
  }
  const Offset breaks = length / request.unit;
  if (breaks * kBytesPerBreak > kMaxLong) return 0;
  BreakList list(breaks);
  const BlockLock text(request.text);
  const Range range{text.bytes(), request.start, request.end};
  if (!list.block.alive() || !fill(range, list)) return 0;
  const Offset longs = list.block.in_use() / 4;
  *request.list = list.block.finish();
  *request.long_count = to_long(longs);
  return 1;
}

}  // namespace

std::int32_t utf8_ComputeBreaks(QuillBlock text, std::int32_t start,
                                std::int32_t end, std::int32_t chunk,
                                QuillBlock* list, std::int32_t* long_count,
                                std::int32_t reference, QuillYield yield) {
  return make_list({text, start, end, chunk, list, long_count},
                   [&](const Range& in, BreakList& breaks) {
                     return break_every(in, chunk, breaks,
                                        YieldMeter(reference, yield));
                   });
}

std::int32_t utf8_ComputeSpaceBreaks(QuillBlock text, std::int32_t start,
                                     std::int32_t end, std::int32_t width,
                                     QuillBlock* list, std::int32_t* long_count,
                                     std::int32_t reference, QuillYield yield) {
  return make_list({text, start, end, width, list, long_count},
                   [&](const Range& in, BreakList& breaks) {
                     return break_at_spaces(in, width, breaks,
                                            YieldMeter(reference, yield));
                   });
}
