// Comparing, break characters and the five searches for strings against their
// model, on texts of any order, under any mask, with any host.
#include <iostream>

#include "fuzz/support/fuzz_input.h"
#include "search/string_filter.h"
#include "tests/models/string_search_model.h"
#include "tests/support/blocks.h"
#include "tests/support/guarded_text.h"

namespace {

using namespace quill;
using quill::fuzz::FuzzInput;
using test::StringCall;
using test::StringModel;
using test::YieldRecorder;

// What a call leaves behind.
struct Outcome {
  std::int32_t result = -7;
  std::int32_t out[3] = {-77, -777, -7777};
  test::Longs list = {};
  std::vector<YieldRecorder::Call> heard = {};

  bool operator==(const Outcome&) const = default;
};

constexpr int kOperations = 5;

Outcome run(const StringCall& call, int operation, std::int32_t nth,
            const YieldRecorder& host) {
  const QuillYield yield = host.callback();
  Outcome o;
  o.out[2] = nth;
  std::int32_t* const a = &o.out[0];
  std::int32_t* const b = &o.out[1];
  if (operation == 0) o.result = call(utf8_FindStr, a, b, 5, yield);
  if (operation == 1) o.result = call(utf8_FindStrPrev, a, b, 5, yield);
  if (operation == 2) {
    o.result = call(utf8_FindStrNth, &o.out[2], a, b, 5, yield);
  }
  if (operation == 3) o.result = call(utf8_CountStrAll, a, b, 5, yield);
  if (operation == 4) {
    test::HeldBlock held;
    o.result = call(utf8_FindStrAll, &held.block, a, b, 5, yield);
    o.list = held.longs();
    o.out[2] = held.block != nullptr ? 1 : 0;
  }
  o.heard = host.calls();
  return o;
}

Outcome expect(const StringCall& call, int operation, std::int32_t nth,
               YieldRecorder& host) {
  const StringModel model(call, 5, host);
  Outcome o;
  o.out[2] = nth;
  std::int32_t* const a = &o.out[0];
  std::int32_t* const b = &o.out[1];
  if (operation == 0) o.result = model.find(call.start, a, b) ? 1 : 0;
  if (operation == 1) o.result = model.find_previous(a, b) ? 1 : 0;
  if (operation == 2) o.result = model.find_nth(&o.out[2], a, b) ? 1 : 0;
  if (operation == 3) o.result = model.count_all(a, b) ? 1 : 0;
  if (operation == 4) {
    o.list = model.find_all(b);
    o.out[0] = static_cast<std::int32_t>(o.list.size());
    o.out[2] = o.list.empty() ? 0 : 1;
    o.result = 1;
  }
  o.heard = host.calls();
  return o;
}

bool compares_alike(const StringCall& c, std::int32_t at, std::int32_t end) {
  if (c.pattern == nullptr) return true;
  YieldRecorder host;
  const StringModel model(c, 0, host);
  std::int32_t next[2] = {-1, -1};
  unsigned char sides[4] = {9, 9, 9, 9};
  const bool equal = utf8_CompareSubstring(
                         c.text, at, c.end, c.pattern, c.pattern_count, c.flags,
                         c.mask_keys, c.mask_values, c.mask_count, next) == 1;
  utf8_TestBreakChars(c.text, c.end, at, end, c.mask_keys, c.mask_values,
                      c.mask_count, c.breaks, c.break_count, c.edge, &sides[0],
                      &sides[1]);
  model.test_breaks(at, end, &sides[2], &sides[3]);
  return equal == model.compare(at, &next[1]) && next[0] == next[1] &&
         sides[0] == sides[2] && sides[1] == sides[3];
}

// The short texts of a fuzzer are searched without the filter, so its promise
// is checked by itself: every match is a candidate, from either side.
bool filter_misses_nothing(const StringCall& c) {
  if (c.text == nullptr || c.start < 0 || c.start >= c.end ||
      c.pattern == nullptr || c.pattern_count < 1) {
    return true;
  }
  StringFilter filters[2];
  for (StringFilter& filter : filters) {
    filter.prepare(as_bytes(c.text), c.start, c.end,
                   {c.pattern, c.pattern_count, c.flags},
                   {c.mask_keys, c.mask_values, c.mask_count});
  }
  YieldRecorder host;
  const StringModel model(c, 0, host);
  std::vector<Offset> matches;
  for (std::int32_t p = c.start; p < c.end; ++p) {
    std::int32_t next = 0;
    if ((c.text[p] & 0xC0) != 0x80 && model.compare(p, &next)) {
      matches.push_back(p);
    }
  }
  Offset from = c.start;
  for (const Offset match : matches) {
    Offset candidate = from;
    while ((candidate = filters[0].next(candidate, c.end)) < match) ++candidate;
    if (candidate != match) return false;
    from = match + 1;
  }
  Offset limit = c.end;
  for (auto match = matches.rbegin(); match != matches.rend(); ++match) {
    while ((limit = filters[1].previous(c.start, limit)) > *match) continue;
    if (limit != *match) return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  FuzzInput input(data, size);
  const int operation = input.between(0, kOperations - 1);
  const std::int32_t every = input.yield_max();
  const FuzzInput::Stop stop = input.stop();
  const int change_at = input.between(0, 5);
  const std::int32_t maximum = input.between(-1, 9);
  const std::int32_t nth = input.between(-1, 4);
  const FuzzInput::MaskTable mask = input.mask(6);
  const auto pattern = input.characters(5);
  const auto flags = input.flags(pattern.size());
  const auto breaks = input.characters(4);
  const int unusual = input.between(0, 31);
  const unsigned char edge = input.byte();
  const unsigned char invert = input.byte();
  // A run of ASCII, so that long texts are not all out of order.
  const std::size_t plain = input.between(0, 3) == 3 ? 300 : 0;
  const std::string text =
      input.text(40) + std::string(plain, 'a') + input.text(60);
  const std::int32_t end =
      unusual == 0 ? static_cast<std::int32_t>(text.size())
                   : input.between(0, static_cast<int>(text.size()));

  const test::GuardedText guarded(text);
  const StringCall call = {
      unusual == 1 ? nullptr : guarded.data(),
      unusual == 2 ? input.offset(text.size()) : input.between(0, end),
      end,
      unusual == 3 ? nullptr : pattern.data(),
      static_cast<std::int32_t>(pattern.size()),
      unusual % 2 == 0 ? nullptr : flags.data(),
      unusual == 4 ? nullptr : mask.key_data(),
      mask.value_data(),
      unusual == 5 ? -mask.count() : mask.count(),
      unusual == 6 ? nullptr : breaks.data(),
      unusual == 7 ? -1 : static_cast<std::int32_t>(breaks.size()),
      edge,
      invert};

  const auto play = [&](auto search) {
    const test::YieldMaxScope scope(every);
    YieldRecorder host(stop.at, stop.answer);
    if (unusual % 3 == 0) host.change_maximum(change_at, maximum);
    return search(call, operation, nth, host);
  };
  const bool alike = play(run) == play(expect) &&
                     compares_alike(call, input.between(0, end + 1),
                                    input.between(0, end + 1)) &&
                     filter_misses_nothing(call);
  if (alike) return 0;
  std::cerr << "operation " << operation << " every " << every << " stop "
            << stop.at << " range " << call.start << ' ' << end << " unusual "
            << unusual << " text:";
  for (const char byte : text) {
    std::cerr << ' ' << (static_cast<unsigned>(byte) & 0xFF);
  }
  std::cerr << '\n';
  __builtin_trap();
}
