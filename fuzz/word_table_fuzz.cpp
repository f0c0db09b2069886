// Word-table replacement, with an index and without, against the model.
#include <cstdio>

#include "fuzz/support/fuzz_input.h"
#include "quillcore.h"
#include "tests/models/pattern_calls.h"
#include "tests/models/word_table_model.h"
#include "tests/support/blocks.h"

namespace quill::fuzz {
namespace {

using test::YieldRecorder;

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "differs: %s\n", what);
  __builtin_trap();
}

void replace_words(FuzzInput& input) {
  model::WordTable table;
  const FuzzInput::MaskTable mask = input.mask(8);
  table.mask_keys = mask.keys;
  table.mask_values = mask.values;
  for (int left = input.between(0, 40); left > 0; --left) {
    const auto length = static_cast<std::size_t>(input.between(0, 9));
    table.words.push_back({input.characters(4), std::string(length, 'x')});
  }
  std::vector<QuillWordEntry> entries;
  for (const model::Word& word : table.words) {
    entries.push_back({word.characters.data(),
                       static_cast<std::int32_t>(word.characters.size()),
                       word.replacement.data(),
                       static_cast<std::int32_t>(word.replacement.size())});
  }
  std::vector<const QuillWordEntry*> words;
  for (const QuillWordEntry& entry : entries) words.push_back(&entry);
  test::OwnedPattern pattern;
  std::vector<std::int32_t> set = input.characters(8);
  std::sort(set.begin(), set.end());
  pattern.add(set, input.between(0, 2), input.between(0, 5), input.byte() & 1);
  const std::string text = input.text(80);
  const std::int32_t from = input.offset(text.size());
  const std::int32_t end = input.offset(text.size());
  const FuzzInput::Stop stop = input.stop();
  const test::YieldMaxScope scope(input.yield_max());

  YieldRecorder naive(stop.at, stop.answer);
  const auto want =
      model::replace_words(table, text, from, end, pattern.view(), 0, naive);
  YieldRecorder host(stop.at, stop.answer);
  test::HeldBlock block(text);
  std::int32_t to = end;
  std::int32_t new_end = -77;
  const model::Pattern parts = pattern.view();
  const std::int32_t result = utf8_WordTableReplace(
      &block.block, from, &to, parts.parts, parts.count, words.data(),
      static_cast<std::int32_t>(words.size()), mask.key_data(),
      mask.value_data(), mask.count(), &new_end, 0, host.callback());
  const std::string edited = want.value_or(text);
  const auto moved = static_cast<std::int32_t>(edited.size() - text.size());
  require(result == (want ? 1 : 0), "result");
  require(host.calls() == naive.calls(), "calls");
  require(block.bytes() == edited, "text");
  require(to == end + moved && new_end == to, "moved end");
}

}  // namespace
}  // namespace quill::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  quill::fuzz::FuzzInput input(data, size);
  quill::fuzz::replace_words(input);
  return 0;
}
