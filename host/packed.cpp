#include "host/packed.h"

#include <unicode/utf8.h>

#include <algorithm>

#include "host/fold_mask.h"
#include "quillcore.h"

namespace quill::tool {

std::int32_t pack(UChar32 code_point) {
  std::uint8_t bytes[4] = {};
  std::int32_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, code_point);
  std::uint32_t packed = 0;
  for (int i = 3; i >= 0; --i) packed = packed << 8 | bytes[i];
  return static_cast<std::int32_t>(packed);
}

std::vector<std::int32_t> packed_characters(std::string_view text,
                                            const FoldMask& mask) {
  std::vector<std::int32_t> characters(text.size());
  std::int32_t count = 0;  // left alone when there is nothing to convert
  utf8_StringToLongArray(text.data(), 0, static_cast<std::int32_t>(text.size()),
                         mask.keys.data(), mask.values.data(), mask.count(),
                         characters.data(), &count);
  characters.resize(static_cast<std::size_t>(count));
  return characters;
}

std::vector<std::int32_t> packed_members(const icu::UnicodeSet& set) {
  std::vector<std::int32_t> members;
  members.reserve(static_cast<std::size_t>(set.size()));
  for (std::int32_t range = 0; range < set.getRangeCount(); ++range) {
    for (UChar32 c = set.getRangeStart(range); c <= set.getRangeEnd(range); ++c)
      members.push_back(pack(c));
  }
  std::sort(members.begin(), members.end());
  return members;
}

}  // namespace quill::tool
