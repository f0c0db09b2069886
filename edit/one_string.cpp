#include "edit/one_string.h"

#include "edit/splice.h"

namespace quill {

bool splice_string(BlockLock& text, const OneString<false>& edits,
                   Offset growth, const SizeLimits& limits) {
  return splice(text, edits, growth, limits);
}

}  // namespace quill
