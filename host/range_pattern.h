// Range patterns and the notation in which the user writes them: a sequence of
// characters and sets, each perhaps with a number of repetitions. See
// kPatternHelp.
#pragma once

#include <unicode/uniset.h>

#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

#include "quillcore.h"

namespace quill::tool {

// How often a part of a pattern matches; a maximum of 0 means no limit.
struct Repetition {
  std::int32_t minimum = 1;
  std::int32_t maximum = 1;
};

// A pattern in the library's form, with everything that it points to.
class RangePattern {
 public:
  RangePattern() = default;
  RangePattern(RangePattern&&) = default;
  RangePattern& operator=(RangePattern&&) = default;

  void append(const icu::UnicodeSet& set, Repetition repetition);

  const QuillRangePart* const* parts() const { return pointers_.data(); }
  std::int32_t part_count() const {
    return static_cast<std::int32_t>(pointers_.size());
  }

 private:
  std::deque<std::vector<std::int32_t>> sets_;
  std::deque<QuillRangePart> parts_;
  std::vector<const QuillRangePart*> pointers_;  // into parts_
};

// Reads the notation; with `ignore_case` every set takes in the other cases
// of its members. Throws UsageError with the place of the mistake.
RangePattern parse_pattern(std::string_view notation, bool ignore_case);

}  // namespace quill::tool
