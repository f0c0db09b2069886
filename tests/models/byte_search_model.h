// FindStr, FindByte, FindStrAll and BytePatternSwap step by step, one offset
// at a time.
#pragma once

#include <string>

#include "tests/support/blocks.h"
#include "tests/support/yield_recorder.h"

namespace quill::test {

std::int32_t model_find_str(const char* text, std::int32_t start,
                            std::int32_t end, const char* pattern,
                            std::int32_t length, std::int32_t* found_start,
                            std::int32_t* found_end, std::int32_t reference,
                            YieldRecorder& host);

std::int32_t model_find_byte(const char* text, std::int32_t start,
                             std::int32_t end, char byte,
                             std::int32_t reference, YieldRecorder& host);

std::int32_t model_find_str_all(const char* text, std::int32_t start,
                                std::int32_t end, const char* pattern,
                                std::int32_t length, Longs& list,
                                std::int32_t* long_count, std::int32_t* stop,
                                std::int32_t reference, YieldRecorder& host);

std::int32_t model_byte_pattern_swap(char* buffer, std::int32_t start,
                                     std::int32_t end, const char* pattern,
                                     const char* replacement,
                                     std::int32_t length,
                                     std::int32_t reference,
                                     YieldRecorder& host);

}  // namespace quill::test
