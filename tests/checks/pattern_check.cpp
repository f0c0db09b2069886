#include "tests/checks/pattern_check.h"

#include <algorithm>

#include "tests/models/pattern_model.h"
#include "tests/support/guarded_text.h"

namespace quill::test {

Outcome PatternCall::run(Side side, QuillYield yield) const {
  const GuardedText held(text);
  const char* const at = is_text_null ? nullptr : held.data();
  const PartPointers pattern(parts);
  const PartPointers inner(key);
  HeldBlock list(untouched());
  Outcome o;
  YieldRecorder::watch(o.outs);
  switch (operation) {
    case kComparePart:
      o.result =
          pick(side, ::utf8_CompareRangePart, naive::utf8_CompareRangePart)(
              pattern.data()[0], at, from, to, &o.outs[0]);
      break;
    case kCompare:
      o.result = pick(side, ::utf8_CompareRangePattern,
                      naive::utf8_CompareRangePattern)(
          at, from, to, pattern.data(), part_count, &o.outs[0]);
      break;
    case kFind:
      o.result = pick(side, ::utf8_FindPattern, naive::utf8_FindPattern)(
          at, from, to, pattern.data(), part_count, &o.outs[0], &o.outs[1],
          &o.outs[2], 61, yield);
      break;
    case kFindPrevious:
      o.result =
          pick(side, ::utf8_FindPatternPrev, naive::utf8_FindPatternPrev)(
              at, from, to, pattern.data(), part_count, &o.outs[0], &o.outs[1],
              &o.outs[2], 62, yield);
      break;
    case kCount:
      o.result =
          pick(side, ::utf8_CountPatternAll, naive::utf8_CountPatternAll)(
              at, from, to, pattern.data(), part_count, &o.outs[0], &o.outs[1],
              63, yield);
      break;
    case kFindAll:
      o.result = pick(side, ::utf8_FindPatternAll, naive::utf8_FindPatternAll)(
          at, from, to, pattern.data(), part_count, &list.block, &o.outs[0],
          &o.outs[1], 64, yield);
      break;
    case kFindKeys:
      o.result =
          pick(side, ::utf8_FindKeyPatternAll, naive::utf8_FindKeyPatternAll)(
              at, from, to, pattern.data(), part_count, inner.data(),
              inner.count(), &list.block, &o.outs[0], &o.outs[1], 65, yield);
      break;
    case kSort: {
      HeldBlock block;
      if (!is_text_null) LockBlock(block.block = block_of(text));
      o.result = pick(side, ::utf8_SortPattern, naive::utf8_SortPattern)(
          &block.block, from, to, pattern.data(), part_count, &o.outs[0], 66,
          yield);
      o.text = state_of(block.block);
      break;
    }
  }
  o.list = state_of(list.block);
  return o;
}

std::string PatternCall::show() const {
  return show_fields("operation", static_cast<int>(operation), "text", text,
                     "null", is_text_null, "from", from, "to", to, "pattern",
                     parts, "of", part_count, "key", key);
}

PatternCall draw_pattern_call(Input& in) {
  PatternCall call;
  call.operation = static_cast<PatternCall::Operation>(in.between(0, 7));
  call.parts = draw_range_parts(in);
  if (call.operation == PatternCall::kComparePart && call.parts.empty()) {
    call.parts.emplace_back();
  }
  if (call.operation == PatternCall::kFindKeys) call.key = draw_range_parts(in);
  call.part_count = in.one_in(32)
                        ? in.pick({0, -1})
                        : static_cast<std::int32_t>(call.parts.size());
  call.text = in.any_text(in.pick({12, 40, 300}));
  const auto size = static_cast<std::int32_t>(call.text.size());
  call.from = in.flag() ? 0 : in.offset(call.text.size());
  call.to = in.flag() ? size : in.offset(call.text.size());
  // Only a Block tells where the text ends.
  if (call.operation != PatternCall::kSort) call.to = std::min(call.to, size);
  call.is_text_null = in.one_in(64);
  return call;
}

std::string check_pattern(Input& in) {
  const PatternCall call = draw_pattern_call(in);
  return first_difference(call, in.host());
}

}  // namespace quill::test
