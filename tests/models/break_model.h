// Breaks, step by step.
#pragma once

#include <optional>
#include <string_view>

#include "tests/models/reader_model.h"
#include "tests/support/yield_recorder.h"

namespace quill::model {

struct CharacterClass {
  Longs members;
  unsigned char flag = 0;
};

struct Widening {
  std::string_view text;
  std::int32_t lower_bound = 0;
  std::int32_t end = 0;
  CharacterClass backward = {};
  CharacterClass forward = {};
  std::int32_t reference = 0;
};

struct WidenedSelection {
  std::int32_t start;
  std::int32_t end;
  unsigned char break_found;
  bool operator==(const WidenedSelection&) const = default;
};

bool find_breaks(const Widening& of, WidenedSelection& selection,
                 test::YieldRecorder& host);

struct Breaking {
  std::string_view text;
  std::int32_t start = 0;
  std::int32_t end = 0;
  std::int32_t unit = 0;  // characters or bytes
  std::int32_t reference = 0;
};

// Nothing where the operation fails.
std::optional<Longs> breaks(const Breaking& of, test::YieldRecorder& host);
std::optional<Longs> space_breaks(const Breaking& of,
                                  test::YieldRecorder& host);

}  // namespace quill::model
