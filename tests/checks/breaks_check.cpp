#include "tests/checks/calls.h"
#include "tests/support/guarded_text.h"

namespace quill::test {

Outcome BreakCall::run(Side side, QuillYield yield) const {
  Outcome o;
  YieldRecorder::watch(o.outs);
  if (operation == kWiden) {
    const GuardedText held(text);
    unsigned char found = 7;
    o.outs[0] = selection_start;
    o.outs[1] = selection_end;
    o.result = QUILL_PICK(side, utf8_FindBreaks)(
        has_text ? held.data() : nullptr, start, end, backward.members.data(),
        length_of(backward.members), backward.flag, forward.members.data(),
        length_of(forward.members), forward.flag, &o.outs[0], &o.outs[1],
        &found, 9, yield);
    o.outs[2] = found;
    return o;
  }
  const HeldBlock block(text);
  LockBlock(block.block);
  HeldBlock list(untouched());
  const auto compute = operation == kEveryFew
                           ? QUILL_PICK(side, utf8_ComputeBreaks)
                           : QUILL_PICK(side, utf8_ComputeSpaceBreaks);
  o.result =
      compute(block.block, start, end, unit, &list.block, &o.outs[0], 5, yield);
  o.list = state_of(list.block);
  o.outs[1] = is_locked(block.block) ? 1 : 0;
  return o;
}

std::string BreakCall::show() const {
  return show_fields("operation", operation, "text", text, "start", start,
                     "end", end, "unit", unit, "backward", backward.members,
                     "flag", backward.flag, "forward", forward.members, "flag",
                     forward.flag, "from", selection_start, "to", selection_end,
                     "has text", has_text);
}

namespace {

// Lines, words and stray bytes in an uneven mixture.
std::string draw_lines(Input& in) {
  std::string text;
  const int malformed = in.pick({3, 60, 1000});
  const auto piece = [&] {
    return in.well_formed(5) +
           std::string(
               static_cast<std::size_t>(in.one_in(8) ? in.between(0, 120) : 0),
               'w') +
           (in.one_in(3) ? in.pick({" ", " ", "\r\n", "\n", "\r"}) : "") +
           (in.one_in(malformed) ? in.text(3) : "");
  };
  for (int left = in.between(0, 60); left > 0; --left) text += piece();
  if (in.one_in(32)) {
    const std::string once = text;
    for (int repeats = 12; repeats > 0; --repeats) text += once + piece();
  }
  return text;
}

BreakCall draw_widening(Input& in) {
  BreakCall call = {.text = in.any_text(in.pick({4, 30, 60}))};
  const std::size_t size = call.text.size();
  call.start = in.flag() ? 0 : in.offset(size);
  call.end = in.between(0, static_cast<int>(size));
  for (BreakCall::Class* one : {&call.backward, &call.forward}) {
    one->members = in.characters(6);
    one->flag = in.pick<unsigned char>({0, 1, 1, 2});
  }
  call.selection_start = in.offset(size);
  call.selection_end = in.offset(size);
  call.has_text = !in.one_in(64);
  return call;
}

}  // namespace

std::string check_breaks(Input& in) {
  const auto operation =
      in.pick({BreakCall::kWiden, BreakCall::kEveryFew, BreakCall::kAtSpaces});
  if (operation == BreakCall::kWiden) {
    return first_difference(draw_widening(in), in.host());
  }
  BreakCall call = {.operation = operation, .text = draw_lines(in)};
  const auto size = length_of(call.text);
  call.start = in.flag() ? 0 : in.between(-1, size);
  call.end = in.flag() ? size : in.between(0, size + 1);
  call.unit = in.flag() ? in.between(0, 6) : in.between(1, 100);
  call.has_text = !in.one_in(64);
  return first_difference(call, in.host());
}

}  // namespace quill::test
