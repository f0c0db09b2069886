// Replacing words through a table: each selection compared with each word.
#pragma once

#include <optional>
#include <string>

#include "tests/models/pattern_model.h"
#include "tests/models/reader_model.h"
#include "tests/support/yield_recorder.h"

namespace quill::model {

struct Word {
  Longs characters;
  std::string replacement;
};

struct WordTable {
  std::vector<Word> words;
  Longs mask_keys;
  Longs mask_values;
};

// The first word that the selection begins with.
const Word* find_word(const WordTable& table, std::string_view text,
                      std::int32_t start, std::int32_t end);

// The edited text, or nothing where the operation fails.
std::optional<std::string> replace_words(const WordTable& table,
                                         const std::string& text,
                                         std::int32_t from, std::int32_t to,
                                         const Pattern& pattern,
                                         std::int32_t reference,
                                         test::YieldRecorder& host);

}  // namespace quill::model
