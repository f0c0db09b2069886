// All matches of a range pattern in a range: as a count, a list, or a list of
// the keys inside them.
#pragma once

#include "blocks/base.h"
#include "pattern/pattern_search.h"

namespace quill {

struct PatternList {
  QuillBlock block;   // the caller's now; null when there is no match
  Offset long_count;  // two for each match
  Offset stop;        // where the search ended
  bool made;          // false when memory was short from the start
};

PatternList find_all_matches(const char* text, RangePattern pattern,
                             Offset from, Offset to, Host host);

}  // namespace quill
