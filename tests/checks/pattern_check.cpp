#include <algorithm>

#include "tests/checks/calls.h"
#include "tests/support/guarded_text.h"

namespace quill::test {

Outcome PatternCall::run(Side side, QuillYield yield) const {
  const GuardedText held(text);
  const char* const at = is_text_null ? nullptr : held.data();
  const PartPointers pattern(parts);
  const PartPointers inner(key);
  HeldBlock list(untouched());
  HeldBlock block;
  if (operation == kSort && at != nullptr) {
    LockBlock(block.block = block_of(text));
  }
  Outcome o;
  YieldRecorder::watch(o.outs);
  std::int32_t* const a = &o.outs[0];
  std::int32_t* const b = &o.outs[1];
  // The arguments that all searches share come first.
  const auto search = [&](auto* find, auto... rest) {
    return find(at, from, to, pattern.data(), part_count, rest..., yield);
  };
  const auto answer = [&]() -> std::int32_t {
    switch (operation) {
      case kComparePart:
        return QUILL_PICK(side, utf8_CompareRangePart)(pattern.data()[0], at,
                                                       from, to, a);
      case kCompare:
        return QUILL_PICK(side, utf8_CompareRangePattern)(
            at, from, to, pattern.data(), part_count, a);
      case kFind:
        return search(QUILL_PICK(side, utf8_FindPattern), a, b, &o.outs[2], 61);
      case kFindPrevious:
        return search(QUILL_PICK(side, utf8_FindPatternPrev), a, b, &o.outs[2],
                      62);
      case kCount:
        return search(QUILL_PICK(side, utf8_CountPatternAll), a, b, 63);
      case kFindAll:
        return search(QUILL_PICK(side, utf8_FindPatternAll), &list.block, a, b,
                      64);
      case kFindKeys:
        return search(QUILL_PICK(side, utf8_FindKeyPatternAll), inner.data(),
                      inner.count(), &list.block, a, b, 65);
      case kSort:
        return QUILL_PICK(side, utf8_SortPattern)(
            &block.block, from, to, pattern.data(), part_count, a, 66, yield);
    }
    return 0;
  };
  o.result = answer();
  o.text = state_of(block.block);
  o.list = state_of(list.block);
  return o;
}

std::string PatternCall::show() const {
  return show_fields("operation", operation, "text", text, "null", is_text_null,
                     "from", from, "to", to, "pattern", parts, "of", part_count,
                     "key", key);
}

std::string check_pattern(Input& in) {
  PatternCall call;
  call.operation = static_cast<PatternCall::Operation>(in.between(0, 7));
  call.parts = in.range_parts();
  if (call.operation == PatternCall::kComparePart && call.parts.empty()) {
    call.parts.emplace_back();
  }
  if (call.operation == PatternCall::kFindKeys) call.key = in.range_parts();
  call.part_count = in.one_in(32) ? in.pick({0, -1}) : length_of(call.parts);
  call.text = in.any_text(in.pick({12, 40, 300}));
  const auto size = length_of(call.text);
  call.from = in.flag() ? 0 : in.offset(call.text.size());
  call.to = in.flag() ? size : in.offset(call.text.size());
  // Only a Block tells where the text ends.
  if (call.operation != PatternCall::kSort) call.to = std::min(call.to, size);
  call.is_text_null = in.one_in(64);
  return first_difference(call, in.host());
}

}  // namespace quill::test
