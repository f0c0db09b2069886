// Range patterns and every search for them against their model, on texts of
// any order, with any host.
#include <algorithm>
#include <iostream>

#include "fuzz/support/fuzz_input.h"
#include "tests/models/pattern_calls.h"
#include "tests/support/guarded_text.h"

namespace {

using namespace quill;
using quill::fuzz::FuzzInput;
using test::HostPlan;
using test::Operation;
using test::OwnedPattern;
using test::PatternCall;

OwnedPattern pattern_from(FuzzInput& input) {
  OwnedPattern pattern;
  for (int parts = input.between(0, 4); parts >= 0; --parts) {
    test::Members set = input.characters(input.between(0, 8));
    if (input.between(0, 7) != 0) std::sort(set.begin(), set.end());
    const int minimum = input.between(-1, 3);
    const int maximum = input.pick<std::int32_t>({0, 0, 0, 1, 1, 2, 5, 40, -1});
    const unsigned char include = input.flag() ? 1 : input.byte();
    pattern.add(std::move(set), minimum, maximum, include);
  }
  return pattern;
}

// A text in which some pieces come many times.
std::string text_from(FuzzInput& input) {
  std::string text;
  for (int runs = input.between(0, 12); runs > 0; --runs) {
    const std::string piece = input.text(6);
    const int times = input.flag() ? 1 : input.between(1, 60);
    for (int i = 0; i < times; ++i) text += piece;
  }
  return text;
}

bool compares_alike(const char* text, std::int32_t position, std::int32_t end,
                    const model::Pattern& pattern) {
  std::int32_t next[2] = {-77, -77};
  const bool whole =
      utf8_CompareRangePattern(text, position, end, pattern.parts,
                               pattern.count, &next[0]) == 1;
  if (whole != model::compare_pattern(text, position, end, pattern, &next[1]) ||
      next[0] != next[1]) {
    return false;
  }
  const QuillRangePart& part = *pattern.parts[0];
  const bool first =
      utf8_CompareRangePart(&part, text, position, end, &next[0]) == 1;
  return first == model::compare_part(part, text, position, end, &next[1]) &&
         next[0] == next[1];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  FuzzInput input(data, size);
  const OwnedPattern pattern = pattern_from(input);
  const OwnedPattern key = pattern_from(input);
  HostPlan plan{.yield_max = input.yield_max()};
  const FuzzInput::Stop stop = input.stop();
  plan.stop_at = stop.at;
  plan.answer = stop.answer;
  if (input.flag()) {
    plan.change_at = input.between(0, 7);
    plan.new_maximum = input.yield_max();
  }
  const Operation operation = test::kOperations[input.between(0, 4)];
  const int from_choice = input.any_long();
  const int to_choice = input.any_long();
  const std::string subject = text_from(input);
  const test::GuardedText text(subject);
  // Anything below the text is refused; what lies beyond it can't be read.
  const auto length = static_cast<std::int32_t>(subject.size());
  const std::int32_t from = from_choice < 0 ? 0 : from_choice % (length + 1);
  const std::int32_t to = to_choice < 0 ? length : to_choice % (length + 2) - 1;

  const PatternCall call{operation, text.data(),    from,
                         to,        pattern.view(), key.view()};
  if (run_library(call, plan) == run_model(call, plan) &&
      compares_alike(text.data(), from, std::max(to, 0), call.pattern)) {
    return 0;
  }
  std::cerr << describe(call, plan) << "\n"
            << pattern.describe() << "\nkey " << key.describe() << "\ntext";
  for (const char byte : subject) std::cerr << ' ' << std::hex << (byte & 0xFF);
  std::cerr << std::endl;
  __builtin_trap();
}
