// The editing operations, step by step on a string and a vector: what the
// library must leave in the text and in the list.
#pragma once

#include <string>
#include <vector>

#include "quillcore.h"
#include "tests/support/blocks.h"

namespace quill::test {

using Flags = std::vector<unsigned char>;

// Each returns what the export returns. `flags` may be null. A list that is
// not canonical is refused with nothing changed.
bool model_delete(std::string& text, const Longs& list);
bool model_wrap(std::string& text, const Longs& list,
                const std::string& leading, const std::string& trailing);
bool model_insert(std::string& text, Longs& list, const std::string& string,
                  const Flags* flags);
bool model_overlay(std::string& text, const Longs& list,
                   const Longs& characters, const Flags& flags);
bool model_insert_multiple(std::string& text,
                           std::vector<QuillReplaceEntry>& entries);

// The number of characters of which InsertStr consults the flags.
int model_count_characters(const std::string& string);

}  // namespace quill::test
