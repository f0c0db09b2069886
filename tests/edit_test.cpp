// Deleting, wrapping, inserting, overlaying and multiple insertion: against
// the model on random texts and lists, and rule by rule.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>

#include "blocks/memory_manager.h"
#include "tests/models/edit_model.h"
#include "tests/support/blocks.h"
#include "tests/support/heap_watch.h"
#include "tests/support/random_text.h"

namespace quill::test {
namespace {

std::int32_t length_of(const std::string& bytes) {
  return static_cast<std::int32_t>(bytes.size());
}

// Ascending offsets, two a selection; some selections empty, some touching.
Longs random_list(Random& random, const std::string& text, int selections) {
  Longs list(static_cast<std::size_t>(selections) * 2);
  for (std::int32_t& offset : list) {
    offset = random.between(0, length_of(text));
  }
  std::sort(list.begin(), list.end());
  for (std::size_t i = 1; i < list.size(); ++i) {
    if (random.one_in(4)) list[i] = list[i - 1];
  }
  return list;
}

// One call of an operation that takes a text and a list, on Blocks of its own.
struct Outcome {
  bool result;
  std::string text;
  Longs list;
  bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& outcome, std::ostream* out) {
  *out << outcome.result << ' ' << testing::PrintToString(outcome.text) << ' '
       << testing::PrintToString(outcome.list);
}

template <class Call>
Outcome run(const std::string& text, const Longs& list, const Call& call) {
  HeldBlock held_text{std::string_view(text)};
  HeldBlock held_list{list};
  LockBlock(held_text.block);
  LockBlock(held_list.block);
  const std::int32_t result = call(&held_text.block, held_list.block);
  if (result == 1 && !text.empty() && !list.empty()) {
    EXPECT_FALSE(is_locked(held_text.block));
    EXPECT_FALSE(is_locked(held_list.block));
  }
  return {result == 1, held_text.bytes(), held_list.longs()};
}

Outcome delete_in(const std::string& text, const Longs& list) {
  return run(text, list, DelSel);
}

Outcome wrap_in(const std::string& text, const Longs& list,
                const std::string& leading, const std::string& trailing) {
  return run(text, list, [&](QuillBlock* t, QuillBlock l) {
    return InsertDualStr(t, l, leading.data(), length_of(leading),
                         trailing.data(), length_of(trailing));
  });
}

// Flags and template lie against the end of their allocations, so that
// AddressSanitizer sees one read too many.
Outcome insert_in(const std::string& text, const Longs& list,
                  const std::string& string, const Flags* flags) {
  return run(text, list, [&](QuillBlock* t, QuillBlock l) {
    return InsertStr(t, l, string.data(), length_of(string),
                     flags == nullptr ? nullptr : flags->data());
  });
}

Outcome overlay_in(const std::string& text, const Longs& list,
                   const Longs& characters, const Flags& flags) {
  return run(text, list, [&](QuillBlock* t, QuillBlock l) {
    return InsertMaskedStr(t, l, characters.data(),
                           static_cast<std::int32_t>(characters.size()),
                           flags.data());
  });
}

TEST(Edits, AgreeWithTheModel) {
  Random random(51);
  for (int round = 0; round < 20'000; ++round) {
    const std::string text = random_bytes(random, random.between(0, 60));
    Longs list = random_list(random, text, random.between(0, 6));
    // One list in a few breaks the rules.
    if (random.one_in(16)) list.push_back(length_of(text));
    if (random.one_in(16) && !list.empty()) {
      const int which = random.between(0, static_cast<int>(list.size()) - 1);
      list[static_cast<std::size_t>(which)] =
          random.between(-2, length_of(text) + 2);
    }
    const std::string string = random_bytes(random, random.between(0, 5));
    const std::string other = random_bytes(random, random.between(0, 30));
    Flags flags(static_cast<std::size_t>(model_count_characters(string)));
    for (unsigned char& flag : flags) {
      flag = static_cast<unsigned char>(random.between(0, 2));
    }
    SCOPED_TRACE(testing::PrintToString(text) + testing::PrintToString(list) +
                 testing::PrintToString(string) +
                 testing::PrintToString(flags));

    Outcome want{false, text, list};
    want.result = model_delete(want.text, list);
    ASSERT_EQ(delete_in(text, list), want);

    want = {false, text, list};
    want.result = model_wrap(want.text, list, string, other);
    ASSERT_EQ(wrap_in(text, list, string, other), want);

    for (const Flags* each : {static_cast<const Flags*>(nullptr),
                              static_cast<const Flags*>(&flags)}) {
      want = {false, text, list};
      want.result = model_insert(want.text, want.list, string, each);
      ASSERT_EQ(insert_in(text, list, string, each), want);
      want = {false, text, list};
      want.result = model_insert(want.text, want.list, other, nullptr);
      ASSERT_EQ(insert_in(text, list, other, nullptr), want);
    }

    Longs characters;
    for (std::size_t i = 0; i < flags.size(); ++i) {
      characters.push_back(random.one_in(4) ? random.between(-70'000, 70'000)
                                            : packed(random.pick(alphabet())));
    }
    want = {false, text, list};
    want.result = model_overlay(want.text, list, characters, flags);
    ASSERT_EQ(overlay_in(text, list, characters, flags), want);
  }
}

// Entries as a host lists them, with their pointers.
struct Table {
  std::vector<QuillReplaceEntry> entries;
  std::vector<QuillReplaceEntry*> pointers;

  QuillReplaceEntry** data() {
    pointers.clear();
    for (QuillReplaceEntry& entry : entries) pointers.push_back(&entry);
    return pointers.data();
  }
  std::int32_t count() const {
    return static_cast<std::int32_t>(entries.size());
  }
  Longs offsets() const {
    Longs offsets;
    for (const QuillReplaceEntry& entry : entries) {
      offsets.insert(offsets.end(), {entry.start, entry.end});
    }
    return offsets;
  }
};

std::int32_t kind_of(std::int32_t selected, std::int32_t replacement) {
  return replacement < selected ? 1 : replacement == selected ? 2 : 3;
}

TEST(InsertMultiple, AgreesWithTheModel) {
  Random random(54);
  for (int round = 0; round < 30'000; ++round) {
    const std::string text = random_bytes(random, random.between(0, 100));
    const Longs list = random_list(random, text, random.between(0, 8));
    std::vector<std::string> strings;
    Table table;
    for (std::size_t k = 0; k < list.size(); k += 2) {
      strings.push_back(random_bytes(random, random.between(0, 12)));
    }
    for (std::size_t k = 0; k < strings.size(); ++k) {
      QuillReplaceEntry entry{list[2 * k], list[2 * k + 1], strings[k].data(),
                              length_of(strings[k]), 0};
      entry.kind = kind_of(entry.end - entry.start, entry.replacement_length);
      if (random.one_in(3)) entry = {entry.start, entry.end, nullptr, 7, 0};
      if (random.one_in(40)) entry.kind = random.between(-1, 4);
      if (random.one_in(80)) entry.start -= 1;
      if (random.one_in(80)) entry.end += 1;
      if (random.one_in(80)) entry.replacement_length = -1;
      table.entries.push_back(entry);
    }
    SCOPED_TRACE(testing::PrintToString(text) + testing::PrintToString(list));
    Table want = table;
    std::string want_text = text;
    const bool want_result = model_insert_multiple(want_text, want.entries);

    HeldBlock held{std::string_view(text)};
    LockBlock(held.block);
    ASSERT_EQ(InsertMultiple(&held.block, table.data(), table.count()) == 1,
              want_result);
    ASSERT_EQ(held.bytes(), want_text);
    ASSERT_EQ(table.offsets(), want.offsets());
    ASSERT_FALSE(want_result && is_locked(held.block));
  }
}

TEST(InsertMultiple, KeepsItsRules) {
  Table table{{{0, 3, "a", 1, 1},
               {4, 7, "dog", 3, 2},
               {8, 11, nullptr, 0, 0},
               {12, 14, "upon", 4, 3},
               {19, 22, nullptr, 0, 1}},
              {}};
  HeldBlock held{std::string_view("the cat sat on the mat")};
  EXPECT_EQ(InsertMultiple(&held.block, table.data(), table.count()), 1);
  EXPECT_EQ(held.bytes(), "a dog sat upon the ");
  EXPECT_EQ(table.offsets(), (Longs{0, 1, 2, 5, 6, 9, 10, 12, 17, 17}));

  EXPECT_EQ(InsertMultiple(&held.block, table.data(), 0), 0);
  EXPECT_EQ(InsertMultiple(&held.block, table.data(), -1), 0);
  EXPECT_EQ(InsertMultiple(&held.block, nullptr, 1), 0);
  QuillReplaceEntry* missing[] = {nullptr};
  EXPECT_EQ(InsertMultiple(&held.block, missing, 1), 0);
  QuillBlock none = nullptr;
  EXPECT_EQ(InsertMultiple(&none, table.data(), 1), 0);
  EXPECT_EQ(held.bytes(), "a dog sat upon the ");

  // The same entry listed three times, behind one that shrinks.
  QuillReplaceEntry first{0, 4, "x", 1, 1};
  QuillReplaceEntry again{4, 4, "ab", 2, 3};
  QuillReplaceEntry* twice[] = {&first, &again, &again, &again};
  HeldBlock text{std::string_view("01234567")};
  EXPECT_EQ(InsertMultiple(&text.block, twice, 4), 1);
  EXPECT_EQ(text.bytes(), "xababab4567");
}

TEST(InsertStr, KeepsItsRules) {
  struct Case {
    const char* what;
    std::string text;
    Longs list;
    std::string string;
    Flags flags;  // none: null
    bool want;
    std::string want_text;
    Longs want_list;
  };
  const Case cases[] = {
      {"all shrink",
       "abcdefgh",
       {1, 4, 5, 8},
       "XY",
       {},
       true,
       "aXYeXY",
       {1, 3, 4, 6}},
      {"one as long, one shrinks",
       "abcdefgh",
       {1, 3, 5, 8},
       "XY",
       {},
       true,
       "aXYdeXY",
       {1, 3, 5, 7}},
      {"one grows, one shrinks",
       "abcdefgh",
       {1, 2, 5, 8},
       "XY",
       {},
       true,
       "aXYcdeXY",
       {1, 2, 5, 7}},
      {"an insertion point",
       "abcdefgh",
       {2, 2},
       "XY",
       {},
       true,
       "abXYcdefgh",
       {2, 2}},
      {"the whole text", "abcdefgh", {0, 8}, "XY", {}, true, "XY", {0, 2}},
      {"grow, shrink, grow",
       "AbYYYYcZd",
       {1, 1, 2, 6, 7, 8},
       "SS",
       {},
       true,
       "ASSbSScSSd",
       {1, 1, 2, 4, 5, 6}},
      {"an empty list", "abc", {}, "X", {}, false, "abc", {}},
      {"nothing to put in",
       "abcdefgh",
       {1, 3, 5, 6},
       "",
       {},
       true,
       "adegh",
       {1, 3, 5, 6}},
      {"fixed flags of any value",
       "abc",
       {1, 2},
       "XY",
       {1, 2},
       true,
       "aXYc",
       {1, 2}},
      {"an overlay",
       "tel 12 and 345 end",
       {4, 6, 11, 14},
       "(__)",
       {1, 0, 0, 1},
       true,
       "tel (2_) and (45) end",
       {4, 6, 11, 14}},
      {"an overlay of the first",
       "abcdef",
       {1, 4},
       "XY",
       {0, 1},
       true,
       "abYef",
       {1, 4}},
      {"an overlay of nothing",
       "abcdef",
       {2, 2},
       "XY",
       {0, 0},
       true,
       "abXYcdef",
       {2, 2}},
      {"a longer selection is cut",
       "a\xC3\xA9\x62",
       {0, 4},
       "XY",
       {0, 0},
       true,
       "a\xC3\xA9",
       {0, 4}},
      {"an overlay with an empty list", "abc", {}, "X", {0}, true, "abc", {}},
      {"a template of no character deletes",
       "abc",
       {1, 2},
       "\x80",
       {0},
       true,
       "ac",
       {1, 2}},
      {"into an empty text", "", {0, 0}, "X", {}, true, "X", {0, 0}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const Outcome want{c.want, c.want_text, c.want_list};
    EXPECT_EQ(insert_in(c.text, c.list, c.string,
                        c.flags.empty() ? nullptr : &c.flags),
              want);
  }
}

TEST(Edits, ReplaceTheBlockOnlyByAnOverlay) {
  HeldBlock list{Longs{1, 2}};
  HeldBlock text{std::string_view("abc")};
  const QuillBlock before = text.block;
  EXPECT_EQ(InsertStr(&text.block, list.block, "XYZ", 3, nullptr), 1);
  EXPECT_EQ(text.block, before);
  // While the old Block lives, the new one can't have its address.
  const unsigned char open = 0;
  const HeapWatch heap;
  EXPECT_EQ(InsertStr(&text.block, list.block, "Q", 1, &open), 1);
  EXPECT_NE(text.block, before);
  EXPECT_EQ(heap.outstanding(), 0);
}

// What is refused leaves text and list alone, and early answers come first.
TEST(Edits, RefuseWhatTheyCannotTrust) {
  const std::string text = "abcdefgh";
  const Longs bad_lists[] = {{1},
                             {1, 3, 5},
                             {3, 1},
                             {-1, 2},
                             {1, 9},
                             {5, 6, 1, 2},
                             {1, 4, 3, 6},
                             {9, 9},
                             {2147483647, 2147483647},
                             {0, 2147483647},
                             {-2147483647 - 1, 2147483647}};
  const Flags open = {0};
  for (const Longs& list : bad_lists) {
    SCOPED_TRACE(testing::PrintToString(list));
    const Outcome same{false, text, list};
    EXPECT_EQ(delete_in(text, list), same);
    EXPECT_EQ(wrap_in(text, list, "(", ")"), same);
    EXPECT_EQ(insert_in(text, list, "X", nullptr), same);
    EXPECT_EQ(insert_in(text, list, "", nullptr), same);
    EXPECT_EQ(insert_in(text, list, "X", &open), same);
    EXPECT_EQ(delete_in("", list), (Outcome{true, "", list}));
  }
  const Longs list = {1, 3};
  const Outcome same{false, text, list};
  const unsigned char flag = 0;
  const std::int32_t character = 'x';
  const auto refused = [&](const char* what, const auto& call) {
    SCOPED_TRACE(what);
    EXPECT_EQ(run(text, list, call), same);
  };
  refused("no string", [](QuillBlock* t, QuillBlock l) {
    return InsertStr(t, l, nullptr, 2, nullptr);
  });
  refused("a negative length", [&](QuillBlock* t, QuillBlock l) {
    return InsertStr(t, l, "ab", -1, &flag);
  });
  refused("no leading string", [](QuillBlock* t, QuillBlock l) {
    return InsertDualStr(t, l, nullptr, 1, "x", 1);
  });
  refused("a negative trailing length", [](QuillBlock* t, QuillBlock l) {
    return InsertDualStr(t, l, "x", 1, "x", -1);
  });
  refused("no flags", [&](QuillBlock* t, QuillBlock l) {
    return InsertMaskedStr(t, l, &character, 1, nullptr);
  });
  refused("no template", [&](QuillBlock* t, QuillBlock l) {
    return InsertMaskedStr(t, l, nullptr, 1, &flag);
  });
  refused("a negative template count", [&](QuillBlock* t, QuillBlock l) {
    return InsertMaskedStr(t, l, &character, -1, &flag);
  });
}

TEST(Edits, TakeNoBlockAsEmpty) {
  QuillBlock none = nullptr;
  HeldBlock list{Longs{0, 0}};
  HeldBlock text{std::string_view("ab")};
  const unsigned char open = 0;
  EXPECT_EQ(DelSel(&none, list.block), 1);
  EXPECT_EQ(DelSel(&text.block, nullptr), 1);
  EXPECT_EQ(InsertDualStr(&none, list.block, "a", 1, "b", 1), 0);
  EXPECT_EQ(InsertDualStr(&text.block, nullptr, "a", 1, "b", 1), 0);
  EXPECT_EQ(InsertStr(&none, list.block, "a", 1, nullptr), 0);
  EXPECT_EQ(InsertStr(&text.block, nullptr, "a", 1, nullptr), 0);
  EXPECT_EQ(InsertStr(&none, list.block, "a", 1, &open), 0);
  EXPECT_EQ(InsertStr(&text.block, nullptr, "a", 1, &open), 1);
  EXPECT_EQ(text.bytes(), "ab");
  EXPECT_EQ(none, nullptr);
}

// Each heap request fails in turn: the edit is done, or nothing has happened.
TEST(Edits, LeaveAllAsItWasWhenMemoryIsShort) {
  const std::string text(300, 'a');
  Longs list;
  for (int i = 0; i + 3 <= 300; i += 3)
    list.insert(list.end(), {i, i + 1 + i % 2});
  const Flags open(100, 0);
  const std::string form(100, 'x');
  const auto wrap = [](QuillBlock* t, QuillBlock l) {
    return InsertDualStr(t, l, "((", 2, "))", 2);
  };
  const auto grow = [](QuillBlock* t, QuillBlock l) {
    return InsertStr(t, l, "xyz", 3, nullptr);
  };
  const auto overlay = [&](QuillBlock* t, QuillBlock l) {
    return InsertStr(t, l, form.data(), 100, open.data());
  };
  const auto fail_everywhere = [&](const char* what, const auto& edit) {
    SCOPED_TRACE(what);
    const Outcome done = run(text, list, edit);
    int refused = 0;
    bool failed = true;
    for (int fail_at = 0; failed; ++fail_at) {
      HeldBlock held_text{std::string_view(text)};
      HeldBlock held_list{list};
      HeapWatch heap(fail_at);
      const bool result = edit(&held_text.block, held_list.block) == 1;
      EXPECT_EQ(heap.outstanding(), 0);
      failed = heap.failed();
      // Only giving memory back may fail without harm.
      const Outcome want = result ? done : Outcome{false, text, list};
      EXPECT_EQ(held_list.longs(), want.list);
      EXPECT_EQ(held_text.bytes(), want.text);
      EXPECT_FALSE(is_locked(held_text.block) || is_locked(held_list.block));
      refused += result ? 0 : 1;
    }
    EXPECT_GT(refused, 0);
  };
  fail_everywhere("wrap", wrap);
  fail_everywhere("grow", grow);
  fail_everywhere("overlay", overlay);

  Table table{{{0, 1, form.data(), 100, 3}, {2, 5, nullptr, 0, 1}}, {}};
  HeldBlock held{std::string_view(text)};
  const HeapWatch heap(0, true);
  EXPECT_EQ(InsertMultiple(&held.block, table.data(), 2), 0);
  EXPECT_EQ(held.bytes(), text);
  EXPECT_EQ(table.offsets(), (Longs{0, 1, 2, 5}));
}

// A result of 2,147,483,648 bytes or more is refused before anything is asked
// for or read: neither the strings nor the memory exist.
TEST(Edits, RefuseResultsThatDoNotFit) {
  const std::string text = "abc";
  const Longs list = {0, 1, 2, 2};
  const std::int32_t huge = 2147483647;
  const char* const string = text.data();
  const HeapWatch heap(1'000'000);
  const Outcome same{false, text, list};
  for (const std::int32_t other : {0, 1, huge}) {
    EXPECT_EQ(run(text, list,
                  [&](QuillBlock* t, QuillBlock l) {
                    return InsertDualStr(t, l, string, huge, string, other);
                  }),
              same);
  }
  EXPECT_EQ(run(text, list,
                [&](QuillBlock* t, QuillBlock l) {
                  return InsertStr(t, l, string, huge, nullptr);
                }),
            same);
  Table table{{{0, 1, string, huge, 3}, {1, 1, string, 1, 3}}, {}};
  HeldBlock held{std::string_view(text)};
  EXPECT_EQ(InsertMultiple(&held.block, table.data(), 2), 0);
  EXPECT_EQ(held.bytes(), text);
}

// Templates for which one growth step is too little, and runs that don't fit.
TEST(Overlay, MakesRoomForWhatItWrites) {
  for (const std::size_t characters : {250'000u, 250'001u, 700'000u}) {
    const Longs form(characters, packed("\xF0\x9F\x98\x80"));
    const Flags fixed(characters, 1);
    const std::string text(50'000, 'r');
    std::string want = text;
    const Longs list = {10, 20, 49'000, 49'001};
    ASSERT_TRUE(model_overlay(want, list, form, fixed));
    const Outcome got = overlay_in(text, list, form, fixed);
    ASSERT_TRUE(got.result);
    ASSERT_EQ(got.text, want);
  }
}

// Runs and strings of every length around what is moved without a call, moved
// by every small distance, both ways.
TEST(Edits, MoveRunsOfEveryLength) {
  std::string text(20'000, '\0');
  std::iota(text.begin(), text.end(), '\0');
  for (int run_length = 0; run_length <= 140; ++run_length) {
    for (const int selected : {0, 1, 3, 17, 40}) {
      Longs list;
      for (int at = 5; at + selected < 1000; at += run_length + selected + 1) {
        list.insert(list.end(), {at, at + selected});
      }
      const std::string base = text.substr(0, 1000);
      for (const int length : {0, 1, 2, 4, 8, 15, 16, 17, 33, 64, 70}) {
        const std::string string =
            text.substr(10'000, static_cast<std::size_t>(length));
        Outcome want{false, base, list};
        want.result = model_insert(want.text, want.list, string, nullptr);
        ASSERT_EQ(insert_in(base, list, string, nullptr), want)
            << run_length << ' ' << selected << ' ' << length;
      }
    }
  }
}

}  // namespace
}  // namespace quill::test
