// The end of what avx512_begin.h begins.
#pragma once

#if defined(__clang__)
#pragma clang attribute pop
#endif
