// FindStr, FindByte, FindStrAll and BytePatternSwap against a model that goes
// offset by offset.
#include <gtest/gtest.h>

#include "search/two_way.h"
#include "tests/models/byte_search_model.h"
#include "tests/support/each_kernel.h"
#include "tests/support/guarded_text.h"
#include "tests/support/heap_watch.h"
#include "tests/support/random_text.h"

namespace quill::test {
namespace {

struct Search {
  std::string text;
  std::int32_t start = 0;
  std::int32_t end = 0;
  std::string pattern;
  std::int32_t yield_max = 10000;
  int stop_at = kNever;
  unsigned char answer = 0;
  int change_at = kNever;
  std::int32_t change_to = 0;
};

// `text` in full, unless told otherwise.
Search search_of(std::string text, std::string pattern) {
  Search search;
  search.end = static_cast<std::int32_t>(text.size());
  search.text = std::move(text);
  search.pattern = std::move(pattern);
  return search;
}

void PrintTo(const Search& s, std::ostream* out) {
  *out << "text " << testing::PrintToString(s.text.substr(0, 300)) << " ("
       << s.text.size() << ") [" << s.start << ", " << s.end << ") pattern "
       << testing::PrintToString(s.pattern.substr(0, 100)) << " YieldMax "
       << s.yield_max << " stop at " << s.stop_at << " with " << int{s.answer};
}

// Everything that a call lets the host see.
struct Seen {
  std::int32_t result = -99;
  Longs outs = Longs(3, -88);
  Longs list;
  std::string buffer;
  std::vector<YieldRecorder::Call> calls;

  bool operator==(const Seen&) const = default;
};

void PrintTo(const Seen& seen, std::ostream* out) {
  *out << "result " << seen.result << " outs "
       << testing::PrintToString(seen.outs) << " list "
       << testing::PrintToString(seen.list) << " calls "
       << testing::PrintToString(seen.calls);
  if (!seen.buffer.empty()) *out << " buffer " << seen.buffer.substr(0, 300);
}

template <class Call>
Seen observe(const Search& search, Call call) {
  const YieldMaxScope scope(search.yield_max);
  YieldRecorder host(search.stop_at, search.answer);
  host.change_maximum(search.change_at, search.change_to);
  Seen seen;
  call(seen, host);
  seen.calls = host.calls();
  return seen;
}

std::int32_t length_of(const Search& s) {
  return static_cast<std::int32_t>(s.pattern.size());
}

std::string upper(std::string bytes) {
  for (char& byte : bytes) byte = static_cast<char>(byte ^ 0x20);
  return bytes;
}

// Compares one of the four operations with its model; `text` and `pattern` lie
// against guard pages.
enum class Operation { kFindStr, kFindByte, kFindStrAll, kSwap };
constexpr Operation kOperations[] = {Operation::kFindStr, Operation::kFindByte,
                                     Operation::kFindStrAll, Operation::kSwap};

Seen call_library(Operation operation, const Search& s, char* text,
                  const char* pattern) {
  const std::int32_t length = length_of(s);
  return observe(s, [&](Seen& seen, YieldRecorder& host) {
    QuillBlock list = nullptr;
    switch (operation) {
      case Operation::kFindStr:
        seen.result =
            FindStr(text, s.start, s.end, pattern, length, 1, -2, 3, -4,
                    &seen.outs[0], &seen.outs[1], 41, host.callback());
        break;
      case Operation::kFindByte:
        seen.result =
            FindByte(text, s.start, s.end, pattern[0], 42, host.callback());
        break;
      case Operation::kFindStrAll: {
        seen.result = FindStrAll(text, s.start, s.end, pattern, length, 1, -2,
                                 3, -4, &list, &seen.outs[0], &seen.outs[1], 43,
                                 host.callback());
        HeldBlock held;
        held.block = list;
        seen.list = held.longs();
        break;
      }
      case Operation::kSwap:
        seen.result = BytePatternSwap(text, s.start, s.end, pattern,
                                      upper(s.pattern).data(), length, 44,
                                      host.callback());
        seen.buffer.assign(text, s.text.size());
        break;
    }
  });
}

Seen call_model(Operation operation, const Search& s) {
  const std::int32_t length = length_of(s);
  return observe(s, [&](Seen& seen, YieldRecorder& host) {
    const char* text = s.text.data();
    switch (operation) {
      case Operation::kFindStr:
        seen.result =
            model_find_str(text, s.start, s.end, s.pattern.data(), length,
                           &seen.outs[0], &seen.outs[1], 41, host);
        break;
      case Operation::kFindByte:
        seen.result =
            model_find_byte(text, s.start, s.end, s.pattern[0], 42, host);
        break;
      case Operation::kFindStrAll:
        seen.result = model_find_str_all(text, s.start, s.end, s.pattern.data(),
                                         length, seen.list, &seen.outs[0],
                                         &seen.outs[1], 43, host);
        break;
      case Operation::kSwap:
        seen.buffer = s.text;
        seen.result = model_byte_pattern_swap(
            seen.buffer.data(), s.start, s.end, s.pattern.data(),
            upper(s.pattern).data(), length, 44, host);
        break;
    }
  });
}

void expect_as_model(const Search& search) {
  const GuardedText pattern(search.pattern);
  for (const Operation operation : kOperations) {
    // The scan for a byte is not made for what its callers have ruled out.
    if (operation == Operation::kFindByte &&
        (search.start < 0 || search.pattern.empty())) {
      continue;
    }
    const GuardedText text(search.text);
    ASSERT_EQ(call_library(operation, search, text.data(), pattern.data()),
              call_model(operation, search))
        << "operation " << static_cast<int>(operation) << ", "
        << testing::PrintToString(search);
  }
}

std::string letters(Random& random, int length, int kinds) {
  std::string text;
  for (int i = 0; i < length; ++i) {
    text += static_cast<char>('a' + random.between(0, kinds - 1));
  }
  return text;
}

Search random_search(Random& random) {
  const int kinds = random.pick<int>({1, 2, 2, 3, 26});
  const int length = random.pick<int>({0, 3, 9, 20, 40, 70, 150, 600});
  Search s;
  s.text = random.one_in(4) ? random_bytes(random, length)
                            : letters(random, length, kinds);
  const auto size = static_cast<int>(s.text.size());
  s.start = random.one_in(3) ? random.between(0, size) : 0;
  s.end = random.one_in(3) ? random.between(0, size) : size;
  if (size > 0 && !random.one_in(4)) {
    const int from = random.between(0, size - 1);
    const int longest = random.one_in(4) ? size : 6;
    s.pattern =
        s.text.substr(static_cast<std::size_t>(from),
                      static_cast<std::size_t>(random.between(1, longest)));
  } else {
    s.pattern = letters(random, random.between(1, 8), kinds);
  }
  return s;
}

TEST(ByteSearch, AgreesWithModelOnRandomTexts) {
  with_each_kernel([] {
    Random random(11);
    for (int round = 0; round < 500; ++round) {
      Search search = random_search(random);
      for (const std::int32_t yield_max : kYieldMaxima) {
        search.yield_max = yield_max;
        search.stop_at = random.one_in(2) ? kNever : random.between(0, 9);
        search.answer = random.pick<unsigned char>({0, 2, 255});
        search.change_at = random.one_in(4) ? random.between(0, 3) : kNever;
        search.change_to = random.pick<int>({-1, 0, 1, 3, 50});
        expect_as_model(search);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  });
}

TEST(ByteSearch, StopsAtEachCallback) {
  with_each_kernel([] {
    for (const int yield_max : {1, 2, 5, 16, 64}) {
      Search search = search_of(std::string(60, 'x') + "needleneedle" +
                                    std::string(70, 'y') + "needle",
                                "needle");
      search.yield_max = yield_max;
      for (search.stop_at = 0; search.stop_at < 150; ++search.stop_at) {
        expect_as_model(search);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  });
}

TEST(ByteSearch, FollowsItsRules) {
  struct Case {
    const char* why;
    std::string text;
    std::int32_t start, end;
    std::string pattern;
    Longs list;  // what FindStrAll finds
  };
  const Case cases[] = {
      {"matches don't overlap", "aaaa", 0, 4, "aa", {0, 2, 2, 4}},
      {"a rest too short", "aaa", 0, 3, "aa", {0, 2}},
      {"at the very end", "xxab", 0, 4, "ab", {2, 4}},
      {"cut by the end", "xxab", 0, 3, "ab", {}},
      {"a zero byte is a byte",
       std::string("a\0b\0", 4),
       0,
       4,
       std::string("\0", 1),
       {1, 2, 3, 4}},
      {"bytes above 0x7F", "\xC3\xA9\xC3\xA9", 0, 4, "\xA9", {1, 2, 3, 4}},
      {"a partial match hides none", "aab", 0, 3, "ab", {1, 3}},
      {"the range alone", "ababab", 1, 5, "ab", {2, 4}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    Search search = search_of(c.text, c.pattern);
    search.start = c.start;
    search.end = c.end;
    std::string text = c.text;
    const Seen all = call_library(Operation::kFindStrAll, search, text.data(),
                                  c.pattern.data());
    EXPECT_EQ(all.result, 1);
    EXPECT_EQ(all.list, c.list);
    EXPECT_EQ(all.outs[0], static_cast<std::int32_t>(c.list.size()));
    EXPECT_EQ(all.outs[1], c.end);
    expect_as_model(search);
  }
}

TEST(ByteSearch, RefusesInOrderAndWritesNothing) {
  struct Case {
    const char* text;
    std::int32_t start, end;
    const char* pattern;
    std::int32_t length;
  };
  const Case cases[] = {
      {nullptr, 0, 3, "a", 1}, {"abc", -1, 3, "a", 1},    {"abc", 2, 1, "a", 1},
      {"abc", 0, 0, "a", 1},   {"abc", 0, 3, nullptr, 1}, {"abc", 0, 3, "a", 0},
      {"abc", 0, 3, "a", -1},  {"abc", 1, 3, "abc", 3},   {"abc", 3, 3, "a", 1},
  };
  for (const Case& c : cases) {
    Longs outs(4, -88);
    const HeldBlock before("x");
    QuillBlock list = before.block;
    const YieldRecorder host;
    EXPECT_EQ(FindStr(c.text, c.start, c.end, c.pattern, c.length, 0, 0, 0, 0,
                      &outs[0], &outs[1], 0, host.callback()),
              0);
    EXPECT_EQ(FindStrAll(c.text, c.start, c.end, c.pattern, c.length, 0, 0, 0,
                         0, &list, &outs[2], &outs[3], 0, host.callback()),
              0);
    EXPECT_EQ(outs, Longs(4, -88));
    EXPECT_EQ(list, before.block);
    EXPECT_TRUE(host.calls().empty());
  }
}

// Every needle over two letters in texts that nearly repeat it, asked for in
// stretches as the host's questions make them.
TEST(LinearSearch, FindsWhatThereIs) {
  Random random(5);
  for (int length = 2; length <= 10; ++length) {
    for (int bits = 0; bits < 1 << length; ++bits) {
      std::string needle;
      for (int i = 0; i < length; ++i)
        needle += (bits >> i & 1) != 0 ? 'a' : 'b';
      std::string text;
      while (text.size() < 80) {
        text += needle.substr(static_cast<std::size_t>(random.between(0, 2)));
        if (random.one_in(3)) text.back() = random.one_in(4) ? 'c' : 'a';
      }
      TwoWay search(as_bytes(needle.data()), length);
      const Byte* const begin = as_bytes(text.data());
      const Offset last = std::ssize(text) - length + 1;
      for (Offset at = 0; at < last;) {
        const Offset limit = std::min<Offset>(at + random.between(1, 30), last);
        const Offset found = search.find(begin + at, begin + limit) - begin;
        auto wanted = static_cast<Offset>(
            std::min(text.find(needle, static_cast<std::size_t>(at)),
                     static_cast<std::size_t>(limit)));
        ASSERT_EQ(found, wanted) << needle << " in " << text << " from " << at;
        at = found < limit ? found + length : limit;
      }
    }
  }
}

std::string repeated(std::string_view piece, std::size_t bytes) {
  std::string text;
  while (text.size() < bytes) text += piece;
  return text;
}

// Texts on which a filter by two bytes fails at every offset. Were the work
// not bounded, the long ones would take hours.
TEST(ByteSearch, IsLinearOnPeriodicTexts) {
  const std::string as(63, 'a');
  const std::pair<std::string, std::string> small[] = {
      {repeated(as + "c", 40'000), as + "a"},
      {repeated("a", 40'000), as + "b" + as},
      {repeated("ab", 40'000) + "aab", repeated("ab", 500) + "b"},
      {repeated("a", 20'000) + "b" + repeated("a", 20'000), as + "ba"},
      {repeated(as + "b" + as, 90'000), repeated(as + "b" + as, 3000)},
  };
  for (const auto& [text, pattern] : small) {
    for (const std::int32_t yield_max : {1, 7, 100, 10000}) {
      Search search = search_of(text, pattern);
      search.yield_max = yield_max;
      for (const Operation operation :
           {Operation::kFindStr, Operation::kFindStrAll}) {
        std::string buffer = text;
        ASSERT_EQ(
            call_library(operation, search, buffer.data(), pattern.data()),
            call_model(operation, search))
            << pattern << " every " << yield_max;
      }
    }
  }
  const std::string half(1'000'000, 'a');
  for (const std::string& pattern :
       {half + "b" + half, half + "b", "b" + half}) {
    for (const std::int32_t yield_max : {1, 10000}) {
      Search search = search_of(half + half + half + half + half, pattern);
      search.yield_max = yield_max;
      const Seen seen = call_library(Operation::kFindStrAll, search,
                                     search.text.data(), pattern.data());
      EXPECT_TRUE(seen.list.empty());
      EXPECT_EQ(seen.calls.size(),
                5'000'000u / static_cast<unsigned>(yield_max));
    }
  }
}

TEST(BytePatternSwap, FollowsItsRules) {
  struct Case {
    const char* why;
    std::string buffer;
    std::int32_t start, end;
    const char* pattern;
    const char* replacement;
    std::int32_t length;
    std::string want;
  };
  const Case cases[] = {
      {"every occurrence", "abcabc", 0, 6, "bc", "XY", 2, "aXYaXY"},
      {"none overlap", "aaaa", 0, 4, "aa", "bb", 2, "bbbb"},
      {"a rest stays", "abcab", 0, 5, "abc", "XYZ", 3, "XYZab"},
      {"one cut by the end stays", "abcabc", 0, 5, "bc", "XY", 2, "aXYabc"},
      {"swapped bytes are not examined", "abab", 0, 4, "a", "b", 1, "bbbb"},
      {"no length", "abc", 0, 3, "a", "X", 0, "abc"},
      {"no range", "abc", 1, 1, "b", "X", 1, "abc"},
      {"negative end", "abc", -5, -1, "b", "X", 1, "abc"},
      {"before the buffer", "abcabc", -7, 4, "a", "X", 1, "XbcXbc"},
      {"nothing but what lies before", "abc", -7, 0, "a", "X", 1, "abc"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.why);
    const GuardedText buffer(c.buffer);
    const YieldRecorder host;
    EXPECT_EQ(BytePatternSwap(buffer.data(), c.start, c.end, c.pattern,
                              c.replacement, c.length, 0, host.callback()),
              1);
    EXPECT_EQ(buffer.view(), c.want);
  }
}

// A pattern and a replacement that lie in the buffer change with it.
TEST(BytePatternSwap, TakesStringsFromTheBufferAsTheyStand) {
  Random random(8);
  for (int round = 0; round < 2000; ++round) {
    std::string buffer = letters(random, 60, 2);
    std::string expected = buffer;
    const int length = random.between(1, 3);
    const int pattern = random.between(0, 57);
    const int replacement = random.between(0, 57);
    YieldRecorder host;
    BytePatternSwap(buffer.data(), 0, 60, buffer.data() + pattern,
                    buffer.data() + replacement, length, 0, host.callback());
    // An overlapping move, spelled out.
    for (int at = 0; at < 60;) {
      const std::string sought = expected.substr(
          static_cast<std::size_t>(pattern), static_cast<std::size_t>(length));
      if (expected.compare(static_cast<std::size_t>(at), sought.size(),
                           sought) != 0) {
        ++at;
        continue;
      }
      expected.replace(
          static_cast<std::size_t>(at), sought.size(),
          std::string(expected, static_cast<std::size_t>(replacement),
                      sought.size()));
      at += length;
    }
    ASSERT_EQ(buffer, expected)
        << pattern << " " << replacement << " " << length;
  }
}

// With the first request refused there is no list; with a later one refused the
// list keeps what it has room for.
TEST(FindStrAll, ReportsShortMemory) {
  const std::string text(1'200'000, 'a');
  for (int fail_at = 0;; ++fail_at) {
    QuillBlock list = nullptr;
    Longs outs(2, -88);
    const YieldRecorder host;
    const HeapWatch heap(fail_at, true);
    const std::int32_t result =
        FindStrAll(text.data(), 0, 1'200'000, "a", 1, 0, 0, 0, 0, &list,
                   &outs[0], &outs[1], 0, host.callback());
    if (list == nullptr) {
      EXPECT_EQ(result, 0);
      EXPECT_EQ(outs, (Longs{0, 1'200'000}));
    } else {
      EXPECT_EQ(result, 1);
      EXPECT_EQ(GetBlockSize(list), outs[0] * 4);
      EXPECT_EQ(outs[1], outs[0] / 2)
          << "what the list holds is what is passed";
      EXPECT_GE(outs[0], 1'000'000);
      DisposeBlock(list);
    }
    EXPECT_EQ(heap.outstanding(), 0);
    if (!heap.failed()) {
      EXPECT_EQ(outs[0], 2'400'000);
      break;
    }
  }
}

}  // namespace
}  // namespace quill::test
