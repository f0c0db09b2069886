#include "tests/support/range_parts.h"

#include <algorithm>

#include "tests/support/alphabet.h"
#include "tests/support/show.h"

namespace quill::test {

Longs set_of(std::string_view characters) {
  Longs set = spell(characters);
  std::sort(set.begin(), set.end());
  return set;
}

std::string show(const RangeParts& parts) {
  std::string shown;
  for (const RangePart& part : parts) {
    shown += part.include != 0 ? "[" : "[^";
    shown += show(part.set) + "]{" + show(part.minimum) + ',' +
             show(part.maximum) + '}';
  }
  return shown;
}

RangeParts draw_range_parts(Input& in) {
  RangeParts parts(static_cast<std::size_t>(
      in.one_in(16) ? in.pick({0, 0, 9}) : in.between(1, in.pick({2, 2, 5}))));
  for (RangePart& part : parts) {
    part.set = in.characters(in.pick({1, 2, 2, 9}));
    if (!in.one_in(10)) std::sort(part.set.begin(), part.set.end());
    part.minimum = in.pick({1, 1, 1, 0, 0, 2, 3, -1});
    part.maximum = in.pick({0, 0, 0, 1, 1, 2, 4, 30, -1});
    part.include = in.pick<unsigned char>({1, 1, 1, 1, 0, 0, 2, 255});
  }
  return parts;
}

PartPointers::PartPointers(RangeParts parts) : owned_(std::move(parts)) {
  parts_.reserve(owned_.size());
  for (const RangePart& part : owned_) {
    parts_.push_back({part.set.data(),
                      static_cast<std::int32_t>(part.set.size()), part.minimum,
                      part.maximum, part.include});
    pointers_.push_back(&parts_.back());
  }
}

}  // namespace quill::test
