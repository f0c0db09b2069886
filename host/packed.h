// Characters and sets of characters in the forms that the library takes.
//
// A packed character holds a character's UTF-8 bytes in one long, the first
// byte least significant. Sets are sorted as signed numbers.
#pragma once

#include <unicode/uniset.h>

#include <cstdint>
#include <string_view>
#include <vector>

namespace quill::tool {

struct FoldMask;

std::int32_t pack(UChar32 code_point);

// The characters of `text`, mapped through `mask`.
std::vector<std::int32_t> packed_characters(std::string_view text,
                                            const FoldMask& mask);

// The members of `set`, sorted. Multi-character members are left out.
std::vector<std::int32_t> packed_members(const icu::UnicodeSet& set);

}  // namespace quill::tool
