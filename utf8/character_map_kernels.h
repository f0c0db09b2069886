// The kernels behind map_characters, one for each level of instructions.
#pragma once

#include "utf8/character_map.h"

#if defined(__x86_64__)

namespace quill {

MappedRun map_characters_avx2(const CharacterMap& map, const Byte* from,
                              Offset size, char* to, Offset most);
MappedRun map_characters_avx512(const CharacterMap& map, const Byte* from,
                                Offset size, char* to, Offset most);

}  // namespace quill

#endif  // __x86_64__
