// The kernel that finds where the bits of a set change, for machines that have
// AVX-512; list_edges of bit_runs.h defines what it answers.
#pragma once

#include "blocks/base.h"
#include "blocks/instructions.h"

namespace quill {

// It takes as many words at once. `before` is the bit before the first one, and
// `base` is added to the edges' numbers. As many longs as there are bits may be
// written to, wherever the last edge goes.
constexpr Offset kWordsAtOnce = 16;

#if defined(__x86_64__)
std::int32_t* list_edges_avx512(const Byte* bits, std::uint64_t before,
                                std::int32_t base, std::int32_t* out);
inline bool lists_words_at_once() {
  return instructions() == Instructions::kAvx512;
}
#else
inline std::int32_t* list_edges_avx512(const Byte*, std::uint64_t, std::int32_t,
                                       std::int32_t* out) {
  return out;
}
inline bool lists_words_at_once() { return false; }
#endif

}  // namespace quill
