#include <limits>

#include "tests/checks/calls.h"

namespace quill::test {

Outcome ReplaceAllCall::run(Side side, QuillYield yield) const {
  HeldBlock block(is_text_null ? nullptr : block_of(text));
  if (!is_text_null) LockBlock(block.block);
  const QuillBlock before = block.block;
  const PartPointers pattern(parts);
  const unsigned char* const flags_at = flags.empty() ? nullptr : flags.data();
  Outcome o;
  o.outs[0] = to;
  o.outs[1] = position;
  YieldRecorder::watch(o.outs);
  switch (operation) {
    case kBytes:
      o.result = QUILL_PICK(side, ReplaceStrAll)(
          block.block, from, &o.outs[0], bytes.data(), length_of(bytes), 1,
          string.data(), length_of(string), flags_at, 2, 3, 4, 5, &o.outs[1],
          55, yield);
      break;
    case kCharacters:
      o.result = QUILL_PICK(side, utf8_ReplaceStrAll)(
          &block.block, from, &o.outs[0], characters.data(),
          length_of(characters), nullptr, string.data(), length_of(string),
          flags_at, mask.key_data(), mask.value_data(), mask.count(),
          breaks.data(), length_of(breaks), edge, invert, &o.outs[1], 56,
          yield);
      break;
    case kPattern:
      o.result = QUILL_PICK(side, utf8_ReplacePatternAll)(
          &block.block, from, &o.outs[0], pattern.data(), pattern.count(),
          string.data(), length_of(string), flags_at, &o.outs[1], 57, yield);
      break;
  }
  o.outs[2] = block.block == before ? 1 : 0;
  o.text = state_of(block.block);
  return o;
}

std::string ReplaceAllCall::show() const {
  return show_fields("operation", operation, "text", text, "from", from, "to",
                     to, "bytes", bytes, "characters", characters, "pattern",
                     parts, "keys", mask.keys, "values", mask.values, "breaks",
                     breaks, "edge", edge, "invert", invert, "string", string,
                     "flags", flags, "position", position, "null",
                     is_text_null);
}

std::string check_replace_all(Input& in) {
  ReplaceAllCall call;
  call.operation = static_cast<ReplaceAllCall::Operation>(in.between(0, 2));
  call.text = in.any_text(in.pick({12, 40, 300}));
  call.from = in.flag() ? 0 : in.offset(call.text.size());
  call.to = in.flag() ? length_of(call.text) : in.offset(call.text.size());
  call.bytes = in.text(2);
  call.characters = in.characters(2);
  call.parts = in.range_parts();
  if (in.one_in(3)) call.mask = in.mask(4);
  if (in.one_in(3)) call.breaks = in.characters(4);
  call.edge = in.pick<unsigned char>({0, 1});
  call.invert = in.pick<unsigned char>({0, 0, 1});
  call.string = in.text(4);
  // As many as there could be characters in the string.
  if (in.flag()) call.flags = in.flags(call.string.size());
  using Limits = std::numeric_limits<std::int32_t>;
  call.position = in.pick({1, 1, -5, Limits::max(), Limits::max() - 3,
                           Limits::min(), Limits::min() + 3});
  call.is_text_null = in.one_in(64);
  return first_difference(call, in.host());
}

}  // namespace quill::test
