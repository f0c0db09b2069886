// The forward search for all matches, for the edits that replace them.
#pragma once

#include "quillcore.h"
#include "search/string_searcher.h"

namespace quill {

// What a search for all matches hands over. The list is the caller's; null
// when there is no match, and when it could not be made.
struct StringList {
  QuillBlock list;
  std::int32_t long_count;
  std::int32_t stop;  // where searching stopped
  bool made;
};

StringList find_all_strings(const StringQuery& query, std::int32_t reference,
                            QuillYield yield);

}  // namespace quill
