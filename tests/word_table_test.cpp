// Word tables: lookups with an index and without, replace tables, and whole
// replacements against the words tried one by one.
#include <gtest/gtest.h>

#include "blocks/memory_manager.h"
#include "edit/insert_multiple.h"
#include "quillcore.h"
#include "tests/models/pattern_calls.h"
#include "tests/models/word_table_model.h"
#include "tests/support/blocks.h"
#include "tests/support/guarded_text.h"
#include "tests/support/heap_watch.h"
#include "tests/support/random_text.h"

namespace quill::test {
namespace {

// A model's table as the library takes it.
struct HostTable {
  std::vector<QuillWordEntry> entries;
  std::vector<QuillWordEntry*> pointers;

  explicit HostTable(const model::WordTable& table) {
    for (const model::Word& word : table.words) {
      entries.push_back({word.characters.data(),
                         static_cast<std::int32_t>(word.characters.size()),
                         word.replacement.data(),
                         static_cast<std::int32_t>(word.replacement.size())});
    }
    for (QuillWordEntry& entry : entries) pointers.push_back(&entry);
  }
  std::int32_t count() const {
    return static_cast<std::int32_t>(pointers.size());
  }
};

// Words over few characters, so that they are often each other's beginnings.
model::WordTable random_table(Random& random, int most_words) {
  model::WordTable table;
  const std::vector<std::string> letters = {"a", "b", "\xC3\xA9",
                                            "\xE4\xB8\xAD"};
  const bool has_empty = random.one_in(8);
  for (int i = random.between(0, most_words); i > 0; --i) {
    model::Word word;
    for (int k = random.between(has_empty ? 0 : 1, 5); k > 0; --k) {
      word.characters.push_back(packed(random.pick(letters)));
    }
    word.replacement =
        std::string(static_cast<std::size_t>(random.between(0, 7)), 'x');
    word.replacement += std::to_string(i);
    table.words.push_back(word);
  }
  if (random.one_in(4)) return table;
  table.mask_keys = {packed("A"), packed("\xC3\x89")};
  table.mask_values = {packed("a"), packed("\xC3\xA9")};
  return table;
}

std::string random_words(Random& random) {
  const int size = random.between(0, 120);
  return random.one_in(3) ? random_bytes(random, size)
                          : random_text(random, size);
}

// A replace table of the host's own.
struct HostEntries {
  std::vector<QuillReplaceEntry> entries;
  std::vector<QuillReplaceEntry*> pointers;

  void add(std::int32_t start, std::int32_t end) {
    entries.push_back({start, end, "?", 99, 99});
  }
  QuillReplaceEntry** data() {
    pointers.clear();
    for (QuillReplaceEntry& entry : entries) pointers.push_back(&entry);
    return pointers.data();
  }
};

std::int32_t fill(HostEntries& entries, HostTable& words, char* text,
                  model::WordTable& table) {
  return WordTable_FillReplaceTable(
      entries.data(), static_cast<std::int32_t>(entries.entries.size()),
      words.pointers.data(), words.count(), text, table.mask_keys.data(),
      table.mask_values.data(),
      static_cast<std::int32_t>(table.mask_keys.size()));
}

TEST(WordTables, FindTheFirstWordWithAndWithoutAnIndex) {
  Random random(1);
  int matched = 0;
  for (int round = 0; round < 3000; ++round) {
    model::WordTable table =
        random_table(random, random.pick(Longs{3, 20, 200}));
    HostTable words(table);
    const std::string text = random_words(random);
    const GuardedText guarded(text);
    const auto size = static_cast<std::int32_t>(text.size());
    HostEntries entries;
    for (int i = random.between(0, 40); i > 0; --i) {
      const std::int32_t start = random.between(0, size);
      entries.add(start, random.between(0, std::min(size, start + 9)));
    }
    const HeapWatch heap(random.one_in(2) ? 0 : HeapWatch::kNoFailure);
    ASSERT_EQ(fill(entries, words, guarded.data(), table), 1);
    ASSERT_EQ(heap.outstanding(), 0);
    for (const QuillReplaceEntry& entry : entries.entries) {
      const model::Word* word =
          model::find_word(table, text, entry.start, entry.end);
      SCOPED_TRACE(round);
      if (word == nullptr) {
        ASSERT_EQ(entry.replacement, nullptr);
        ASSERT_EQ(entry.replacement_length, 0);
        ASSERT_EQ(entry.kind, kKeep);
        continue;
      }
      ++matched;
      const auto length = static_cast<std::int32_t>(word->replacement.size());
      const std::int32_t change = length - (entry.end - entry.start);
      ASSERT_EQ(entry.replacement, word->replacement.data());
      ASSERT_EQ(entry.replacement_length, length);
      ASSERT_EQ(entry.kind, change < 0    ? kShorter
                            : change == 0 ? kSameLength
                                          : kLonger);
    }
  }
  EXPECT_GT(matched, 5'000);
}

TEST(ReplaceTables, HoldAnEntryForEachSelection) {
  struct Case {
    const char* what;
    Longs list;
    std::int32_t long_count;
    Longs want;
  };
  const Case cases[] = {
      {"all", {1, 3, 5, 8}, 4, {1, 3, 5, 8}},
      {"some", {1, 3, 5, 8}, 2, {1, 3}},
      {"an odd count", {1, 3, 5, 8}, 3, {1, 3}},
      {"a count beyond the list", {1, 3, 5, 8, 9}, 1000, {1, 3, 5, 8}},
  };
  for (const Case& c : cases) {
    const HeapWatch heap;
    {
      const HeldBlock list(c.list);
      LockBlock(list.block);
      QuillBlock table = nullptr;
      std::int32_t count = 0;
      ASSERT_EQ(iArrayToReplaceTable(list.block, c.long_count, &table, &count),
                1)
          << c.what;
      ASSERT_EQ(count, static_cast<std::int32_t>(c.want.size() / 2));
      ASSERT_EQ(GetBlockSize(table),
                static_cast<std::int32_t>(sizeof(void*)) * count);
      EXPECT_FALSE(is_locked(list.block) || is_locked(table));
      auto** entries = reinterpret_cast<QuillReplaceEntry**>(*table);
      for (std::size_t i = 0; i < c.want.size() / 2; ++i) {
        EXPECT_EQ(entries[i]->start, c.want[2 * i]) << c.what;
        EXPECT_EQ(entries[i]->end, c.want[2 * i + 1]) << c.what;
        EXPECT_EQ(entries[i]->replacement, nullptr);
        EXPECT_EQ(entries[i]->kind, kKeep);
      }
      EXPECT_EQ(DisposeReplaceTable(table, count), 1);
    }
    EXPECT_EQ(heap.outstanding(), 0) << c.what;
  }
}

TEST(ReplaceTables, AreNotMadeFromNothing) {
  const HeldBlock list(Longs{1, 3});
  const auto is_refused = [](QuillBlock from, std::int32_t long_count) {
    QuillBlock table = from;
    std::int32_t count = 7;
    return iArrayToReplaceTable(from, long_count, &table, &count) == 0 &&
           table == nullptr && count == 0;
  };
  EXPECT_TRUE(is_refused(list.block, 0));
  EXPECT_TRUE(is_refused(list.block, -2));
  EXPECT_TRUE(is_refused(nullptr, 2));
  EXPECT_EQ(DisposeReplaceTable(nullptr, 3), 0);
  const HeldBlock two(Longs{1, 3, 5, 8});
  for (int at = 0; at < 4; ++at) {
    const HeapWatch heap(at);
    EXPECT_TRUE(is_refused(two.block, 4)) << at;
    EXPECT_FALSE(is_locked(two.block));
    EXPECT_EQ(heap.outstanding(), 0);
  }
}

// One replacement in a text of its own.
struct Replacing {
  model::WordTable table;
  HostTable words;
  OwnedPattern pattern;
  std::string text;
  std::int32_t from = 0;
  std::int32_t to = 0;

  Replacing(model::WordTable of, std::string in)
      : table(std::move(of)),
        words(table),
        text(std::move(in)),
        to(static_cast<std::int32_t>(text.size())) {}

  struct Outcome {
    std::int32_t result;
    std::int32_t to;
    std::int32_t new_end;
  };
  Outcome operator()(QuillBlock* block, QuillYield yield) const {
    Outcome out{0, to, -77};
    const model::Pattern parts = pattern.view();
    out.result = utf8_WordTableReplace(
        block, from, &out.to, parts.parts, parts.count, words.pointers.data(),
        words.count(), table.mask_keys.data(), table.mask_values.data(),
        static_cast<std::int32_t>(table.mask_keys.size()), &out.new_end, 3,
        yield);
    return out;
  }
};

TEST(WordTables, ReplaceWordsAsTheModelDoes) {
  Random random(2);
  int changed = 0;
  for (int round = 0; round < 4000; ++round) {
    Replacing call(random_table(random, random.pick(Longs{3, 40})),
                   random_words(random));
    const auto size = static_cast<std::int32_t>(call.text.size());
    if (random.one_in(2)) call.from = random.between(-1, size);
    if (random.one_in(2)) call.to = random.between(0, size + 1);
    call.pattern.add("abA\xC3\xA9\xC3\x89", random.between(0, 2),
                     random.pick(Longs{0, 0, 4}));
    const YieldMaxScope scope(kYieldMaxima[round % 6]);
    const int stop_at = random.pick(std::vector<int>{0, 2, kNever, kNever});
    YieldRecorder naive(stop_at, 2);
    const std::optional<std::string> want =
        model::replace_words(call.table, call.text, call.from, call.to,
                             call.pattern.view(), 3, naive);
    YieldRecorder host(stop_at, 2);
    HeldBlock block(call.text);
    LockBlock(block.block);
    const Replacing::Outcome out = call(&block.block, host.callback());
    SCOPED_TRACE(testing::Message() << "round " << round);
    ASSERT_EQ(out.result, want ? 1 : 0);
    ASSERT_EQ(host.calls(), naive.calls());
    ASSERT_EQ(block.bytes(), want.value_or(call.text));
    const auto moved = static_cast<std::int32_t>(block.bytes().size()) - size;
    ASSERT_EQ(out.to, call.to + moved);
    ASSERT_EQ(out.new_end, call.to + moved);
    if (!want) continue;
    ASSERT_FALSE(is_locked(block.block));
    changed += *want != call.text ? 1 : 0;
  }
  EXPECT_GT(changed, 1000);
}

TEST(WordTables, LeaveTheTextWhenMemoryIsShort) {
  model::WordTable table;
  for (const char* word : {"cat", "ca", "sat"}) {
    Longs characters;
    for (const char* c = word; *c != '\0'; ++c) characters.push_back(*c);
    table.words.push_back({characters, std::string(2000, 'x')});
  }
  Replacing call(table, "the cat sat");
  call.pattern.add("abcdefghijklmnopqrstuvwxyz", 1, 0);
  const YieldRecorder host;
  int failures = 0;
  for (bool failed = true; failed;) {
    HeldBlock block(call.text);
    const HeapWatch heap(failures);
    LockBlock(block.block);
    const Replacing::Outcome out = call(&block.block, host.callback());
    failed = heap.failed() && out.result == 0;
    EXPECT_EQ(heap.outstanding(), 0);
    EXPECT_FALSE(is_locked(block.block));
    if (!failed) break;
    EXPECT_EQ(block.bytes(), call.text);
    EXPECT_EQ(out.to, 11);
    EXPECT_EQ(out.new_end, 11);
    ++failures;
  }
  EXPECT_GT(failures, 3);
}

TEST(WordTables, FailOnATextThatIsNone) {
  const Replacing call({}, "abc");
  const YieldRecorder host;
  QuillBlock none = nullptr;
  const Replacing::Outcome out = call(&none, host.callback());
  EXPECT_EQ(out.result, 0);
  EXPECT_EQ(out.to, 3);
  EXPECT_EQ(out.new_end, 3);
}

}  // namespace
}  // namespace quill::test
