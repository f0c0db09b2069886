// Readers and counters of characters, and single lookups in masks and sets, one
// byte and one comparison at a time.
#pragma once

#include <cstdint>

#include "quillcore.h"

namespace quill::naive {

decltype(::utf8_GetNextCharAsLong) utf8_GetNextCharAsLong;
decltype(::utf8_GetNextCharValue) utf8_GetNextCharValue;
decltype(::utf8_GetCharAsLong) utf8_GetCharAsLong;
decltype(::utf8_GetPrevCharAsLong) utf8_GetPrevCharAsLong;
decltype(::utf8_CountCharacters) utf8_CountCharacters;
decltype(::utf8_CountCharactersTask) utf8_CountCharactersTask;
decltype(::utf8_CountToOffset) utf8_CountToOffset;
decltype(::utf8_MaskChar) utf8_MaskChar;
decltype(::utf8_MatchChar) utf8_MatchChar;
decltype(::utf8_InList) utf8_InList;

// The readers as the other models use them.
struct Character {
  bool was_read = false;
  int32_t start = 0;
  int32_t packed = 0;
  int32_t next = 0;
};
Character next_character(const char* text, int32_t position, int32_t end);
Character containing_character(const char* text, int32_t position, int32_t end);
Character previous_character(const char* text, int32_t position, int32_t end);

bool is_continuation_at(const char* text, std::int64_t position);

}  // namespace quill::naive
