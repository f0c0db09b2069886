// What delimits words: every assigned character that is no letter, mark,
// number or connector such as the underscore.
//
// Unassigned and private-use code points, nearly a million, are not in the
// set: they count as parts of words.
#pragma once

#include <unicode/uniset.h>

#include <cstdint>
#include <vector>

namespace quill::tool {

const icu::UnicodeSet& break_set();

// The break characters in the order in which a search tries them: ASCII, and
// so nearly every break of a real text, comes first.
std::vector<std::int32_t> break_characters();

}  // namespace quill::tool
