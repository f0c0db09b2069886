// Range patterns: one part, one pattern, and every search for them, against
// tables of the rules and against the model on random texts.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "blocks/memory_manager.h"
#include "tests/models/pattern_calls.h"
#include "tests/support/blocks.h"
#include "tests/support/each_kernel.h"
#include "tests/support/guarded_text.h"
#include "tests/support/heap_watch.h"
#include "tests/support/random_text.h"

namespace quill::test {
namespace {

constexpr std::int32_t kUntouched = -77;
constexpr const char* kLetters = "abcdefghijklmnopqrstuvwxyz";
constexpr const char* kDigits = "0123456789";

std::int32_t size_of(const std::string& text) {
  return static_cast<std::int32_t>(text.size());
}

// A code point as UTF-8.
std::string encoded(int c) {
  const auto tail = [c](int shift) {
    return static_cast<char>(0x80 | (c >> shift & 0x3F));
  };
  const auto lead = [c](int mark, int shift) {
    return static_cast<char>(mark | c >> shift);
  };
  if (c < 0x80) return {static_cast<char>(c)};
  if (c < 0x800) return {lead(0xC0, 6), tail(0)};
  if (c < 0x10000) return {lead(0xE0, 12), tail(6), tail(0)};
  return {lead(0xF0, 18), tail(12), tail(6), tail(0)};
}

bool answer_yes(std::int32_t, std::int32_t) { return true; }

TEST(RangeParts, TakeARunAsLongAsTheyMay) {
  const struct {
    const char* what;
    std::string members;
    std::int32_t minimum, maximum;
    unsigned char include;
    std::string text;
    std::int32_t position;
    std::int32_t result, next;
  } cases[] = {
      {"at most the maximum", kDigits, 1, 2, 1, "12345", 0, 1, 2},
      {"up to the end", kDigits, 1, 0, 1, "12345", 1, 1, 5},
      {"not the one that fails", kDigits, 1, 0, 1, "12a", 0, 1, 2},
      {"too few: next is written", kDigits, 3, 0, 1, "12a", 0, 0, 2},
      {"none where none is needed", kDigits, 0, 0, 1, "a1", 0, 1, 0},
      {"less than none is needed", kDigits, -3, 0, 1, "a1", 0, 1, 0},
      {"a maximum below 0 fails", kDigits, -9, -2, 1, "12", 0, 0, 0},
      {"the same at the end", kDigits, -9, -2, 1, "12", 2, 0, 2},
      {"all but an empty set", "", 1, 3, 0, "abcd", 0, 1, 3},
      {"any include byte but 0 includes", "a", 1, 0, 255, "aab", 0, 1, 2},
      {"empty at the end", "a", 0, 0, 1, "aab", 3, 1, 3},
      {"too few at the end", "a", 1, 0, 1, "aab", 3, 0, 3},
      {"beyond the end", "a", 0, 0, 1, "aab", 9, 1, 9},
      {"a cut character fails it", "a", 1, 0, 1, "aa\xE2\x82", 0, 0,
       kUntouched},
      {"unless it stops before", "a", 1, 2, 1, "aa\xE2\x82", 0, 1, 2},
      {"so does a stray at the end", "a", 1, 0, 1, "aa\x80", 0, 0, kUntouched},
      {"strays are skipped, not ended at", "a", 1, 0, 1,
       "a\x80\x80"
       "ab",
       0, 1, 4},
      {"strays before what fails stay", "a", 1, 0, 1,
       "a\x80"
       "b",
       0, 1, 1},
      {"a negative packed character", "a\xF0\x9F\x98\x80", 1, 0, 1,
       "\xF0\x9F\x98\x80"
       "a",
       0, 1, 5},
      {"before the text", "a", 0, 0, 1, "aa", -1, 0, kUntouched},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    OwnedPattern pattern;
    pattern.add(c.members, c.minimum, c.maximum, c.include);
    const GuardedText text(c.text);
    std::int32_t next = kUntouched;
    EXPECT_EQ(utf8_CompareRangePart(pattern.view().parts[0], text.data(),
                                    c.position, size_of(c.text), &next),
              c.result);
    EXPECT_EQ(next, c.next);
  }
}

TEST(RangeParts, BisectAsTheyAreGiven) {
  OwnedPattern pattern;  // out of order: the 'a' can't be reached
  pattern.add(Longs{'b', 'c', 'a', 'd'}, 1, 0);
  for (const auto& [text, want] :
       {std::pair{"b", 1}, std::pair{"a", 0}, std::pair{"d", 1}}) {
    std::int32_t next = 0;
    EXPECT_EQ(utf8_CompareRangePart(pattern.view().parts[0], text, 0, 1, &next),
              want)
        << text;
  }
  std::int32_t next = kUntouched;
  EXPECT_EQ(
      utf8_CompareRangePart(pattern.view().parts[0], nullptr, 0, 1, &next), 0);
  EXPECT_EQ(next, kUntouched);
}

TEST(RangePatterns, MatchPartAfterPart) {
  const auto compare = [](const OwnedPattern& pattern, const char* text,
                          std::int32_t position, std::int32_t end,
                          std::int32_t& next) {
    const model::Pattern view = pattern.view();
    return utf8_CompareRangePattern(text, position, end, view.parts, view.count,
                                    &next);
  };
  OwnedPattern none;
  OwnedPattern greedy;
  greedy.add(kLetters, 1, 0);
  greedy.add("a", 1, 1);
  OwnedPattern sum;
  sum.add(kDigits, 1, 0);
  sum.add("+", 1, 1);
  sum.add(kDigits, 1, 0);
  const struct {
    const char* what;
    const OwnedPattern& pattern;
    const char* text;
    std::int32_t position, end, result, next;
  } cases[] = {
      {"no parts match anywhere", none, "abc", 2, 3, 1, 2},
      {"no parts match beyond the end", none, "abc", 7, 3, 1, 7},
      {"never give back", greedy, "aba", 0, 3, 0, 1},
      {"all parts", sum, "12+345 ", 0, 7, 1, 6},
      {"go on past one byte", sum, "12-3", 0, 4, 0, 1},
      {"go on past two bytes", sum,
       "\xC3\xA9"
       "1",
       0, 3, 0, 2},
      {"go on past strays and a character", sum,
       "\x80\x80"
       "a1",
       0, 4, 0, 3},
      {"go on to the end", sum, "1\xE2\x82", 1, 3, 0, 3},
      {"no text", sum, nullptr, 0, 5, 0, 5},
      {"before the text", sum, "1", -4, 1, 0, 1},
  };
  for (const auto& c : cases) {
    std::int32_t next = kUntouched;
    EXPECT_EQ(compare(c.pattern, c.text, c.position, c.end, next), c.result)
        << c.what;
    EXPECT_EQ(next, c.next) << c.what;
  }
}

// The rows give all matches; the other searches follow from them.
TEST(PatternSearch, FindsWhatTheTableSays) {
  struct Row {
    const char* what;
    OwnedPattern pattern;
    std::string text;
    Longs want;
  };
  const auto part = [](const char* members, std::int32_t minimum,
                       std::int32_t maximum, unsigned char include = 1) {
    OwnedPattern pattern;
    pattern.add(members, minimum, maximum, include);
    return pattern;
  };
  std::vector<Row> rows;
  rows.push_back({"one letter", part("a", 1, 1), "banana", {1, 2, 3, 4, 5, 6}});
  rows.push_back(
      {"threes of anything", part("", 1, 3, 0), "abcdefg", {0, 3, 3, 6, 6, 7}});
  rows.push_back({"empty ones too, each once",
                  part("b", 0, 0),
                  "abba",
                  {0, 0, 1, 3, 3, 3}});
  rows.push_back({"empty before a long character",
                  part("b", 0, 0),
                  "\xE2\x82\xAC"
                  "a",
                  {0, 0, 3, 3}});
  rows.push_back({"empty before strays, then past the end",
                  part("b", 0, 0),
                  "a\x80\x80",
                  {0, 0}});
  rows.push_back({"start on the strays before it",
                  part("ab", 1, 0),
                  " \x80"
                  "ab",
                  {1, 4}});
  rows.push_back({"a lone byte jumps into a character",  // the fast start
                  part("b", 1, 1),
                  "\xE2"
                  "bc b",
                  {1, 2, 4, 5}});
  rows.push_back({"an include byte of 2 does not",
                  part("b", 1, 1, 2),
                  "\xE2"
                  "bc b",
                  {4, 5}});
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const GuardedText text(row.text);
    PatternCall call{Operation::kFindAll, text.data(),        0,
                     size_of(row.text),   row.pattern.view(), {}};
    const Outcome all = run_library(call, {});
    EXPECT_EQ(all.list, row.want);
    EXPECT_EQ(all.written, (Longs{static_cast<std::int32_t>(row.want.size()),
                                  size_of(row.text)}));
    call.operation = Operation::kCount;
    EXPECT_EQ(run_library(call, {}).written[0],
              static_cast<std::int32_t>(row.want.size() / 2));
  }
}

TEST(PatternSearch, RefusesAsTheModelDoes) {
  OwnedPattern pattern;
  pattern.add("a", 0, 0);
  const std::string text = "banana";
  for (const char* address :
       {text.c_str(), static_cast<const char*>(nullptr)}) {
    for (const int parts : {1, 0, -1}) {
      for (const int from : {-5, -1, 0, 3, 6}) {
        for (const int to : {-5, -2, 0, 2, 6}) {
          for (const Operation operation : kOperations) {
            const PatternCall call{operation,           address,       from, to,
                                   pattern.view(parts), pattern.view()};
            for (const int maximum : {1, 2, 10000}) {
              const HostPlan plan{.yield_max = maximum};
              EXPECT_EQ(run_library(call, plan), run_model(call, plan))
                  << describe(call, plan);
            }
          }
        }
      }
    }
  }
}

OwnedPattern random_pattern(Random& random) {
  OwnedPattern pattern;
  const int parts = random.between(1, random.one_in(4) ? 5 : 2);
  for (int i = 0; i < parts; ++i) {
    Longs set;
    const int members = random.between(0, random.one_in(3) ? 9 : 2);
    for (int m = 0; m < members; ++m) {
      set.push_back(random.one_in(12) ? random.between(-300, 0xFFFF)
                                      : packed(random.pick(alphabet())));
    }
    if (!random.one_in(10)) std::sort(set.begin(), set.end());
    const std::vector<unsigned char> includes = {1, 1, 1, 0, 0, 2, 255};
    pattern.add(std::move(set), random.pick(Longs{-1, 0, 0, 1, 1, 1, 2, 3}),
                random.pick(Longs{0, 0, 0, 1, 1, 2, 4, 30, -1}),
                random.pick(includes));
  }
  return pattern;
}

// Texts of a few characters, and now and then one long enough for whatever
// the library prepares for long ones.
std::string random_subject(Random& random) {
  const int characters =
      random.one_in(8) ? random.between(200, 3000) : random.between(0, 40);
  if (random.one_in(3)) return random_text(random, characters);
  if (random.one_in(2)) return random_bytes(random, characters);
  std::string text;  // long runs of few characters
  while (size_of(text) < characters) {
    const std::string& one = random.pick(alphabet());
    for (int i = random.between(1, 80); i > 0; --i) text += one;
    if (random.one_in(6)) text += random_bytes(random, 2);
  }
  return text;
}

// A stop or a change of YieldMax somewhere among the calls that would be made.
void interfere(Random& random, std::size_t calls, HostPlan& plan) {
  if (calls == 0) return;
  const int last = static_cast<int>(calls) - 1;
  const std::vector<unsigned char> answers = {0, 2, 255};
  if (random.one_in(2)) {
    plan.stop_at = random.between(0, last);
    plan.answer = random.pick(answers);
  } else {
    plan.change_at = random.between(0, last);
    plan.new_maximum = random.pick(Longs{0, -1, 1, 2, 3, 50});
  }
}

void agree_on_random_texts(std::uint32_t seed) {
  Random random(seed);
  for (int round = 0; round < 1500; ++round) {
    const std::string subject = random_subject(random);
    const GuardedText text(subject);
    const OwnedPattern pattern = random_pattern(random);
    const OwnedPattern key = random_pattern(random);
    const int size = size_of(subject);
    const int from = random.one_in(3) ? random.between(0, size) : 0;
    const int to = random.one_in(3) ? random.between(0, size) : size;
    for (const Operation operation : kOperations) {
      const PatternCall call{operation, text.data(),    from,
                             to,        pattern.view(), key.view()};
      HostPlan plan{.yield_max = random.pick(Longs(std::begin(kYieldMaxima),
                                                   std::end(kYieldMaxima)))};
      if (random.one_in(4)) plan.yield_max = random.between(3, 200);
      for (int pass = 0; pass < 3; ++pass) {
        const Outcome want = run_model(call, plan);
        ASSERT_EQ(run_library(call, plan), want)
            << describe(call, plan) << "\n"
            << pattern.describe() << "\nkey " << key.describe() << "\n"
            << testing::PrintToString(subject);
        interfere(random, want.calls.size(), plan);
      }
    }
  }
}

TEST(PatternSearch, AgreesWithTheModel) {
  std::uint32_t seed = 20240229;
  with_each_kernel([&seed] { agree_on_random_texts(seed++); });
}

// Every character from one code point to another.
Members scripts(std::initializer_list<std::pair<int, int>> ranges) {
  Members members;
  for (const auto& [first, last] : ranges) {
    for (int c = first; c <= last; ++c) members.push_back(packed(encoded(c)));
  }
  std::sort(members.begin(), members.end());
  return members;
}

// Texts long enough for the tables of long ranges, and sets that fill them in
// every way: whole lead bytes, parts of them, more kinds than are grouped.
void agree_on_many_scripts() {
  const Members sets[] = {
      scripts({{'a', 'z'}, {'A', 'Z'}}),
      scripts({{0x410, 0x44F}, {0x401, 0x401}, {0x451, 0x451}}),
      scripts({{0x4E00, 0x9FFF}}),
      scripts({{0x3041, 0x3096}, {0x30A1, 0x30FA}, {'0', '9'}}),
      scripts({{0xE0, 0xFE}, {0x391, 0x3C9}, {0x410, 0x44F}, {0x5D0, 0x5EA}}),
      scripts({{0x1F600, 0x1F64F}, {0x20AC, 0x20AC}, {'!', '/'}}),
  };
  const std::vector<std::pair<int, int>> pool = {
      {0x20, 0x7E},     {0xE0, 0xFE},     {0x391, 0x3C9},    {0x401, 0x451},
      {0x3041, 0x30FA}, {0x4DF0, 0xA010}, {0x1F5F0, 0x1F650}};
  Random random(5150);
  for (const bool in_order : {true, false}) {
    std::string subject;
    while (subject.size() < 40'000) {
      const auto [first, last] = random.pick(pool);
      for (int i = random.between(1, 60); i > 0; --i) {
        subject += encoded(random.between(first, last));
      }
      if (!in_order) subject += random_bytes(random, 1);
    }
    const GuardedText text(subject);
    for (const Members& set : sets) {
      for (const bool include : {true, false}) {
        for (const auto& [minimum, maximum] :
             {std::pair{1, 0}, {2, 0}, {1, 3}, {2, 40}, {0, 2}}) {
          OwnedPattern pattern;
          pattern.add(set, minimum, maximum, include ? 1 : 0);
          if (random.one_in(2)) pattern.add(" ", 1, 2, 0);
          const HostPlan plan{.yield_max = random.pick(Longs{1, 300, 10000})};
          for (const Operation operation :
               {Operation::kFindAll, Operation::kFindPrevious}) {
            const PatternCall call{operation,        text.data(),    0,
                                   size_of(subject), pattern.view(), {}};
            ASSERT_EQ(run_library(call, plan), run_model(call, plan))
                << describe(call, plan) << ", " << minimum << " to " << maximum
                << ", set of " << set.size() << ", include " << include;
          }
        }
      }
    }
  }
}

TEST(PatternSearch, AgreesWithTheModelOnManyScripts) {
  with_each_kernel(agree_on_many_scripts);
}

// Attempts that all run on over the same text: it would take hours if each
// went all the way.
TEST(PatternSearch, StaysLinearOnOpenRuns) {
  OwnedPattern run;
  run.add("a", 1, 0);
  run.add("b", 1, 1);
  OwnedPattern bracket;
  bracket.add("a", 1, 1);
  bracket.add("b", 0, 0, 0);
  bracket.add("b", 1, 1);
  OwnedPattern optional;
  optional.add("b", 0, 0);
  const GuardedText letters(std::string(1 << 18, 'a'));
  const GuardedText strays(std::string(1 << 18, '\x80'));
  for (const GuardedText* text : {&letters, &strays}) {
    for (const OwnedPattern* pattern : {&run, &bracket, &optional}) {
      if (pattern == &optional && text == &letters) continue;
      for (const Operation operation :
           {Operation::kFindAll, Operation::kFindPrevious}) {
        const PatternCall call{operation, text->data(),    0,
                               1 << 18,   pattern->view(), {}};
        EXPECT_TRUE(run_library(call, {}).list.empty());
      }
    }
  }
}

TEST(PatternSearch, AgreesWithTheModelAtOnePosition) {
  Random random(977);
  for (int round = 0; round < 20000; ++round) {
    const std::string subject = random_bytes(random, random.between(0, 12));
    const GuardedText text(subject);
    const OwnedPattern pattern = random_pattern(random);
    const model::Pattern view = pattern.view();
    const int end = random.between(0, size_of(subject));
    const int position = random.between(0, end + 2);
    std::int32_t next[2] = {kUntouched, kUntouched};
    EXPECT_EQ(utf8_CompareRangePattern(text.data(), position, end, view.parts,
                                       view.count, &next[0]),
              model::compare_pattern(text.data(), position, end, view, &next[1])
                  ? 1
                  : 0);
    EXPECT_EQ(next[0], next[1]);
    next[0] = next[1] = kUntouched;
    EXPECT_EQ(utf8_CompareRangePart(view.parts[0], text.data(), position, end,
                                    &next[0]),
              model::compare_part(*view.parts[0], text.data(), position, end,
                                  &next[1])
                  ? 1
                  : 0);
    EXPECT_EQ(next[0], next[1]);
  }
}

TEST(PatternLists, SayWhenMemoryIsShort) {
  OwnedPattern pattern;
  pattern.add("a", 1, 1);
  const std::string text(600'000, 'a');
  const struct {
    const char* what;
    int fail_at;
    std::int32_t to;
    std::int32_t result, long_count, stop;
  } cases[] = {
      {"no Block", 0, 600'000, 0, 0, 600'000},
      {"no room for few matches", 1, 3, 0, 0, 3},
      {"no room for many", 1, 600'000, 0, 0, 600'000},
      {"no more room: up to the match dropped", 2, 600'000, 1, 1'000'000,
       500'001},
  };
  for (const auto& c : cases) {
    for (const bool keys : {false, true}) {
      SCOPED_TRACE(testing::Message() << c.what << (keys ? ", keys" : ""));
      const HeapWatch heap(c.fail_at, true);
      QuillBlock list = nullptr;
      std::int32_t count = kUntouched;
      std::int32_t stop = kUntouched;
      const model::Pattern view = pattern.view();
      const std::int32_t result =
          keys ? utf8_FindKeyPatternAll(text.data(), 0, c.to, view.parts, 1,
                                        view.parts, 1, &list, &count, &stop, 0,
                                        &answer_yes)
               : utf8_FindPatternAll(text.data(), 0, c.to, view.parts, 1, &list,
                                     &count, &stop, 0, &answer_yes);
      EXPECT_TRUE(heap.failed());
      EXPECT_EQ(result, c.result);
      EXPECT_EQ(count, c.long_count);
      EXPECT_EQ(stop, keys && c.result == 1 ? 250'001 : c.stop);
      EXPECT_EQ(list != nullptr, count > 0);
      EXPECT_EQ(GetBlockSize(list), count * 4);
      DisposeBlock(list);
      EXPECT_EQ(heap.outstanding(), 0);
    }
  }
}

TEST(SortPattern, RunsTheSearchAndKeepsNothing) {
  OwnedPattern pattern;
  pattern.add("a", 1, 1);
  const struct {
    const char* what;
    std::int32_t from, to, parts;
    std::int32_t stop;
  } cases[] = {
      {"searches", 0, 6, 1, 6},
      {"a part of it", 1, 4, 1, 4},
      {"with less than no parts", 0, 6, -1, 6},
      {"not without parts", 0, 6, 0, kUntouched},
      {"not in an empty range", 3, 3, 1, kUntouched},
      {"not before the text", -1, 6, 1, kUntouched},
      {"not up to before it", -3, -2, 1, kUntouched},
      {"not beyond its end", 0, 7, 1, kUntouched},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    HeldBlock text("banana");
    LockBlock(text.block);
    const HeapWatch heap;
    std::int32_t stop = kUntouched;
    EXPECT_EQ(utf8_SortPattern(&text.block, c.from, c.to, pattern.view().parts,
                               c.parts, &stop, 0, &answer_yes),
              1);
    EXPECT_EQ(stop, c.stop);
    EXPECT_EQ(heap.outstanding(), 0);
    EXPECT_EQ(is_locked(text.block), c.stop == kUntouched && c.to <= 6);
  }
  QuillBlock none = nullptr;
  HeldBlock empty("");
  for (QuillBlock* block : {&none, &empty.block}) {
    std::int32_t stop = kUntouched;
    EXPECT_EQ(utf8_SortPattern(block, 0, 1, pattern.view().parts, 1, &stop, 0,
                               &answer_yes),
              1);
    EXPECT_EQ(stop, kUntouched);
  }
}

TEST(SortPattern, SaysWhenMemoryIsShort) {
  OwnedPattern pattern;
  pattern.add("a", 1, 1);
  HeldBlock text("banana");
  for (const int fail_at : {0, 1}) {
    const HeapWatch heap(fail_at);
    std::int32_t stop = kUntouched;
    EXPECT_EQ(utf8_SortPattern(&text.block, 0, 6, pattern.view().parts, 1,
                               &stop, 0, &answer_yes),
              0);
    EXPECT_EQ(stop, 6);
    EXPECT_EQ(heap.outstanding(), 0);
    EXPECT_FALSE(is_locked(text.block));
  }
}

}  // namespace
}  // namespace quill::test
