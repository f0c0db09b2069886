#include "tests/models/pattern_calls.h"

#include <algorithm>
#include <sstream>

#include "tests/support/blocks.h"
#include "tests/support/random_text.h"

namespace quill::test {
namespace {

constexpr std::int32_t kReference = 4711;
constexpr std::int32_t kUntouched = -77;

}  // namespace

void OwnedPattern::add(Members set, std::int32_t minimum, std::int32_t maximum,
                       unsigned char include) {
  sets_.push_back(std::move(set));
  parts_.push_back({sets_.back().data(),
                    static_cast<std::int32_t>(sets_.back().size()), minimum,
                    maximum, include});
  pointers_.push_back(&parts_.back());
}

void OwnedPattern::add(std::string_view members, std::int32_t minimum,
                       std::int32_t maximum, unsigned char include) {
  Members set;
  for (std::size_t i = 0; i < members.size();) {
    std::size_t next = i + 1;
    while (next < members.size() && (members[next] & 0xC0) == 0x80) ++next;
    set.push_back(packed(members.substr(i, next - i)));
    i = next;
  }
  std::sort(set.begin(), set.end());
  add(std::move(set), minimum, maximum, include);
}

model::Pattern OwnedPattern::view(int stated) const {
  return {pointers_.data(), stated == kNever
                                ? static_cast<std::int32_t>(pointers_.size())
                                : stated};
}

std::string OwnedPattern::describe() const {
  std::ostringstream out;
  for (const QuillRangePart& part : parts_) {
    out << (part.include != 0 ? "[" : "[^") << std::hex;
    for (std::int32_t i = 0; i < part.character_count; ++i) {
      out << part.characters[i] << ' ';
    }
    out << std::dec << "]{" << part.minimum << ',' << part.maximum << "} ";
  }
  return out.str();
}

Outcome run_library(const PatternCall& call, const HostPlan& plan) {
  const YieldMaxScope scope(plan.yield_max);
  YieldRecorder host(plan.stop_at, plan.answer);
  host.change_maximum(plan.change_at, plan.new_maximum);
  std::int32_t start = kUntouched;
  std::int32_t end = kUntouched;
  std::int32_t next = kUntouched;
  HeldBlock list;
  Outcome out;
  const auto& [parts, count] = call.pattern;
  switch (call.operation) {
    case Operation::kFind:
      out.result =
          utf8_FindPattern(call.text, call.from, call.to, parts, count, &start,
                           &end, &next, kReference, host.callback());
      out.written = {start, end, next};
      break;
    case Operation::kFindPrevious:
      out.result = utf8_FindPatternPrev(call.text, call.from, call.to, parts,
                                        count, &start, &end, &next, kReference,
                                        host.callback());
      out.written = {start, end, next};
      break;
    case Operation::kCount:
      out.result =
          utf8_CountPatternAll(call.text, call.from, call.to, parts, count,
                               &start, &end, kReference, host.callback());
      out.written = {start, end};
      break;
    case Operation::kFindAll:
      out.result = utf8_FindPatternAll(call.text, call.from, call.to, parts,
                                       count, &list.block, &start, &end,
                                       kReference, host.callback());
      out.written = {start, end};
      break;
    case Operation::kFindKeys:
      out.result =
          utf8_FindKeyPatternAll(call.text, call.from, call.to, parts, count,
                                 call.key.parts, call.key.count, &list.block,
                                 &start, &end, kReference, host.callback());
      out.written = {start, end};
      break;
  }
  out.has_list = list.block != nullptr;
  out.list = list.longs();
  out.calls = host.calls();
  return out;
}

Outcome run_model(const PatternCall& call, const HostPlan& plan) {
  const YieldMaxScope scope(plan.yield_max);
  YieldRecorder host(plan.stop_at, plan.answer);
  host.change_maximum(plan.change_at, plan.new_maximum);
  Outcome out;
  if (call.operation == Operation::kFind ||
      call.operation == Operation::kFindPrevious) {
    model::Found found{kUntouched, kUntouched, kUntouched};
    const auto search =
        call.operation == Operation::kFind ? model::find : model::find_previous;
    out.result = search(call.text, call.from, call.to, call.pattern, found,
                        kReference, host);
    out.written = {found.start, found.end, found.next};
  } else {
    const bool keys = call.operation == Operation::kFindKeys;
    const model::All all =
        model::find_all(call.text, call.from, call.to, call.pattern,
                        keys ? &call.key : nullptr, kReference, host);
    out.result = 1;
    if (call.operation == Operation::kCount) {
      out.written = {all.number, all.stop};
    } else {
      out.list = all.longs;
      out.has_list = !out.list.empty();
      out.written = {static_cast<std::int32_t>(out.list.size()), all.stop};
    }
  }
  out.calls = host.calls();
  return out;
}

std::string describe(const PatternCall& call, const HostPlan& plan) {
  std::ostringstream out;
  out << "operation " << static_cast<int>(call.operation) << ", [" << call.from
      << ", " << call.to << "), YieldMax " << plan.yield_max << ", stop at "
      << plan.stop_at << " with " << int{plan.answer} << ", YieldMax "
      << plan.new_maximum << " from call " << plan.change_at;
  return out.str();
}

}  // namespace quill::test
