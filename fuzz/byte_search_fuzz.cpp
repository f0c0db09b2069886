// FindStr, FindByte, FindStrAll, BytePatternSwap and the counters against
// their models, with each set of vector kernels.
#include <cstdio>

#include "blocks/byte_kernels.h"
#include "fuzz/support/fuzz_input.h"
#include "tests/models/byte_search_model.h"
#include "tests/models/characters_model.h"
#include "tests/support/guarded_text.h"

namespace {

using namespace quill;
using namespace quill::test;

struct Call {
  int operation;
  std::string text;
  std::string pattern;
  std::int32_t start;
  std::int32_t end;
  std::int32_t request;
  std::int32_t yield_max;
  fuzz::FuzzInput::Stop stop;
};

struct Seen {
  std::int32_t result = -9;
  std::int32_t outs[2] = {-8, -8};
  Longs list;
  std::string buffer;
  std::vector<YieldRecorder::Call> calls;

  bool operator==(const Seen&) const = default;
};

// A text that repeats itself now and then, and a needle out of it.
Call draw(fuzz::FuzzInput& in) {
  Call call{};
  call.operation = in.between(0, 6);
  const std::string piece = in.text(12);
  for (int i = in.between(1, 40); i > 0; --i) call.text += piece;
  call.text += in.text(40);
  const auto size = static_cast<int>(call.text.size());
  call.pattern = in.flag() ? in.text(6)
                           : call.text.substr(
                                 static_cast<std::size_t>(in.between(0, size)),
                                 static_cast<std::size_t>(in.between(1, 60)));
  call.start = in.flag() ? 0 : in.offset(call.text.size());
  // The host vouches for what lies before the end.
  call.end = in.flag() ? size : std::min(in.offset(call.text.size()), size);
  call.request = in.flag() ? in.between(-1, 3 * size) : in.between(0, 9);
  call.yield_max = in.yield_max();
  call.stop = in.stop();
  return call;
}

Seen run_library(const Call& c, YieldRecorder& host) {
  const GuardedText held(c.text);
  const GuardedText pattern(c.pattern);
  const auto length = static_cast<std::int32_t>(c.pattern.size());
  const QuillYield yield = host.callback();
  char* const text = held.data();
  Seen seen;
  std::int32_t* const outs = seen.outs;
  switch (c.operation) {
    case 0:
      seen.result = FindStr(text, c.start, c.end, pattern.data(), length, 1, 2,
                            3, 4, &outs[0], &outs[1], 5, yield);
      break;
    case 1: {
      HeldBlock list;
      seen.result =
          FindStrAll(text, c.start, c.end, pattern.data(), length, 1, 2, 3, 4,
                     &list.block, &outs[0], &outs[1], 5, yield);
      seen.list = list.longs();
      break;
    }
    case 2:
      if (c.start < 0 || length == 0) break;  // its callers have seen to that
      seen.result = FindByte(text, c.start, c.end, c.pattern[0], 5, yield);
      break;
    case 3:
      seen.result = BytePatternSwap(
          text, c.start, c.end, pattern.data(),
          std::string(c.pattern.rbegin(), c.pattern.rend()).data(), length, 5,
          yield);
      break;
    case 4:
      seen.result = utf8_CountCharacters(text, c.start, c.end, &outs[0]);
      break;
    case 5:
      seen.result =
          utf8_CountCharactersTask(text, c.start, c.end, &outs[0], 5, yield);
      break;
    default:
      outs[0] = c.request;
      seen.result =
          utf8_CountToOffset(text, c.start, c.end, &outs[0], &outs[1]);
  }
  seen.buffer = held.view();
  return seen;
}

Seen run_model(const Call& c, YieldRecorder& host) {
  const auto length = static_cast<std::int32_t>(c.pattern.size());
  Seen seen;
  seen.buffer = c.text;
  char* const text = seen.buffer.data();
  std::int32_t* const outs = seen.outs;
  switch (c.operation) {
    case 0:
      seen.result = model_find_str(text, c.start, c.end, c.pattern.data(),
                                   length, &outs[0], &outs[1], 5, host);
      break;
    case 1:
      seen.result =
          model_find_str_all(text, c.start, c.end, c.pattern.data(), length,
                             seen.list, &outs[0], &outs[1], 5, host);
      break;
    case 2:
      if (c.start < 0 || length == 0) break;
      seen.result =
          model_find_byte(text, c.start, c.end, c.pattern[0], 5, host);
      break;
    case 3:
      seen.result = model_byte_pattern_swap(
          text, c.start, c.end, c.pattern.data(),
          std::string(c.pattern.rbegin(), c.pattern.rend()).data(), length, 5,
          host);
      break;
    case 4:
      seen.result = model_count(text, c.start, c.end, &outs[0]);
      break;
    case 5:
      seen.result = model_count_task(text, c.start, c.end, &outs[0], 5, host);
      break;
    default:
      outs[0] = c.request;
      seen.result =
          model_count_to_offset(text, c.start, c.end, &outs[0], &outs[1]);
  }
  return seen;
}

template <class Run>
Seen observe(const Call& call, Run run) {
  const YieldMaxScope scope(call.yield_max);
  YieldRecorder host(call.stop.at, call.stop.answer);
  Seen seen = run(call, host);
  seen.calls = host.calls();
  return seen;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  fuzz::FuzzInput input(data, size);
  const Call call = draw(input);
  const Seen wanted = observe(call, run_model);
  for (const ByteKernels* kernels : available_kernels()) {
    force_kernels(kernels);
    if (observe(call, run_library) == wanted) continue;
    std::fprintf(stderr,
                 "%s, operation %d: text of %zu \"%s\", pattern \"%s\", "
                 "[%d, %d), request %d, YieldMax %d, stop at %d with %d\n",
                 kernels->name, call.operation, call.text.size(),
                 call.text.c_str(), call.pattern.c_str(), call.start, call.end,
                 call.request, call.yield_max, call.stop.at,
                 int{call.stop.answer});
    __builtin_trap();
  }
  return 0;
}
