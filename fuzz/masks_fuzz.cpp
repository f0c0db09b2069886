// Rewriting through masks, widening and break lists, against the models.
#include <cstdio>
#include <cstring>

#include "fuzz/support/fuzz_input.h"
#include "quillcore.h"
#include "tests/models/break_model.h"
#include "tests/models/mask_model.h"
#include "tests/support/blocks.h"
#include "tests/support/guarded_text.h"

namespace quill::fuzz {
namespace {

using test::Longs;
using test::YieldRecorder;

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "differs: %s\n", what);
  __builtin_trap();
}

std::int32_t count_of(const Longs& longs) {
  return static_cast<std::int32_t>(longs.size());
}

void rewrite(FuzzInput& input) {
  model::Masking of;
  of.text = input.text(60);
  for (int repeats = input.between(0, 3); repeats > 0; --repeats) {
    of.text += of.text + of.text;
  }
  const FuzzInput::MaskTable mask = input.mask(20);
  of.keys = mask.keys;
  of.values = mask.values;
  of.reference = input.any_long();
  const bool whole_text = input.flag();
  const std::int32_t start = input.offset(of.text.size());
  const std::int32_t end = input.offset(of.text.size());
  Longs selections;
  for (int left = input.between(0, 9); left > 0; --left) {
    selections.push_back(input.offset(of.text.size()));
  }
  const FuzzInput::Stop stop = input.stop();
  const test::YieldMaxScope scope(input.yield_max());

  YieldRecorder naive(stop.at, stop.answer);
  const auto want = whole_text ? model::mask_selections(of, selections, naive)
                               : model::mask_string(of, start, end, naive);
  YieldRecorder host(stop.at, stop.answer);
  const test::HeldBlock source(of.text);
  QuillBlock out = nullptr;
  const std::int32_t result =
      whole_text ? utf8_MaskStringSelection(
                       source.block, selections.data(), count_of(selections),
                       mask.key_data(), mask.value_data(), mask.count(), &out,
                       of.reference, host.callback())
                 : utf8_MaskString(source.block, start, end, mask.key_data(),
                                   mask.value_data(), mask.count(), &out, 0,
                                   of.reference, host.callback());
  require(result == (want ? 1 : 0), "result of masking");
  require(host.calls() == naive.calls(), "calls of masking");
  if (!want) return;
  require(test::bytes_of(out) == *want, "masked text");
  DisposeBlock(out);
}

void sort(FuzzInput& input) {
  Longs keys = input.characters(200);
  Longs values(keys.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = static_cast<std::int32_t>(i);
  }
  Longs want_keys = keys;
  Longs want_values = values;
  model::sort_mask(want_keys, want_values, 0, keys.size());
  utf8_SortMask(keys.data(), values.data(), 0, count_of(keys));
  require(keys == want_keys && values == want_values, "sorted mask");
}

void widen(FuzzInput& input) {
  const std::string text = input.text(40);
  const test::GuardedText guarded(text);
  model::Widening of;
  of.text = guarded.view();
  of.lower_bound = input.offset(text.size());
  of.end = input.between(0, static_cast<int>(text.size()));
  of.backward = {input.characters(5), input.byte()};
  of.forward = {input.characters(5), input.byte()};
  of.reference = input.any_long();
  model::WidenedSelection want{input.offset(text.size()),
                               input.offset(text.size()), 7};
  model::WidenedSelection got = want;
  const FuzzInput::Stop stop = input.stop();
  const test::YieldMaxScope scope(input.yield_max());
  YieldRecorder naive(stop.at, stop.answer);
  const bool widened = model::find_breaks(of, want, naive);
  YieldRecorder host(stop.at, stop.answer);
  const std::int32_t result = utf8_FindBreaks(
      of.text.data(), of.lower_bound, of.end, of.backward.members.data(),
      count_of(of.backward.members), of.backward.flag,
      of.forward.members.data(), count_of(of.forward.members), of.forward.flag,
      &got.start, &got.end, &got.break_found, of.reference, host.callback());
  require(result == (widened ? 1 : 0), "result of widening");
  require(got == want, "widened selection");
  require(host.calls() == naive.calls(), "calls of widening");
}

void list_breaks(FuzzInput& input) {
  std::string text;
  for (int lines = input.between(0, 6); lines > 0; --lines) {
    text += input.text(12) +
            std::string(static_cast<std::size_t>(input.between(0, 120)), 'w');
    text += input.pick<std::string>({" ", "\n", "\r", "\xC3\xA9"});
  }
  model::Breaking of{text};
  of.start = input.offset(text.size());
  of.end = input.offset(text.size());
  of.unit = input.between(0, 100);
  const bool at_spaces = input.flag();
  const FuzzInput::Stop stop = input.stop();
  const test::YieldMaxScope scope(input.yield_max());
  YieldRecorder naive(stop.at, stop.answer);
  const auto want =
      at_spaces ? model::space_breaks(of, naive) : model::breaks(of, naive);
  YieldRecorder host(stop.at, stop.answer);
  const test::HeldBlock block(text);
  test::HeldBlock list;
  std::int32_t count = -3;
  const auto compute = at_spaces ? utf8_ComputeSpaceBreaks : utf8_ComputeBreaks;
  const std::int32_t result = compute(block.block, of.start, of.end, of.unit,
                                      &list.block, &count, 0, host.callback());
  require(result == (want ? 1 : 0), "result of listing");
  require(host.calls() == naive.calls(), "calls of listing");
  require(list.longs() == want.value_or(Longs{}), "breaks");
  require(count == (want ? count_of(*want) : -3), "count of longs");
}

}  // namespace
}  // namespace quill::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  using namespace quill::fuzz;
  FuzzInput input(data, size);
  switch (input.between(0, 3)) {
    case 0:
      rewrite(input);
      break;
    case 1:
      sort(input);
      break;
    case 2:
      widen(input);
      break;
    default:
      list_breaks(input);
  }
  return 0;
}
