// The operations on range patterns called both ways, on the library and on the
// model, with everything that a host could tell them apart by in one value.
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "quillcore.h"
#include "tests/models/pattern_model.h"
#include "tests/support/yield_recorder.h"

namespace quill::test {

using Members = std::vector<std::int32_t>;  // of a set, packed

// A pattern together with the parts and sets that it points to.
class OwnedPattern {
 public:
  OwnedPattern() = default;
  OwnedPattern(OwnedPattern&&) = default;  // the parts stay where they are
  void add(Members set, std::int32_t minimum, std::int32_t maximum,
           unsigned char include = 1);

  // With the characters of a text, in order, as the set.
  void add(std::string_view members, std::int32_t minimum, std::int32_t maximum,
           unsigned char include = 1);

  // `stated` is the part count that calls pass, when it is not the true one.
  model::Pattern view(int stated = kNever) const;
  std::string describe() const;

 private:
  std::deque<Members> sets_;
  std::deque<QuillRangePart> parts_;
  std::vector<const QuillRangePart*> pointers_;
};

enum class Operation { kFind, kFindPrevious, kCount, kFindAll, kFindKeys };
inline constexpr Operation kOperations[] = {
    Operation::kFind, Operation::kFindPrevious, Operation::kCount,
    Operation::kFindAll, Operation::kFindKeys};

struct PatternCall {
  Operation operation;
  const char* text;
  std::int32_t from;
  std::int32_t to;
  model::Pattern pattern;
  model::Pattern key;
};

// What the host does while the call runs.
struct HostPlan {
  std::int32_t yield_max = 10000;
  int stop_at = kNever;
  unsigned char answer = 0;
  int change_at = kNever;
  std::int32_t new_maximum = 0;
};

struct Outcome {
  std::int32_t result = 0;
  std::vector<std::int32_t> written;  // the out-parameters, in order
  bool has_list = false;
  std::vector<std::int32_t> list;
  std::vector<YieldRecorder::Call> calls;

  bool operator==(const Outcome&) const = default;
};

Outcome run_library(const PatternCall& call, const HostPlan& plan);
Outcome run_model(const PatternCall& call, const HostPlan& plan);

std::string describe(const PatternCall& call, const HostPlan& plan);

}  // namespace quill::test
