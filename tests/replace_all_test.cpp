// The three replace-alls: each must do what its search and the insertion do
// one after the other, and move the host's offsets with the text.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "blocks/memory_manager.h"
#include "tests/models/edit_model.h"
#include "tests/support/blocks.h"
#include "tests/support/heap_watch.h"
#include "tests/support/random_text.h"
#include "tests/support/yield_recorder.h"

namespace quill::test {
namespace {

constexpr std::int32_t kReference = 77;

std::int32_t size_of(const auto& container) {
  return static_cast<std::int32_t>(container.size());
}

// One request, for any of the three; each uses what it knows.
struct Request {
  std::string text;
  std::int32_t from;
  std::int32_t to;
  std::string bytes;  // sought by ReplaceStrAll
  Longs characters;   // sought by the others
  std::string string;
  Flags flags;  // none: null
  std::int32_t position = 1;

  const unsigned char* flags_or_null() const {
    return flags.empty() ? nullptr : flags.data();
  }
};

enum Kind { kBytes, kCharacters, kPattern };

struct Done {
  bool result;
  std::string text;
  std::int32_t to;
  std::int32_t position;
  std::vector<YieldRecorder::Call> calls;
  bool operator==(const Done&) const = default;
};

void PrintTo(const Done& done, std::ostream* out) {
  *out << done.result << ' ' << testing::PrintToString(done.text) << " to "
       << done.to << " position " << done.position << " calls "
       << testing::PrintToString(done.calls);
}

// A run of one or more of the characters, which are in order.
struct Pattern {
  explicit Pattern(const Longs& characters)
      : part{characters.data(), size_of(characters), 1, 0, 1} {}
  QuillRangePart part;
  const QuillRangePart* parts[1] = {&part};
};

Longs in_order(Longs characters) {
  std::sort(characters.begin(), characters.end());
  return characters;
}

std::int32_t replace(Kind kind, const Request& request, QuillBlock* block,
                     std::int32_t* to, std::int32_t* position,
                     QuillYield yield) {
  const std::string& s = request.string;
  const Longs set = in_order(request.characters);
  const Pattern pattern(set);
  switch (kind) {
    case kBytes:
      return ReplaceStrAll(*block, request.from, to, request.bytes.data(),
                           size_of(request.bytes), 1, s.data(), size_of(s),
                           request.flags_or_null(), 2, 3, 4, 5, position,
                           kReference, yield);
    case kCharacters:
      return utf8_ReplaceStrAll(
          block, request.from, to, request.characters.data(),
          size_of(request.characters), nullptr, s.data(), size_of(s),
          request.flags_or_null(), nullptr, nullptr, 0, nullptr, 0, 0, 0,
          position, kReference, yield);
    default:
      return utf8_ReplacePatternAll(
          block, request.from, to, pattern.parts, 1, s.data(), size_of(s),
          request.flags_or_null(), position, kReference, yield);
  }
}

std::int32_t search(Kind kind, const Request& request, QuillBlock* list,
                    std::int32_t* count, QuillYield yield) {
  std::int32_t stop = 0;
  const Longs set = in_order(request.characters);
  const Pattern pattern(set);
  const char* const text = request.text.data();
  switch (kind) {
    case kBytes:
      return FindStrAll(text, request.from, request.to, request.bytes.data(),
                        size_of(request.bytes), 0, 0, 0, 0, list, count, &stop,
                        kReference, yield);
    case kCharacters:
      return utf8_FindStrAll(
          text, request.from, request.to, request.characters.data(),
          size_of(request.characters), nullptr, nullptr, nullptr, 0, nullptr, 0,
          0, 0, list, count, &stop, kReference, yield);
    default:
      return utf8_FindPatternAll(text, request.from, request.to, pattern.parts,
                                 1, list, count, &stop, kReference, yield);
  }
}

// Search, then insertion, as the steps say. The search is the library's own;
// its matches are checked elsewhere.
Done expected(Kind kind, const Request& request, int stop_at) {
  YieldRecorder host(stop_at);
  HeldBlock list;
  std::int32_t count = 0;
  Done done{false, request.text, request.to, request.position, {}};
  const bool fits = request.to <= size_of(request.text);
  if (!fits ||
      search(kind, request, &list.block, &count, host.callback()) != 1) {
    done.position = request.to;
    return done;
  }
  done.calls = host.calls();
  Longs matches = list.longs();
  const Flags* const flags = request.flags.empty() ? nullptr : &request.flags;
  done.result = (count == 0 && kind != kBytes) ||
                model_insert(done.text, matches, request.string, flags);
  const std::int32_t change = size_of(done.text) - size_of(request.text);
  done.to += change;
  done.position = kind == kPattern ? done.to : request.position + change;
  return done;
}

Done actual(Kind kind, const Request& request, int stop_at) {
  YieldRecorder host(stop_at);
  HeldBlock held{std::string_view(request.text)};
  const QuillBlock before = held.block;
  LockBlock(before);
  std::int32_t to = request.to;
  std::int32_t position = request.position;
  const bool result =
      replace(kind, request, &held.block, &to, &position, host.callback()) == 1;
  EXPECT_TRUE(kind != kBytes || held.block == before);
  EXPECT_FALSE(is_locked(held.block));
  return {result, held.bytes(), to, position, host.calls()};
}

TEST(ReplaceAll, SearchesThenInserts) {
  Random random(53);
  for (int round = 0; round < 6'000; ++round) {
    Request request;
    request.text = random_bytes(random, random.between(0, 40));
    request.from = random.between(-1, 6);
    request.to = size_of(request.text) - random.between(-1, 4);
    const std::string sought = random_text(random, random.between(0, 2));
    request.bytes = sought;
    for (int i = random.between(1, 2); i > 0; --i) {
      request.characters.push_back(packed(random.pick(alphabet())));
    }
    request.string = random_bytes(random, random.between(0, 3));
    if (random.one_in(2)) {
      request.flags.assign(
          static_cast<std::size_t>(model_count_characters(request.string)),
          static_cast<unsigned char>(random.between(0, 2)));
    }
    const YieldMaxScope scope(kYieldMaxima[static_cast<std::size_t>(round) %
                                           std::size(kYieldMaxima)]);
    const int stop_at = random.one_in(2) ? kNever : random.between(0, 6);
    for (const Kind kind : {kBytes, kCharacters, kPattern}) {
      ASSERT_EQ(actual(kind, request, stop_at),
                expected(kind, request, stop_at))
          << kind << ' ' << testing::PrintToString(request.text) << ' '
          << request.from << ' ' << testing::PrintToString(request.bytes)
          << testing::PrintToString(request.characters) << ' '
          << testing::PrintToString(request.string)
          << testing::PrintToString(request.flags);
    }
  }
}

TEST(ReplaceAll, KeepsItsRules) {
  const Longs a = {'a'};
  struct Case {
    const char* what;
    Kind kind;
    Request request;
    Done want;
  };
  const Case cases[] = {
      {"every match",
       kBytes,
       {"abcabc", 0, 6, "bc", {}, "XYZ", {}},
       {true, "aXYZaXYZ", 8, 3, {}}},
      {"no match is a failed insertion",
       kBytes,
       {"abcabc", 0, 6, "x", {}, "Y", {}},
       {false, "abcabc", 6, 1, {}}},
      {"no match, an empty string",
       kBytes,
       {"abc", 0, 3, "x", {}, "", {}},
       {true, "abc", 3, 1, {}}},
      {"no match, an overlay",
       kBytes,
       {"abc", 0, 3, "x", {}, "Y", {0}},
       {true, "abc", 3, 1, {}}},
      {"an overlay into the host's own Block",
       kBytes,
       {"a-bc", 0, 4, "bc", {}, "XYZ", {1, 0, 0}},
       {true, "a-XcZ", 5, 2, {}}},
      {"no match of characters is a success",
       kCharacters,
       {"bcd", 0, 3, "", a, "Y", {}},
       {true, "bcd", 3, 1, {}}},
      {"nor of a pattern",
       kPattern,
       {"bcd", 0, 3, "", a, "Y", {}},
       {true, "bcd", 3, 3, {}}},
      {"deletes",
       kBytes,
       {"abcabc", 0, 6, "bc", {}, "", {}},
       {true, "aa", 2, -3, {}}},
      {"a part of the text",
       kBytes,
       {"abcabc", 0, 3, "bc", {}, "X", {}},
       {true, "aXabc", 2, 0, {}}},
      {"a range beyond the text",
       kBytes,
       {"abc", 0, 4, "b", {}, "X", {}},
       {false, "abc", 4, 4, {}}},
      {"the same for characters",
       kCharacters,
       {"abc", 0, 4, "", a, "X", {}},
       {false, "abc", 4, 4, {}}},
      {"and for a pattern",
       kPattern,
       {"abc", 0, 4, "", a, "X", {}},
       {false, "abc", 4, 4, {}}},
      {"an empty range is a failed search of bytes",
       kBytes,
       {"abc", 1, 1, "b", {}, "X", {}},
       {false, "abc", 1, 1, {}}},
      {"an overlay of characters",
       kCharacters,
       {"bab", 0, 3, "", a, "XY", {0, 1}},
       {true, "baYb", 4, 2, {}}},
      {"a position that would not fit",
       kBytes,
       {"abc", 0, 3, "b", {}, "XX", {}, 2147483647},
       {false, "abc", 3, 2147483647, {}}},
      {"nor after an overlay",
       kCharacters,
       {"abc", 0, 3, "", a, "XX", {0, 0}, 2147483647},
       {false, "abc", 3, 2147483647, {}}},
      {"one that just fits",
       kBytes,
       {"abc", 0, 3, "b", {}, "XX", {}, 2147483646},
       {true, "aXXc", 4, 2147483647, {}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(actual(c.kind, c.request, kNever), c.want);
  }
}

TEST(ReplaceAll, WritesNothingWithoutAText) {
  const Request request{"", 0, 5, "a", {'a'}, "b", {}};
  YieldRecorder host;
  for (const Kind kind : {kBytes, kCharacters, kPattern}) {
    QuillBlock none = nullptr;
    std::int32_t to = 5;
    std::int32_t position = 9;
    EXPECT_EQ(replace(kind, request, &none, &to, &position, host.callback()),
              0);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(to, 5);
    EXPECT_EQ(position, 9);
  }
}

// Each heap request fails in turn, those of the searches included.
TEST(ReplaceAll, FailsWithoutATraceWhenMemoryIsShort) {
  const std::string form(100, 'x');
  std::string text;
  for (int i = 0; i < 200; ++i) text += "a-b";
  const Request requests[] = {
      {text, 0, 600, "a", {'a'}, "1234", {}},
      {text, 0, 600, "a", {'a'}, form, Flags(100, 0)},
      {text, 0, 600, "a-", {'a', '-'}, "", {}},
  };
  for (const Request& request : requests) {
    for (const Kind kind : {kBytes, kCharacters, kPattern}) {
      const Done want = actual(kind, request, kNever);
      int refused = 0;
      bool failed = true;
      for (int fail_at = 0; failed; ++fail_at) {
        SCOPED_TRACE(testing::Message() << kind << ", request " << fail_at);
        YieldRecorder host;
        HeldBlock held{std::string_view(text)};
        std::int32_t to = request.to;
        std::int32_t position = request.position;
        HeapWatch heap(fail_at);
        const bool result = replace(kind, request, &held.block, &to, &position,
                                    host.callback()) == 1;
        EXPECT_EQ(heap.outstanding(), 0);
        failed = heap.failed();
        refused += result ? 0 : 1;
        if (result) {
          EXPECT_EQ(held.bytes(), want.text);
          EXPECT_EQ(to, want.to);
          EXPECT_EQ(position, want.position);
        } else {
          EXPECT_EQ(held.bytes(), text);
          EXPECT_EQ(to, request.to);
          EXPECT_TRUE(position == request.to || position == request.position);
        }
      }
      EXPECT_GT(refused, 0);
    }
  }
}

}  // namespace
}  // namespace quill::test
