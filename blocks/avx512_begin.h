// Lets the functions from here to the end of the including source file use
// AVX-512 and what every machine that has it has: no templates and inline
// functions shared with other files may come behind it. The file ends with
// avx512_end.h, and nothing in it runs on other machines.
#pragma once

#if defined(__GNUC__) && !defined(__clang__)
// g++ 12 takes the operands that some of its intrinsics leave undefined on
// purpose for mistakes.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <immintrin.h>

// Each brings along what it builds on. For g++ it lasts up to the very end,
// where templates are instantiated.
#if defined(__clang__)
#pragma clang attribute push(                                              \
    __attribute__((                                                        \
        target("avx512vl,avx512vbmi,avx512vbmi2,bmi,bmi2,lzcnt,popcnt"))), \
    apply_to = function)
#else
#pragma GCC target("avx512vl,avx512vbmi,avx512vbmi2,bmi,bmi2,lzcnt,popcnt")
#endif
