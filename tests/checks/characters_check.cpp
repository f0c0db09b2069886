#include "tests/checks/calls.h"
#include "tests/support/guarded_text.h"

namespace quill::test {

Reading read_character(Side side, CharacterCall::Operation reader,
                       const char* text, std::int32_t position,
                       std::int32_t end) {
  Reading reading = {-9, -9, -9, -9, -9};
  auto& [result, start, length, character, next] = reading;
  if (reader == CharacterCall::kNextValue) {
    result = QUILL_PICK(side, utf8_GetNextCharValue)(
        text, position, end, &start, &length, &character, &next);
    return reading;
  }
  const auto read = reader == CharacterCall::kNext
                        ? QUILL_PICK(side, utf8_GetNextCharAsLong)
                    : reader == CharacterCall::kContaining
                        ? QUILL_PICK(side, utf8_GetCharAsLong)
                        : QUILL_PICK(side, utf8_GetPrevCharAsLong);
  result = read(text, position, end, &start, &character, &next);
  return reading;
}

Outcome CharacterCall::run(Side side, QuillYield yield) const {
  const GuardedText held(text);
  const char* const at = has_text ? held.data() : nullptr;
  Outcome o;
  YieldRecorder::watch(o.outs);
  switch (operation) {
    case kCount:
      o.result =
          QUILL_PICK(side, utf8_CountCharacters)(at, start, end, &o.outs[0]);
      break;
    case kCountTask:
      o.result = QUILL_PICK(side, utf8_CountCharactersTask)(
          at, start, end, &o.outs[0], 9, yield);
      break;
    case kCountToOffset:
      o.outs[0] = request;
      o.result = QUILL_PICK(side, utf8_CountToOffset)(at, start, end,
                                                      &o.outs[0], &o.outs[1]);
      break;
    default: {
      const Reading reading = read_character(side, operation, at, start, end);
      o.result = reading[0];
      o.outs.assign(reading.begin() + 1, reading.end());
    }
  }
  return o;
}

std::string CharacterCall::show() const {
  return show_fields("operation", operation, "text", text, "start", start,
                     "end", end, "request", request, "has text", has_text);
}

std::string check_characters(Input& in) {
  CharacterCall call;
  call.operation = static_cast<CharacterCall::Operation>(
      in.between(CharacterCall::kNext, CharacterCall::kCountToOffset));
  call.text = in.any_text(in.pick({4, 40, 40, 300}));
  // Long stretches in order, so that a fault in one is met half-way.
  if (in.one_in(4)) call.text += call.text + in.text(3) + call.text;
  const auto size = length_of(call.text);
  call.start = in.flag() ? 0 : in.offset(call.text.size());
  call.end = in.flag() ? size : std::min(in.offset(call.text.size()), size);
  call.request = in.flag() ? in.between(-1, 3 * size) : in.between(0, 9);
  call.has_text = !in.one_in(64);
  return first_difference(call, in.host());
}

}  // namespace quill::test
