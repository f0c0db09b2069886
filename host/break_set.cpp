#include "host/break_set.h"

#include <algorithm>

#include "host/packed.h"

namespace quill::tool {

const icu::UnicodeSet& break_set() {
  static UErrorCode status = U_ZERO_ERROR;
  static const icu::UnicodeSet set(
      u"[^[:L:][:M:][:N:][:Pc:][:Cn:][:Co:][:Cs:]]", status);
  return set;
}

std::vector<std::int32_t> break_characters() {
  std::vector<std::int32_t> characters = packed_members(break_set());
  // Sorted, the negative four-byte characters lead; the rarest go last.
  const auto ascii = std::lower_bound(characters.begin(), characters.end(), 0);
  std::rotate(characters.begin(), ascii, characters.end());
  return characters;
}

}  // namespace quill::tool
