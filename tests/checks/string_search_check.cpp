#include "search/string_filter.h"
#include "tests/checks/calls.h"
#include "tests/support/alphabet.h"
#include "tests/support/guarded_text.h"
#include "utf8/characters.h"

namespace quill::test {

namespace {

using naive::StringCall;

Longs matches_by_filter(const StringCall& c, Side side, bool backward) {
  StringFilter filter;
  filter.prepare(as_bytes(c.text), c.start, c.end,
                 {c.pattern, c.pattern_count, c.flags},
                 {c.mask_keys, c.mask_values, c.mask_count});
  const auto next = [&](Offset at) -> Offset {
    if (backward) {
      return side == Side::kNaive ? at - 1 : filter.previous(c.start, at);
    }
    return side == Side::kNaive ? at + 1 : filter.next(at + 1, c.end);
  };
  Longs found;
  Offset at = next(backward ? c.end : Offset{c.start} - 1);
  for (; at >= c.start && at < c.end; at = next(at)) {
    const auto place = static_cast<std::int32_t>(at);
    std::int32_t next_place = 0;
    if (!naive::is_continuation_at(c.text, at) &&
        naive::compare(c, place, &next_place)) {
      found.push_back(place);
    }
  }
  return found;
}

}  // namespace

StringCall StringSearch::arguments(const char* at) const {
  return {null == kText ? nullptr : at,
          start,
          end,
          null == kPattern ? nullptr : pattern.data(),
          pattern_count,
          flags ? flags->data() : nullptr,
          null == kKeys ? nullptr : mask.key_data(),
          null == kValues ? nullptr : mask.value_data(),
          mask_count,
          null == kBreaks || !breaks ? nullptr : breaks->data(),
          break_count,
          edge,
          invert};
}

Outcome StringSearch::run(Side side, QuillYield yield) const {
  const GuardedText held(text);
  const StringCall c = arguments(held.data());
  Outcome o;
  YieldRecorder::watch(o.outs);
  HeldBlock list(untouched());
  std::int32_t* const a = &o.outs[0];
  std::int32_t* const b = &o.outs[1];
  const auto compare = [&](auto export_) {
    return export_(c.text, start, end, c.pattern, c.pattern_count, c.flags,
                   c.mask_keys, c.mask_values, c.mask_count, a);
  };
  const auto answer = [&]() -> std::int32_t {
    switch (operation) {
      case kFind:
        return c(QUILL_PICK(side, utf8_FindStr), a, b, 5, yield);
      case kFindPrevious:
        return c(QUILL_PICK(side, utf8_FindStrPrev), a, b, 6, yield);
      case kFindNth:
        o.outs[2] = nth;
        return c(QUILL_PICK(side, utf8_FindStrNth), &o.outs[2], a, b, 7, yield);
      case kCount:
        return c(QUILL_PICK(side, utf8_CountStrAll), a, b, 8, yield);
      case kFindAll:
        return c(QUILL_PICK(side, utf8_FindStrAll), &list.block, a, b, 9,
                 yield);
      case kCompare:
        return compare(QUILL_PICK(side, utf8_CompareSubstring));
      case kCompareSelection:
        return compare(QUILL_PICK(side, utf8_CompareSelString));
      case kTestBreaks: {
        unsigned char sides[2] = {9, 9};
        QUILL_PICK(side, utf8_TestBreakChars)
        (c.text, end, start, match_end, c.mask_keys, c.mask_values,
         c.mask_count, c.breaks, c.break_count, edge, &sides[0], &sides[1]);
        o.outs = {sides[0], sides[1]};
        break;
      }
      case kFilter:
      case kFilterBackward:
        o.outs = matches_by_filter(c, side, operation == kFilterBackward);
    }
    return 0;
  };
  o.result = answer();
  o.list = state_of(list.block);
  return o;
}

std::string StringSearch::show() const {
  return show_fields("operation", operation, "text", text, "start", start,
                     "end", end, "pattern", pattern, "count", pattern_count,
                     "flags", flags, "keys", mask.keys, "values", mask.values,
                     "count", mask_count, "breaks", breaks, "count",
                     break_count, "edge", edge, "invert", invert, "match end",
                     match_end, "nth", nth, "null", null);
}

namespace {

// Folding, shortening, out of order, with equal keys, or none.
Mask draw_mask(Input& in) {
  static const Mask folding = {
      {packed("A"), packed("\xC3\x89"), packed("\xC5\xBF"),
       packed("\xE2\x84\xAA")},
      {packed("a"), packed("\xC3\xA9"), packed("b"), packed("a")}};
  const int kind = in.between(0, 5);
  if (kind < 2) return {};
  if (kind < 4) return folding;
  Mask mask = in.mask(12);
  if (kind == 5) std::reverse(mask.keys.begin(), mask.keys.end());
  return mask;
}

// What the pattern matches in one place, or would with other open characters.
std::string spelled(Input& in, const StringSearch& call) {
  std::string text;
  for (std::size_t i = 0; i < call.pattern.size(); ++i) {
    const bool open = call.flags && (*call.flags)[i] != 1;
    char bytes[4];
    text += open ? in.pick(alphabet())
                 : std::string(bytes, static_cast<std::size_t>(
                                          unpack(call.pattern[i], bytes)));
  }
  return text;
}

// Long enough for whatever is prepared: runs of ASCII, of text in order and of
// malformed text, the pattern across their borders.
std::string draw_patchwork(Input& in, const StringSearch& call) {
  std::string text;
  const int runs = in.between(1, in.pick({6, 6, 120}));
  for (int i = 0; i < runs; ++i) {
    text += in.long_text(in.between(1, 700)) + spelled(in, call);
  }
  return text;
}

void draw_breaks(Input& in, StringSearch& call) {
  if (!in.flag()) return;
  call.breaks = in.characters(4);
  if (in.one_in(16)) {  // thousands, in no order and with repeats
    for (std::int32_t i = 0; i < 3000; ++i) {
      call.breaks->push_back((0x4E00 + i * 7919 % 20'000) << 8 | 0xE4);
    }
    std::swap(call.breaks->front(), call.breaks->back());
  }
  call.edge = in.one_in(8) ? in.byte() : in.pick<unsigned char>({0, 1});
  call.invert = in.one_in(8) ? in.byte() : in.pick<unsigned char>({0, 1});
}

// Arguments that contradict each other, most of which are refused.
void draw_oddities(Input& in, StringSearch& call) {
  call.null = in.pick({StringSearch::kNone, StringSearch::kText,
                       StringSearch::kPattern, StringSearch::kKeys,
                       StringSearch::kValues, StringSearch::kBreaks});
  if (in.one_in(4)) call.pattern_count = in.between(-2, 0);
  if (in.one_in(4)) call.mask_count = -call.mask_count;
  if (in.one_in(4)) call.break_count = -1;
  call.start = in.offset(call.text.size());
  call.end = std::min(in.offset(call.text.size()), call.end);
}

// Searches refuse what they can't do; what they are made of expects them to
// have done so.
bool is_allowed(const StringSearch& call) {
  if (call.operation < StringSearch::kCompare) return true;
  if (call.null == StringSearch::kPattern) return false;
  return call.operation < StringSearch::kFilter ||
         (call.null != StringSearch::kText && call.start >= 0 &&
          call.start < call.end && call.pattern_count >= 1);
}

}  // namespace

std::string check_string_search(Input& in) {
  StringSearch call;
  call.operation = static_cast<StringSearch::Operation>(
      in.between(StringSearch::kFind, StringSearch::kFilterBackward));
  call.mask = draw_mask(in);
  call.mask_count = call.mask.count();
  call.pattern = in.characters(in.one_in(4) ? 9 : 3);
  for (std::int32_t& element : call.pattern) {
    element = naive::utf8_MaskChar(element, call.mask.key_data(),
                                   call.mask.value_data(), call.mask_count, 1);
  }
  call.pattern_count = length_of(call.pattern);
  if (in.one_in(3)) call.flags = in.flags(call.pattern.size());
  draw_breaks(in, call);
  call.break_count = call.breaks ? length_of(*call.breaks) : 0;
  call.text = in.one_in(16) ? draw_patchwork(in, call)
                            : in.any_text(in.pick({4, 24, 24, 300}));
  const auto size = length_of(call.text);
  call.start = in.flag() ? 0 : in.between(0, size);
  call.end = in.flag() ? size : in.between(call.start, size);
  call.match_end = in.between(0, call.end + 1);
  call.nth = in.between(-1, 5);
  if (in.one_in(16)) draw_oddities(in, call);
  if (!is_allowed(call)) return {};
  return first_difference(call, in.host());
}

}  // namespace quill::test
