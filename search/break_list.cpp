// Break lists: every n characters, or where lines are cut at spaces.
//
// A break list is a selection list in which every break is an empty selection.
#include "blocks/active_block.h"
#include "blocks/block_lock.h"
#include "blocks/byte_scan.h"
#include "blocks/yield_meter.h"
#include "quillcore.h"
#include "search/cut_every.h"
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

  // Breaks that there is room for, where they go, and that they are there.
  Offset room() const { return block.room() / kBytesPerBreak; }
  std::int32_t* next_longs() {
    return reinterpret_cast<std::int32_t*>(block.write_position());
  }
  void advance(Offset breaks) { block.advance(breaks * kBytesPerBreak); }

  ActiveBlock block;
};

// Steps over characters in stretches that are known to have them in order,
// where only their first bytes need to be found.
class ChunkScan {
 public:
  explicit ChunkScan(const Range& in) : in_(in) {}

  // As step_characters, to the end of the range.
  Stepped step(Offset position, Offset wanted) {
    Offset done = 0;
    while (is_in_order_from(position)) {
      const Byte* first = in_.text + position;
      const Byte* last = in_.text + in_order_end_;
      const Byte* reached = nth_lead(first, last, wanted - done);
      position = reached - in_.text;
      if (reached != last) return {position, wanted, false, false};
      done += count_leads(first, last);
      if (done == wanted || position == in_.end) {
        return {position, done, false, false};
      }
    }
    Stepped rest = step_characters(in_.text, position, in_.end, wanted - done);
    rest.characters += done;
    return rest;
  }

 private:
  static constexpr Offset kStretch = 4096;

  bool is_in_order_from(Offset position) {
    if (position >= in_order_start_ && position < in_order_end_) return true;
    const Byte* first = in_.text + position;
    const Byte* last = in_.text + std::min(position + kStretch, in_.end);
    in_order_start_ = position;
    in_order_end_ = walk_characters(first, last, kStretch).next - in_.text;
    return in_order_end_ > position;
  }

  Range in_;
  Offset in_order_start_ = 0;
  Offset in_order_end_ = 0;
};

// False when a character can't be read, or when stray continuation bytes keep
// a step from moving: it would never end. Every break lies at least `chunk`
// bytes behind the one before it, so the list holds them all.
bool break_every(const Range& in, Offset chunk, BreakList& list,
                 YieldMeter meter) {
  ChunkScan scan(in);
  const bool in_blocks = cuts_in_blocks();
  Offset position = in.start;
  while (position < in.end && meter.go_on()) {
    Offset done = 0;  // characters since the last break
    if (in_blocks) {
      const Offset most = std::min(meter.units_left() - 1, list.room());
      const Cuts cuts =
          cut_every(in.text, position, in.end, chunk, most, list.next_longs());
      list.advance(cuts.cuts);
      meter.skip(cuts.cuts);
      position = cuts.reached;
      done = cuts.characters;
      if (position == in.end && done == 0) break;
    }
    const Stepped stepped = scan.step(position, chunk - done);
    if (stepped.failed || stepped.stuck) return false;
    position = stepped.offset;
    if (stepped.characters + done == chunk) list.store(position);
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
