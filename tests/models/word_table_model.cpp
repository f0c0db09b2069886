#include "tests/models/naive.h"
#include "tests/support/blocks.h"

namespace quill::naive {
namespace {

struct Mask {
  const Long* keys;
  const Long* values;
  Long count;
};

QuillReplaceEntry entry_for(Long start, Long end, const char* text,
                            const QuillWordEntry* const* words, Long word_count,
                            const Mask& mask) {
  for (Long i = 0; i < word_count; ++i) {
    const QuillWordEntry& word = *words[i];
    Long next = 0;
    if (naive::utf8_CompareSubstring(text, start, end, word.word,
                                     word.word_count, nullptr, mask.keys,
                                     mask.values, mask.count, &next) == 0) {
      continue;
    }
    const Long length = word.replacement_length;
    return {start, end, word.replacement, length,
            kind_of(length, std::int64_t{end} - start)};
  }
  return {start, end, nullptr, 0, 0};
}

}  // namespace

Long WordTable_FillReplaceTable(QuillReplaceEntry** entries, Long entry_count,
                                QuillWordEntry** words, Long word_count,
                                char* text, Long* mask_keys, Long* mask_values,
                                Long mask_count) {
  for (Long i = 0; i < entry_count; ++i) {
    *entries[i] = entry_for(entries[i]->start, entries[i]->end, text, words,
                            word_count, {mask_keys, mask_values, mask_count});
  }
  return 1;
}

Long utf8_WordTableReplace(QuillBlock* text, Long from, Long* to,
                           const QuillRangePart* const* parts, Long part_count,
                           const QuillWordEntry* const* words, Long word_count,
                           const Long* mask_keys, const Long* mask_values,
                           Long mask_count, Long* new_end, Long reference,
                           QuillYield yield) {
  *new_end = *to;
  const Long size = GetBlockSize(*text);
  if (*text == nullptr || *to > size) return 0;
  UnlockBlock(*text);
  test::HeldBlock found;
  Long long_count = 0;
  Long stop = 0;
  naive::utf8_FindPatternAll(**text, from, *to, parts, part_count, &found.block,
                             &long_count, &stop, reference, yield);
  if (long_count == 0) return 1;
  const test::Longs list = found.longs();
  std::vector<QuillReplaceEntry> entries;
  for (std::size_t i = 0; i < list.size(); i += 2) {
    entries.push_back(entry_for(list[i], list[i + 1], **text, words, word_count,
                                {mask_keys, mask_values, mask_count}));
  }
  std::vector<QuillReplaceEntry*> pointers = test::pointers_to(entries);
  if (naive::InsertMultiple(text, pointers.data(), test::length_of(pointers)) ==
      0) {
    return 0;
  }
  *to += GetBlockSize(*text) - size;
  *new_end = *to;
  return 1;
}

}  // namespace quill::naive
