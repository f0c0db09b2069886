// The readers and counters of characters step by step.
#pragma once

#include "tests/support/yield_recorder.h"

namespace quill::test {

// What a reader leaves in its out-parameters. The caller fills it beforehand.
struct ReadOuts {
  std::int32_t start = -77;
  std::int32_t length = -77;
  std::int32_t value = -77;
  std::int32_t next = -77;

  bool operator==(const ReadOuts&) const = default;
};

std::int32_t model_get_next_as_long(const char* text, std::int32_t position,
                                    std::int32_t end, ReadOuts& outs);
std::int32_t model_get_next_value(const char* text, std::int32_t position,
                                  std::int32_t end, ReadOuts& outs);
std::int32_t model_get_containing(const char* text, std::int32_t position,
                                  std::int32_t end, ReadOuts& outs);
std::int32_t model_get_previous(const char* text, std::int32_t position,
                                std::int32_t end, ReadOuts& outs);

std::int32_t model_count(const char* text, std::int32_t start, std::int32_t end,
                         std::int32_t* count);
std::int32_t model_count_task(const char* text, std::int32_t start,
                              std::int32_t end, std::int32_t* count,
                              std::int32_t reference, YieldRecorder& host);
std::int32_t model_count_to_offset(const char* text, std::int32_t start,
                                   std::int32_t end, std::int32_t* count,
                                   std::int32_t* offset);

}  // namespace quill::test
