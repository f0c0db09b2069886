// Range patterns as their owner holds them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "quillcore.h"
#include "tests/support/input.h"

namespace quill::test {

struct RangePart {
  Longs set = {};
  std::int32_t minimum = 1;
  std::int32_t maximum = 0;
  unsigned char include = 1;
};
using RangeParts = std::vector<RangePart>;

// The characters of a well-formed text as a set in order.
Longs set_of(std::string_view characters);

std::string show(const RangeParts& parts);

// Mostly of one or two parts, at times of none; few of the sets out of order.
RangeParts draw_range_parts(Input& in);

// As calls take them: addresses of parts, which have the addresses of the sets.
class PartPointers {
 public:
  explicit PartPointers(RangeParts parts);
  PartPointers(const PartPointers&) = delete;
  PartPointers& operator=(const PartPointers&) = delete;

  const QuillRangePart* const* data() const { return pointers_.data(); }
  std::int32_t count() const {
    return static_cast<std::int32_t>(pointers_.size());
  }

 private:
  RangeParts owned_;
  std::vector<QuillRangePart> parts_;
  std::vector<const QuillRangePart*> pointers_;
};

}  // namespace quill::test
