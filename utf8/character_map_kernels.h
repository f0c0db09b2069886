// The kernels behind map_characters, one for each level of instructions.
#pragma once

#include "utf8/character_map.h"

#if defined(__x86_64__)

namespace quill {

MappedRun map_characters_avx2(const CharacterMap& map, const Byte* from,
                              Offset size, char* to, Offset most);
MappedRun map_characters_avx512(const CharacterMap& map, const Byte* from,
                                Offset size, char* to, Offset most);

Offset map_selections_avx512(const CharacterMap& map, const Byte* text,
                             Offset position, Offset limit,
                             std::span<const Selection> selections, char* to,
                             Offset& most);

// Fills the table of ASCII from a few neighbours, such as the letters from A to
// Z, that have single bytes for values. False, with nothing written, when they
// are none.
bool map_neighbours_avx512(const std::int32_t* keys, const std::int32_t* values,
                           std::int32_t count, CharacterMap& map);

}  // namespace quill

#endif  // __x86_64__
