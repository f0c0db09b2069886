// Comparing characters, testing break characters, and searching for strings:
// the rules one by one, then everything at random against the naive model.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <optional>
#include <string>

#include "search/string_filter.h"
#include "tests/models/string_search_model.h"
#include "tests/support/blocks.h"
#include "tests/support/guarded_text.h"
#include "tests/support/heap_watch.h"
#include "tests/support/random_text.h"
#include "tests/support/yield_recorder.h"
#include "utf8/characters.h"

namespace quill::test {
namespace {

using Flags = std::vector<unsigned char>;

// The characters of a well-formed text, packed.
Longs spell(std::string_view text) {
  Longs longs;
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const std::size_t length = lead < 0xC0   ? 1
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                                             : 4;
    longs.push_back(packed(text.substr(i, length)));
    i += length;
  }
  return longs;
}

// What a search is made of, owning it all.
struct Search {
  std::string text = {};
  Longs pattern = {};
  std::optional<Flags> flags = {};
  Longs mask_keys = {};
  Longs mask_values = {};
  std::optional<Longs> breaks = {};
  unsigned char edge = 1;
  unsigned char invert = 0;
  std::int32_t start = 0;
  std::int32_t end = -1;  // -1: the end of the text

  StringCall call(const char* at) const {
    return {at,
            start,
            end == -1 ? static_cast<std::int32_t>(text.size()) : end,
            pattern.data(),
            static_cast<std::int32_t>(pattern.size()),
            flags ? flags->data() : nullptr,
            mask_keys.data(),
            mask_values.data(),
            static_cast<std::int32_t>(mask_keys.size()),
            breaks ? breaks->data() : nullptr,
            breaks ? static_cast<std::int32_t>(breaks->size()) : 0,
            edge,
            invert};
  }
};

std::string hex(std::string_view bytes) {
  static const char* const digits = "0123456789ABCDEF";
  std::string out;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    out += {digits[value >> 4], digits[value & 15], ' '};
  }
  return out;
}

std::string show(const StringCall& c) {
  std::string out = "text " + hex({c.text, static_cast<std::size_t>(c.end)}) +
                    "\nrange " + std::to_string(c.start) + " to " +
                    std::to_string(c.end) + "\npattern";
  const auto add = [&out](const std::int32_t* longs, std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
      const auto bytes = static_cast<std::uint32_t>(longs[i]);
      out += ' ' + std::to_string(bytes);
      if (longs[i] == packed(" ")) out += "(space)";
    }
  };
  add(c.pattern, c.pattern_count);
  out += "\nkeys";
  add(c.mask_keys, c.mask_count);
  out += "\nvalues";
  add(c.mask_values, c.mask_count);
  out += "\nbreaks";
  if (c.breaks != nullptr) add(c.breaks, c.break_count);
  out += "\nedge " + std::to_string(c.edge) + " invert " +
         std::to_string(c.invert) + " flags";
  for (int i = 0; c.flags != nullptr && i < c.pattern_count; ++i) {
    out += ' ' + std::to_string(c.flags[i]);
  }
  return out;
}

// Everything a call leaves behind: result, out-parameters, what the host heard.
struct Outcome {
  std::int32_t result = -7;
  std::int32_t first = -77;
  std::int32_t second = -777;
  std::int32_t third = -7777;
  Longs list;
  std::vector<YieldRecorder::Call> heard;

  bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Outcome& o) {
  out << "result " << o.result << ", out " << o.first << ' ' << o.second << ' '
      << o.third << ", list";
  for (const std::int32_t value : o.list) out << ' ' << value;
  out << ", heard";
  for (const auto& call : o.heard) out << ' ' << call.second;
  return out;
}

// How the host behaves in a call.
struct Host {
  std::int32_t every = 10000;
  int stop_at = kNever;
  unsigned char answer = 0;
  int change_at = kNever;  // the call in which YieldMax becomes `maximum`
  std::int32_t maximum = 0;
};

enum class Operation { kFind, kPrevious, kNth, kCount, kAll };
constexpr Operation kOperations[] = {Operation::kFind, Operation::kPrevious,
                                     Operation::kNth, Operation::kCount,
                                     Operation::kAll};

Outcome run(const StringCall& call, Operation operation, std::int32_t nth,
            const Host& how) {
  const YieldMaxScope scope(how.every);
  YieldRecorder host(how.stop_at, how.answer);
  host.change_maximum(how.change_at, how.maximum);
  const QuillYield yield = host.callback();
  Outcome o;
  switch (operation) {
    case Operation::kFind:
      o.result = call(utf8_FindStr, &o.first, &o.second, 5, yield);
      break;
    case Operation::kPrevious:
      o.result = call(utf8_FindStrPrev, &o.first, &o.second, 5, yield);
      break;
    case Operation::kNth:
      o.third = nth;
      o.result = call(utf8_FindStrNth, &o.third, &o.first, &o.second, 5, yield);
      break;
    case Operation::kCount:
      o.result = call(utf8_CountStrAll, &o.first, &o.second, 5, yield);
      break;
    case Operation::kAll: {
      HeldBlock held;
      o.result =
          call(utf8_FindStrAll, &held.block, &o.first, &o.second, 5, yield);
      o.list = held.longs();
      o.third = held.block == nullptr ? 0 : 1;
      break;
    }
  }
  o.heard = host.calls();
  return o;
}

Outcome run_model(const StringCall& call, Operation operation, std::int32_t nth,
                  const Host& how) {
  const YieldMaxScope scope(how.every);
  YieldRecorder host(how.stop_at, how.answer);
  host.change_maximum(how.change_at, how.maximum);
  const StringModel model(call, 5, host);
  Outcome o;
  switch (operation) {
    case Operation::kFind:
      o.result = model.find(call.start, &o.first, &o.second) ? 1 : 0;
      break;
    case Operation::kPrevious:
      o.result = model.find_previous(&o.first, &o.second) ? 1 : 0;
      break;
    case Operation::kNth:
      o.third = nth;
      o.result = model.find_nth(&o.third, &o.first, &o.second) ? 1 : 0;
      break;
    case Operation::kCount:
      o.result = model.count_all(&o.first, &o.second) ? 1 : 0;
      break;
    case Operation::kAll:
      o.list = model.find_all(&o.second);
      o.first = static_cast<std::int32_t>(o.list.size());
      o.third = o.list.empty() ? 0 : 1;
      o.result = 1;
      break;
  }
  o.heard = host.calls();
  return o;
}

// Runs every operation of a search against the model, with the host stopping
// at its first calls and at its last ones.
void check(const Search& search, std::int32_t nth,
           const std::vector<std::int32_t>& maxima, int change_at = kNever,
           std::int32_t maximum = 0) {
  const GuardedText text(search.text);
  const StringCall call = search.call(text.data());
  for (const Operation operation : kOperations) {
    for (const std::int32_t every : maxima) {
      Host how{every, kNever, 0, change_at, maximum};
      const Outcome whole = run_model(call, operation, nth, how);
      ASSERT_EQ(run(call, operation, nth, how), whole)
          << "operation " << static_cast<int>(operation) << " YieldMax "
          << every << '\n'
          << show(call);
      const int calls = static_cast<int>(whole.heard.size());
      for (const int stop_at : {0, 1, 2, calls / 2, calls - 2, calls - 1}) {
        if (stop_at < 0 || stop_at >= calls) continue;
        how.stop_at = stop_at;
        how.answer = static_cast<unsigned char>(stop_at % 3 == 0   ? 0
                                                : stop_at % 3 == 1 ? 2
                                                                   : 255);
        ASSERT_EQ(run(call, operation, nth, how),
                  run_model(call, operation, nth, how))
            << "operation " << static_cast<int>(operation) << " YieldMax "
            << every << " stopped at " << stop_at << '\n'
            << show(call);
      }
    }
  }
}

// ---------------------------------------------------------------------------

TEST(CompareCharacters, FollowTheirRules) {
  const std::string hel = "h\xC3\xA9l";
  struct Case {
    const char* what;
    std::string text;
    std::int32_t position;
    Longs pattern;
    std::optional<Flags> flags;
    std::int32_t want;
    std::int32_t next;  // -1: untouched
  };
  const Case cases[] = {
      {"from the lead byte", hel, 1, spell("\xC3\xA9l"), {}, 1, 4},
      {"from inside a character", hel, 2, spell("\xC3\xA9l"), {}, 0, 4},
      {"an open element reads", hel, 0, {0x68, 0, 0x6C}, Flags{1, 0, 1}, 1, 4},
      {"any flag but 1 is open", hel, 0, {0, 0, 0x6C}, Flags{2, 255, 1}, 1, 4},
      {"past the end", hel, 3, spell("ll"), {}, 0, 4},
      {"a stray is skipped", "h\x80l", 0, spell("hl"), {}, 1, 3},
      {"a cut character", "a\xE2\x82", 0, {0x61, 0}, Flags{1, 0}, 0, 3},
      {"an empty pattern", hel, 0, {}, {}, 1, -1},
      {"an empty pattern anywhere", hel, 99, {}, {}, 1, -1},
      {"before the text", hel, -1, spell("h"), {}, 0, 4},
      {"what follows does not matter", hel, 0, spell("h"), {}, 1, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const GuardedText text(c.text);
    for (const auto compare : {utf8_CompareSubstring, utf8_CompareSelString}) {
      std::int32_t next = -1;
      EXPECT_EQ(
          compare(
              text.data(), c.position, static_cast<std::int32_t>(c.text.size()),
              c.pattern.data(), static_cast<std::int32_t>(c.pattern.size()),
              c.flags ? c.flags->data() : nullptr, nullptr, nullptr, 3, &next),
          c.want);
      EXPECT_EQ(next, c.next);
    }
  }
  std::int32_t next = -1;
  EXPECT_EQ(utf8_CompareSubstring(nullptr, 0, 4, cases[0].pattern.data(), 1,
                                  nullptr, nullptr, nullptr, 0, &next),
            0);
  EXPECT_EQ(next, 4) << "a null text can't be read";
}

TEST(BreakChars, FollowTheirRules) {
  const Longs space = {0x20};
  struct Case {
    const char* what;
    std::string text;
    std::int32_t end, match_start, match_end, break_count;
    unsigned char edge;
    int before, after;
  };
  const Case cases[] = {
      {"start of the text", "a b", 3, 0, 1, 1, 1, 1, 1},
      {"the edge byte is copied", "a b", 3, 0, 1, 1, 7, 7, 1},
      {"end of the range, text goes on", "a b", 1, 0, 1, 1, 0, 0, 0},
      {"start of a later range", "a b", 3, 2, 3, 1, 0, 1, 0},
      {"no set", "ab", 2, 1, 1, 0, 0, 1, 1},
      {"a set of nothing", "a b", 3, 2, 2, -1, 1, 0, 0},
      {"nothing but strays before", "\x80\x80 ", 3, 2, 2, 1, 1, 0, 1},
      {"a cut character after", " \xE2\x82", 3, 1, 1, 1, 1, 1, 0},
      {"before the text", " ", 1, -1, -1, 1, 1, 0, 0},
      {"beyond the text", " ", 1, 2, 2, 1, 1, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const GuardedText text(c.text);
    unsigned char before = 99;
    unsigned char after = 99;
    utf8_TestBreakChars(text.data(), c.end, c.match_start, c.match_end, nullptr,
                        nullptr, 0, space.data(), c.break_count, c.edge,
                        &before, &after);
    EXPECT_EQ(before, c.before);
    EXPECT_EQ(after, c.after);
  }
}

// Matches by rule; the model is checked by the same rows.
TEST(StringSearch, FindsByItsRules) {
  struct Case {
    const char* what;
    Search search;
    Longs want;
  };
  const Longs space = {0x20};
  const Case cases[] = {
      {"under a mask",
       {.text = "h\xC3\xA9l",
        .pattern = spell("el"),
        .mask_keys = {0xA9C3},
        .mask_values = {0x65}},
       {1, 4}},
      {"from inside a character",
       {.text = "h\xC3\xA9l", .pattern = spell("l"), .start = 2},
       {3, 4}},
      {"never overlapping",
       {.text = "aaaaa", .pattern = spell("aa")},
       {0, 2, 2, 4}},
      {"a stray inside",
       {.text = "xh\x80\x80lx", .pattern = spell("hl")},
       {1, 5}},
      {"swallowed by a lead byte",
       {.text = "\xE2hl", .pattern = spell("h")},
       {1, 2}},
      {"whole word",
       {.text = "a cat", .pattern = spell("cat"), .breaks = space},
       {2, 5}},
      {"no whole word",
       {.text = "cats", .pattern = spell("cat"), .breaks = space},
       {}},
      {"inverted, at a break",
       {.text = "a cat", .pattern = spell("cat"), .breaks = space, .invert = 1},
       {}},
      {"inverted, inside",
       {.text = "xcats", .pattern = spell("cat"), .breaks = space, .invert = 1},
       {1, 4}},
      {"inverted without a set",
       {.text = "cat", .pattern = spell("cat"), .breaks = Longs{}, .invert = 1},
       {0, 3}},
      {"open in first place",
       {.text = "\xE4\xB8\xAD"
                "b"
                "ab",
        .pattern = spell("?b"),
        .flags = Flags{0, 1}},
       {0, 4, 4, 6}},
      {"longer than the range", {.text = "abc", .pattern = spell("abcd")}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const StringCall call = c.search.call(c.search.text.data());
    for (const auto run_it : {run, run_model}) {
      const Outcome all = run_it(call, Operation::kAll, 0, {});
      EXPECT_EQ(all.list, c.want);
      EXPECT_EQ(all.second, call.end);
    }
    check(c.search, 2, {1, 2, 3, 10000});
  }
}

// Where only strays precede a match, the edge of the text is offset 0, which a
// forward search passes over and a backward search tries.
TEST(StringSearch, BackwardsTriesContinuationBytesAtTheStart) {
  Search search{.text =
                    "\x80\x80"
                    "a ",
                .pattern = spell("a"),
                .breaks = Longs{0x20}};
  const StringCall call = search.call(search.text.data());
  const Outcome back = run(call, Operation::kPrevious, 0, {});
  EXPECT_EQ(back.result, 1);
  EXPECT_EQ(back.first, 0);
  EXPECT_EQ(run(call, Operation::kFind, 0, {}).result, 0);
  check(search, 1, {1, 2, 10000});
}

TEST(StringSearch, RefusesWhatIsNoSearch) {
  const Search good{.text = "abcabc", .pattern = spell("bc")};
  std::vector<StringCall> calls(9, good.call(good.text.data()));
  calls[0].text = nullptr;
  calls[1].start = -1;
  calls[2].start = 4;
  calls[2].end = 3;
  calls[3].start = calls[3].end = 0;
  calls[4].pattern = nullptr;
  calls[5].pattern_count = 0;
  calls[6].pattern_count = -5;
  calls[7].start = -5;
  calls[7].end = -2;
  calls[8].pattern_count = 7;  // backwards it does not fit
  const Longs padded = spell("bcbcbcbc");
  calls[8].pattern = padded.data();
  for (std::size_t i = 0; i < calls.size(); ++i) {
    for (const Operation operation : kOperations) {
      for (const std::int32_t nth : {-1, 0, 1, 3}) {
        const Host how{1};
        EXPECT_EQ(run(calls[i], operation, nth, how),
                  run_model(calls[i], operation, nth, how))
            << "call " << i << " operation " << static_cast<int>(operation);
      }
    }
  }
}

// A null break array with a count, null keys with a count, and the like.
TEST(StringSearch, TakesOddArguments) {
  const Search search{
      .text = "a ab a", .pattern = spell("a"), .breaks = Longs{0x20}};
  const StringCall plain = search.call(search.text.data());
  std::vector<StringCall> calls(7, plain);
  calls[0].breaks = nullptr;
  calls[0].break_count = 3;
  calls[0].invert = 1;
  calls[1].break_count = -1;
  calls[2].break_count = -1;
  calls[2].invert = 1;
  calls[3].mask_keys = nullptr;  // still not the scan for the first byte
  calls[3].mask_count = 3;
  calls[4].mask_count = -3;
  calls[5].edge = 2;
  calls[6].edge = 3;
  calls[6].invert = 1;
  for (const StringCall& call : calls) {
    for (const Operation operation : kOperations) {
      for (const std::int32_t every : {1, 2, 3, 10000}) {
        for (const int stop_at : {0, 1, 2, kNever}) {
          const Host how{every, stop_at};
          EXPECT_EQ(run(call, operation, 2, how),
                    run_model(call, operation, 2, how))
              << show(call);
        }
      }
    }
  }
}

// ---------------------------------------------------------------------------

// Masks of every kind: folding, shortening, out of order, with equal keys.
void draw_mask(Random& random, Search& search) {
  const int kind = random.between(0, 5);
  if (kind < 2) return;
  const Longs fold_keys = {packed("A"), packed("\xC3\x89"), packed("\xC5\xBF"),
                           packed("\xE2\x84\xAA")};
  const Longs fold_values = {packed("a"), packed("\xC3\xA9"), packed("b"),
                             packed("a")};
  if (kind < 4) {
    search.mask_keys = fold_keys;
    search.mask_values = fold_values;
    return;
  }
  const int count = random.between(1, 12);
  for (int i = 0; i < count; ++i) {
    search.mask_keys.push_back(packed(random.pick(alphabet())));
    search.mask_values.push_back(packed(random.pick(alphabet())));
  }
  if (kind == 4) std::sort(search.mask_keys.begin(), search.mask_keys.end());
}

// A pattern that is likely to match: characters read off the text, mapped as
// the mask would map some of them.
void draw_pattern(Random& random, Search& search) {
  const int count =
      random.one_in(4) ? random.between(1, 9) : random.between(1, 3);
  const Longs text_characters =
      spell(random_text(random, 1) + random_text(random, count));
  for (int i = 0; i < count; ++i) {
    std::int32_t element = text_characters[static_cast<std::size_t>(i)];
    for (std::size_t k = 0; k < search.mask_keys.size(); ++k) {
      if (search.mask_keys[k] == element) element = search.mask_values[k];
    }
    if (random.one_in(60)) element = random.between(-300, 300);
    search.pattern.push_back(element);
  }
  if (random.one_in(3)) {
    search.flags.emplace();
    for (int i = 0; i < count; ++i) {
      search.flags->push_back(random.one_in(3) ? 0 : 1);
    }
  }
}

Search draw(Random& random, int characters) {
  Search search;
  search.text = random.one_in(2) ? random_bytes(random, characters)
                                 : random_text(random, characters);
  draw_mask(random, search);
  draw_pattern(random, search);
  if (random.one_in(2)) {
    search.breaks = spell(random.one_in(2) ? " " : " \nb");
    search.edge = static_cast<unsigned char>(random.between(0, 2));
    search.invert = static_cast<unsigned char>(random.between(0, 2));
  }
  const int size = static_cast<int>(search.text.size());
  if (random.one_in(2)) search.start = random.between(0, size);
  if (random.one_in(2)) search.end = random.between(search.start, size);
  return search;
}

TEST(StringSearch, AgreesWithTheModelOnShortTexts) {
  Random random(20);
  const std::vector<std::int32_t> maxima(std::begin(kYieldMaxima),
                                         std::end(kYieldMaxima));
  for (int round = 0; round < 4000; ++round) {
    check(draw(random, random.between(1, 24)), random.between(0, 4), maxima);
    if (HasFatalFailure()) return;
  }
}

// Long enough for whatever is prepared, and for stretches between two calls.
TEST(StringSearch, AgreesWithTheModelOnLongTexts) {
  Random random(21);
  for (int round = 0; round < 150; ++round) {
    check(draw(random, random.between(200, 3000)), random.between(0, 9),
          {1, 97, 1000, 10000, 0});
    if (HasFatalFailure()) return;
  }
}

// Runs of ASCII, of text in order and of malformed text, each long enough to be
// searched in its own way, with `joint` between them.
std::string patchwork(Random& random, int runs, const std::string& joint) {
  std::string text;
  for (int i = 0; i < runs; ++i) {
    const int length = random.between(1, 700);
    const int kind = random.between(0, 2);
    if (kind == 1) text += random_text(random, length);
    if (kind == 2) text += random_bytes(random, length);
    for (int k = 0; kind == 0 && k < length; ++k) {
      text += "ab A\n"[random.between(0, 4)];
    }
    text += joint;
  }
  return text;
}

// A patchwork in which the pattern itself lies across the runs' borders.
std::string patchwork_for(Random& random, int runs, const Search& search) {
  std::string joint;
  for (const std::int32_t element : search.pattern) {
    const bool is_open = search.flags && random.one_in(2);
    char bytes[4];
    joint += is_open
                 ? random.pick(alphabet())
                 : std::string(
                       bytes, static_cast<std::size_t>(unpack(element, bytes)));
  }
  return patchwork(random, runs, joint);
}

TEST(StringFilter, NeverMissesAMatch) {
  Random random(25);
  for (int round = 0; round < 2500; ++round) {
    Search search = draw(random, 1);
    search.text = patchwork_for(random, random.between(1, 6), search);
    search.start = random.between(0, 3);
    search.end = -1;
    const GuardedText text(search.text);
    const StringCall c = search.call(text.data());
    StringFilter forward;
    StringFilter backward;
    for (StringFilter* filter : {&forward, &backward}) {
      filter->prepare(as_bytes(c.text), c.start, c.end,
                      {c.pattern, c.pattern_count, c.flags},
                      {c.mask_keys, c.mask_values, c.mask_count});
    }
    std::vector<bool> candidates(search.text.size());
    std::vector<bool> from_behind(search.text.size());
    for (Offset p = c.start; (p = forward.next(p, c.end)) < c.end; ++p) {
      candidates[static_cast<std::size_t>(p)] = true;
    }
    for (Offset p = c.end; (p = backward.previous(c.start, p)) >= c.start;) {
      from_behind[static_cast<std::size_t>(p)] = true;
      if (p == c.start) break;
    }
    YieldRecorder host;
    const StringModel model(c, 0, host);
    for (std::int32_t p = c.start; p < c.end; ++p) {
      std::int32_t next = 0;
      const auto at = static_cast<std::size_t>(p);
      if ((search.text[at] & 0xC0) == 0x80 || !model.compare(p, &next))
        continue;
      ASSERT_TRUE(candidates[at]) << "forwards at " << p << '\n' << show(c);
      ASSERT_TRUE(from_behind[at]) << "backwards at " << p << '\n' << show(c);
    }
  }
}

// ASCII bytes that the word test takes for a good side.
ByteSet good_sides(const StringCall& c) {
  ByteSet sides;
  for (int byte = 0; byte < 128; ++byte) {
    const std::int32_t mapped =
        utf8_MaskChar(byte, c.mask_keys, c.mask_values, c.mask_count, 1);
    const bool is_break = std::find(c.breaks, c.breaks + c.break_count,
                                    mapped) != c.breaks + c.break_count;
    if (is_break != (c.invert == 1)) sides.add(static_cast<Byte>(byte));
  }
  return sides;
}

TEST(StringFilter, DecidesAsTheModelDoes) {
  Random random(27);
  int decided = 0;
  for (int round = 0; round < 1500; ++round) {
    Search search = draw(random, 1);
    search.text = patchwork_for(random, random.between(1, 6), search);
    search.breaks = spell(random.one_in(2) ? " " : " \nb");
    search.start = random.between(0, 3);
    search.end = -1;
    const GuardedText text(search.text);
    const StringCall c = search.call(text.data());
    StringFilter filter;
    filter.prepare(as_bytes(c.text), c.start, c.end,
                   {c.pattern, c.pattern_count, c.flags},
                   {c.mask_keys, c.mask_values, c.mask_count});
    const bool by_word = random.one_in(2);
    const ByteSet sides = good_sides(c);
    filter.decide(by_word ? &sides : nullptr);
    YieldRecorder host;
    const StringModel model(c, 0, host);
    const auto matches = [&](Offset position) {
      const std::int32_t p = to_long(position);
      std::int32_t next = 0;
      if ((c.text[p] & 0xC0) == 0x80 || !model.compare(p, &next)) return false;
      unsigned char before = 0;
      unsigned char after = 0;
      model.test_breaks(p, next, &before, &after);
      const int good = c.invert == 1 ? 0 : 1;
      return !by_word || (before == good && after == good);
    };
    for (Offset p = c.start; (p = filter.next(p, c.end)) < c.end; ++p) {
      if (!filter.has_decided(p)) continue;
      const Offset hit = filter.next_decided(p, c.end);
      for (; p < hit; ++p) ASSERT_FALSE(matches(p)) << p << '\n' << show(c);
      if (hit == c.end || !filter.has_decided(hit)) continue;
      ASSERT_TRUE(matches(hit)) << hit << '\n' << show(c);
      ++decided;
    }
  }
  EXPECT_GT(decided, 1000);
}

TEST(StringSearch, AgreesWithTheModelOnPatchworks) {
  Random random(26);
  for (int round = 0; round < 40; ++round) {
    Search search = draw(random, 1);
    search.text = patchwork_for(random, 120, search);
    search.start = 0;
    search.end = -1;
    check(search, random.between(0, 9), {10000, 0});
    if (HasFatalFailure()) return;
  }
}

TEST(StringSearch, HearsYieldMaxChange) {
  Random random(22);
  for (int round = 0; round < 1000; ++round) {
    check(draw(random, random.between(5, 60)), random.between(0, 4), {1, 2, 5},
          random.between(0, 5), random.between(-1, 9));
    if (HasFatalFailure()) return;
  }
}

// ---------------------------------------------------------------------------

TEST(StringSearch, CompareAndBreaksAgreeWithTheModel) {
  Random random(23);
  for (int round = 0; round < 5000; ++round) {
    const Search search = draw(random, random.between(1, 12));
    const GuardedText text(search.text);
    const StringCall c = search.call(text.data());
    YieldRecorder host;
    const StringModel model(c, 0, host);
    const std::int32_t at = random.between(0, c.end + 1);
    std::int32_t next = -1;
    std::int32_t want_next = -1;
    EXPECT_EQ(utf8_CompareSubstring(c.text, at, c.end, c.pattern,
                                    c.pattern_count, c.flags, c.mask_keys,
                                    c.mask_values, c.mask_count, &next),
              model.compare(at, &want_next) ? 1 : 0);
    EXPECT_EQ(next, want_next);
    unsigned char sides[2] = {9, 9};
    unsigned char want[2] = {9, 9};
    const std::int32_t match_end = random.between(at, c.end + 2);
    utf8_TestBreakChars(c.text, c.end, at, match_end, c.mask_keys,
                        c.mask_values, c.mask_count, c.breaks, c.break_count,
                        c.edge, &sides[0], &sides[1]);
    model.test_breaks(at, match_end, &want[0], &want[1]);
    ASSERT_EQ(sides[0], want[0]) << show(c);
    ASSERT_EQ(sides[1], want[1]) << show(c);
  }
}

// A break set of thousands, in no order and with repeats.
TEST(StringSearch, KnowsLargeBreakSets) {
  Random random(24);
  for (int round = 0; round < 20; ++round) {
    Search search = draw(random, random.between(300, 3000));
    search.breaks.emplace();
    for (int i = 0; i < 3000; ++i) {
      search.breaks->push_back(random.between(0x4E00, 0x9FFF) << 8 | 0xE4);
    }
    for (const std::string& character : alphabet()) {
      if (random.one_in(2)) search.breaks->push_back(packed(character));
    }
    std::swap(search.breaks->front(), search.breaks->back());
    check(search, 2, {10000});
    if (HasFatalFailure()) return;
  }
}

TEST(StringSearch, OutlivesShortMemory) {
  Search search{.text = std::string(1'100'000, 'a'),
                .pattern = spell("a"),
                .breaks = Longs(5000, 0x61)};
  for (const bool many : {false, true}) {
    if (!many) search.text = "bab";
    const StringCall call = search.call(search.text.data());
    bool failed = true;
    for (int fail_at = 0; failed; ++fail_at) {
      for (const bool and_after : {false, true}) {
        QuillBlock list = nullptr;
        std::int32_t count = -7;
        std::int32_t stop = -7;
        const YieldRecorder host;
        int outstanding = 0;
        {
          const HeapWatch heap(fail_at, and_after);
          const std::int32_t made =
              call(utf8_FindStrAll, &list, &count, &stop, 0, host.callback());
          failed = heap.failed();
          SCOPED_TRACE(fail_at);
          EXPECT_EQ(list != nullptr, count != 0);
          EXPECT_EQ(GetBlockSize(list), count * 4);
          if (made == 0) {
            EXPECT_EQ(count, 0);
            EXPECT_EQ(stop, call.end);
          } else if (stop != call.end) {
            // The match that found no room ends where the search stopped.
            EXPECT_EQ(count, 2 * (stop - 1));
          }
          DisposeBlock(list);
          outstanding = heap.outstanding();
        }
        EXPECT_EQ(outstanding, 0);
      }
    }
    search.text = std::string(1'100'000, 'a');
  }
}

// The callback finds a match already written, or 0 and the range's end.
TEST(StringSearch, WritesAMatchBeforeTheHostIsAsked) {
  struct Seen {
    std::int32_t start = -1;
    std::int32_t end = -1;
    std::vector<std::pair<std::int32_t, std::int32_t>> at_calls;
  };
  static Seen seen;
  seen = {};
  const Search search{.text = "xxa", .pattern = spell("a")};
  const YieldMaxScope scope(1);
  const auto yield = [](std::int32_t, std::int32_t) {
    seen.at_calls.emplace_back(seen.start, seen.end);
    return true;
  };
  search.call(search.text.data())(utf8_FindStr, &seen.start, &seen.end, 0,
                                  +yield);
  const decltype(seen.at_calls) want = {{0, 3}, {0, 3}, {2, 3}};
  EXPECT_EQ(seen.at_calls, want);
}

}  // namespace
}  // namespace quill::test
