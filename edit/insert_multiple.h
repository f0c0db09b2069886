// Putting each selection's own replacement in its place.
#pragma once

#include <span>

#include "blocks/base.h"
#include "quillcore.h"

namespace quill {

// What an entry of a replace table does to its selection.
enum ReplaceKind : std::int32_t {
  kKeep = 0,
  kShorter = 1,
  kSameLength = 2,
  kLonger = 3,
};

// Edits the text and moves the entries' offsets. False, and nothing is
// changed, when the table can't be trusted or memory is short.
bool insert_multiple(QuillBlock text,
                     std::span<QuillReplaceEntry* const> entries);

}  // namespace quill
