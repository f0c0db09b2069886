#include <algorithm>

#include "tests/checks/calls.h"
#include "tests/support/alphabet.h"
#include "tests/support/guarded_text.h"

namespace quill::test {

namespace {

void fill(const WordTableCall& call, Side side,
          std::vector<QuillWordEntry*>& table, Outcome& o) {
  const GuardedText guarded(call.text);
  Mask own = call.mask;
  std::vector<QuillReplaceEntry> entries;
  for (std::size_t i = 0; i < call.selections.size(); i += 2) {
    entries.push_back(
        {call.selections[i], call.selections[i + 1], "?", 99, 99});
  }
  std::vector<QuillReplaceEntry*> pointers = pointers_to(entries);
  o.result = QUILL_PICK(side, WordTable_FillReplaceTable)(
      pointers.data(), length_of(pointers), table.data(), length_of(table),
      guarded.data(), own.keys.data(), own.values.data(), own.count());
  const auto& words = call.words;
  for (const QuillReplaceEntry& entry : entries) {
    const auto word = std::find_if(words.begin(), words.end(), [&](auto& each) {
      return each.replacement.data() == entry.replacement;
    });
    o.outs.insert(o.outs.end(),
                  {entry.start, entry.end, entry.replacement_length, entry.kind,
                   entry.replacement == nullptr ? 1 : 0,
                   static_cast<int>(word - words.begin())});
  }
}

}  // namespace

Outcome WordTableCall::run(Side side, QuillYield yield) const {
  std::vector<QuillWordEntry> entries;
  for (const auto& [characters, with] : words) {
    const bool is_unusable = std::ssize(entries) == unusable;
    entries.push_back({characters.data(), length_of(characters), with.data(),
                       is_unusable ? -1 : length_of(with)});
  }
  std::vector<QuillWordEntry*> table = pointers_to(entries);
  Outcome o;
  if (only_fills) {
    fill(*this, side, table, o);
    return o;
  }
  HeldBlock block(is_text_null ? nullptr : block_of(text));
  if (!is_text_null) LockBlock(block.block);
  const PartPointers pattern(parts);
  o.outs[0] = to;
  YieldRecorder::watch(o.outs);
  o.result = QUILL_PICK(side, utf8_WordTableReplace)(
      &block.block, from, &o.outs[0], pattern.data(), pattern.count(),
      table.data(), length_of(table), mask.key_data(), mask.value_data(),
      mask.count(), &o.outs[1], 71, yield);
  o.text = state_of(block.block);
  return o;
}

std::string WordTableCall::show() const {
  std::string table;
  for (const Word& word : words) {
    table += test::show(word.characters) + test::show(word.replacement);
  }
  return show_fields(
      "fills", only_fills, "words", table.c_str(), "keys", mask.keys, "values",
      mask.values, "text", text, "selections", selections, "from", from, "to",
      to, "pattern", parts, "unusable", unusable, "null", is_text_null);
}

WordTableCall draw_word_table_call(Input& in) {
  // Few characters, so that words are often each other's beginnings.
  static const std::vector<std::string> letters = {"a", "b", "\xC3\xA9",
                                                   "\xE4\xB8\xAD"};
  WordTableCall call;
  call.only_fills = in.one_in(3);
  const int shortest = in.pick({0, 1, 1, 1, 4});
  const int kinds = in.pick({1, 3, 3});
  for (int left = in.between(0, in.pick({3, 20, 200})); left > 0; --left) {
    WordTableCall::Word word;
    for (int k = in.between(shortest, 7); k > 0; --k) {
      word.characters.push_back(
          packed(letters[static_cast<std::size_t>(in.between(0, kinds))]));
    }
    // Of a length that tells which word it is.
    word.replacement.assign(static_cast<std::size_t>(left) +
                                static_cast<std::size_t>(in.between(0, 7)),
                            'x');
    call.words.push_back(std::move(word));
  }
  if (in.one_in(8)) {
    call.mask = in.mask(6);
  } else if (!in.one_in(4)) {
    call.mask = {{packed("A"), packed("\xC3\x89")},
                 {packed("a"), packed("\xC3\xA9")}};
  }
  call.text = in.any_text(in.pick({12, 60, 120}));
  const auto size = length_of(call.text);
  if (call.only_fills) {
    for (int left = in.between(0, 40); left > 0; --left) {
      const int start = in.between(0, size);
      call.selections.insert(call.selections.end(),
                             {start, in.between(0, std::min(size, start + 9))});
    }
  }
  call.from = in.flag() ? 0 : in.offset(call.text.size());
  call.to = in.flag() ? size : in.offset(call.text.size());
  call.parts = {{set_of("abA\xC3\xA9\xC3\x89\xE4\xB8\xAD"), in.between(0, 2),
                 in.pick({0, 0, 4}), in.pick<unsigned char>({1, 1, 1, 0})}};
  call.is_text_null = in.one_in(64);
  if (in.one_in(16)) call.unusable = in.between(0, 9);
  return call;
}

std::string check_word_table(Input& in) {
  const WordTableCall call = draw_word_table_call(in);
  return first_difference(call, in.host());
}

}  // namespace quill::test
