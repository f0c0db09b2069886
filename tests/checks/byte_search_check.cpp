#include "tests/checks/calls.h"
#include "tests/support/guarded_text.h"

namespace quill::test {

Outcome ByteSearch::run(Side side, QuillYield yield) const {
  const GuardedText held(text);
  const GuardedText held_pattern(pattern);
  char* const at = held.data();
  const char* const searched = has_text ? at : nullptr;
  const char* const sought = has_pattern ? held_pattern.data() : nullptr;
  Outcome o;
  YieldRecorder::watch(o.outs);
  HeldBlock list(untouched());
  switch (operation) {
    case kFind:
      o.result =
          QUILL_PICK(side, FindStr)(searched, start, end, sought, length, 1, -2,
                                    3, -4, &o.outs[0], &o.outs[1], 41, yield);
      break;
    case kFindAll:
      o.result = QUILL_PICK(side, FindStrAll)(
          searched, start, end, sought, length, 1, -2, 3, -4, &list.block,
          &o.outs[0], &o.outs[1], 42, yield);
      break;
    case kFindByte:
      o.result =
          QUILL_PICK(side, FindByte)(at, start, end, pattern[0], 43, yield);
      break;
    case kSwap:
      o.result = QUILL_PICK(side, BytePatternSwap)(
          at, start, end,
          pattern_at < 0 ? held_pattern.data() : at + pattern_at,
          replacement_at < 0 ? replacement.data() : at + replacement_at, length,
          44, yield);
  }
  o.list = state_of(list.block);
  o.buffer = held.view();
  return o;
}

std::string ByteSearch::show() const {
  return show_fields("operation", operation, "text", text, "start", start,
                     "end", end, "pattern", pattern, "at", pattern_at,
                     "replacement", replacement, "at", replacement_at, "length",
                     length, "has text", has_text, "has pattern", has_pattern);
}

std::string check_byte_search(Input& in) {
  ByteSearch call;
  call.operation = in.pick({ByteSearch::kFind, ByteSearch::kFindAll,
                            ByteSearch::kFindByte, ByteSearch::kSwap});
  call.text = in.any_text(in.pick({4, 40, 40, 300}));
  const auto size = length_of(call.text);
  call.start = in.flag() ? 0 : in.offset(call.text.size());
  // The host vouches for what lies before the end.
  call.end = in.flag() ? size : std::min(in.offset(call.text.size()), size);
  const auto cut = static_cast<std::size_t>(in.between(0, size));
  call.pattern =
      in.one_in(4) ? in.text(6)
                   : call.text.substr(cut, static_cast<std::size_t>(in.between(
                                               1, in.one_in(4) ? 300 : 6)));
  call.replacement.assign(call.pattern.rbegin(), call.pattern.rend());
  // The scan for a byte checks nothing.
  if (call.operation == ByteSearch::kFindByte) {
    call.start = std::max(call.start, 0);
    if (call.pattern.empty()) call.pattern = "a";
  }
  call.length = length_of(call.pattern);
  if (in.one_in(32)) call.length = in.between(-1, 0);
  call.has_text = !in.one_in(64);
  call.has_pattern = !in.one_in(64);
  const int room = size - length_of(call.pattern);
  if (room >= 0 && in.one_in(3)) call.pattern_at = in.between(-1, room);
  if (room >= 0 && in.one_in(3)) call.replacement_at = in.between(-1, room);
  return first_difference(call, in.host());
}

}  // namespace quill::test
