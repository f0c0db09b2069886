// Word tables: lookups with an index and without, replace tables, and whole
// replacements.
#include <gtest/gtest.h>

#include "tests/checks/calls.h"
#include "tests/support/alphabet.h"
#include "tests/support/expect.h"

namespace quill::test {
namespace {

TEST(WordTables, AgreeWithNaiveTwinsOnRandomCalls) {
  for_random_inputs(71, 10'000, check_word_table);
}

WordTableCall::Word word(std::string_view characters, std::string with) {
  return {spell(characters), std::move(with)};
}

// The index needs memory; without it the words are tried one by one.
TEST(WordTables, FindTheSameWithAndWithoutAnIndex) {
  for_random_inputs(72, 4000, [](Input& in) -> std::string {
    const WordTableCall call = draw_word_table_call(in);
    if (!call.only_fills) return {};
    const Outcome with = outcome_of(call);
    const HeapWatch heap(0, true);
    return outcome_of(call) == with ? "" : call.show();
  });
}

// And what looks like a word where bytes are taken for characters, under masks
// that keep ASCII, or make of it a longer character or an odd one.
TEST(WordTables, FindLongWords) {
  WordTableCall call = {
      .words = {word("aaaa\u20AC", "long"),
                word("aaaaaaaaC!", "none"),
                word("aaaaa\U0001F600", "four"),
                word("aaaaa\u00E3", "two"),
                {{'a', 'a', 'a', 0xC3}, "odd"},
                {{'a', 'a', 0x1B7, 'a'}, "no"},
                {{'a', 'a', 'a', 'a', 0xA1C3}, "two"},
                {{'a', 'a', 'b', 'a', 'a', 0}, "six"},
                {{'a', 'a', 'a', 0x61616161}, "four"},
                {{'a', 0xA9C3, 0xC3, 0xA9}, "no"}},
      .text = "aaaab aaaaaaaa\u00E1 aaaaa\U0001F601 aaab aabaa abc\u00E9 ",
      .parts = {{set_of("abc\u00E1\u00E9\U0001F601")}}};
  for (std::size_t length = 70; length > 4; length -= 3) {
    const std::string some(length, 'a');
    call.words.push_back(word(some, std::to_string(length)));
    call.text += some + "aa ";
  }
  call.to = length_of(call.text);
  for (std::size_t i = 0; i + 1 < call.text.size();) {
    const std::size_t end = call.text.find(' ', i);
    call.selections.insert(
        call.selections.end(),
        {static_cast<std::int32_t>(i), static_cast<std::int32_t>(end)});
    i = end + 1;
  }
  for (const std::int32_t mapped :
       Longs{'b', 'a', packed("\u20AC"), 0xC3, 0x61616161}) {
    call.mask = {{'b', 'c'}, {mapped, 0xA9}};
    for (const bool only_fills : {false, true}) {
      call.only_fills = only_fills;
      EXPECT_EQ(first_difference(call), "") << mapped;
    }
  }
}

TEST(WordTables, FindNothingBeforeTheText) {
  char text[4] = {};
  const std::int32_t zero = 0;
  QuillWordEntry word = {&zero, 1, "x", 1};
  QuillWordEntry* words[] = {&word};
  QuillReplaceEntry entry = {-1, 1, "?", 9, 9};
  QuillReplaceEntry* table[] = {&entry};
  WordTable_FillReplaceTable(table, 1, words, 1, &text[2], nullptr, nullptr, 0);
  EXPECT_EQ(entry.replacement, nullptr);
}

TEST(WordTables, LeaveTheTextWhenMemoryIsShort) {
  WordTableCall call = {.words = {word("cat", std::string(2000, 'x')),
                                  word("sat", std::string(3000, 'y'))},
                        .text = "the cat sat",
                        .parts = {{set_of("abcdefghijklmnopqrstuvwxyz")}}};
  call.unusable = 0;
  const Outcome refused = outcome_of(call, Side::kLibrary, {0});
  EXPECT_EQ(refused.text.bytes, call.text);
  call.unusable = -1;
  expect_all_or_nothing(call, {refused});
}

TEST(ReplaceTables, HoldAnEntryForEachSelection) {
  const struct {
    const char* why;
    Longs list;
    std::int32_t long_count;
    Longs wanted;
  } cases[] = {
      {"some", {1, 3, 5, 8}, 2, {1, 3}},
      {"an odd count", {1, 3, 5, 8}, 3, {1, 3}},
      {"a count beyond the list", {1, 3, 5, 8, 9}, 1000, {1, 3, 5, 8}},
      {"one long is no selection", {1}, 1, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.why);
    const HeldBlock list(c.list);
    LockBlock(list.block);
    const HeapWatch heap;
    QuillBlock table = nullptr;
    std::int32_t count = -1;
    ASSERT_EQ(iArrayToReplaceTable(list.block, c.long_count, &table, &count),
              1);
    ASSERT_EQ(count, std::ssize(c.wanted) / 2);
    ASSERT_EQ(GetBlockSize(table), std::ssize(c.wanted) * 4);
    EXPECT_FALSE(is_locked(list.block) || is_locked(table));
    auto** entries = reinterpret_cast<QuillReplaceEntry**>(*table);
    for (std::size_t i = 0; i < c.wanted.size() / 2; ++i) {
      const auto [start, end, replacement, length, kind] = *entries[i];
      EXPECT_EQ((Longs{start, end, length, kind}),
                (Longs{c.wanted[2 * i], c.wanted[2 * i + 1], 0, 0}));
      EXPECT_EQ(replacement, nullptr);
    }
    EXPECT_EQ(DisposeReplaceTable(table, count), 1);
    EXPECT_EQ(heap.outstanding(), 0);
  }
  EXPECT_EQ(DisposeReplaceTable(nullptr, 3), 0);
}

TEST(ReplaceTables, AreNotMadeFromNothing) {
  const HeldBlock list(Longs{1, 3, 5, 8});
  const auto is_refused = [](QuillBlock from, std::int32_t long_count) {
    QuillBlock table = untouched();
    std::int32_t count = 7;
    return iArrayToReplaceTable(from, long_count, &table, &count) == 0 &&
           table == nullptr && count == 0;
  };
  EXPECT_TRUE(is_refused(list.block, 0));
  EXPECT_TRUE(is_refused(list.block, -2));
  EXPECT_TRUE(is_refused(nullptr, 2));
  for (int fail_at = 0; fail_at < 3; ++fail_at) {
    const HeapWatch heap(fail_at);
    EXPECT_TRUE(is_refused(list.block, 4)) << fail_at;
    EXPECT_FALSE(is_locked(list.block));
    EXPECT_EQ(heap.outstanding(), 0);
  }
}

}  // namespace
}  // namespace quill::test
