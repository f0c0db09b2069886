// Whether cost grows with the size alone: the same work on four times as much
// text, or ten times as many selections, ordinary and made to be hard.
#include <memory>
#include <numeric>
#include <random>

#include "bench/support/bench.h"

namespace quill::bench {
namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;
const std::vector<std::size_t> kSizes = {16 * kMiB, 64 * kMiB, 256 * kMiB};

// A list of a match at every byte of more text would not fit a Block.
const std::vector<std::size_t> kSmallerSizes = {4 * kMiB, 16 * kMiB, 64 * kMiB};

const std::string kManyA(63, 'a');

std::int64_t count_plain(Span text, std::string_view needle) {
  Held list;
  list.block = find_bytes(text, needle);
  return static_cast<std::int64_t>(list.bytes().size() / 8);
}

std::int64_t count_folded(Span text, const Longs& pattern) {
  const FoldMask& mask = fold_mask();
  std::int32_t count = 0;
  std::int32_t stop = 0;
  utf8_CountStrAll(text.data, 0, text.end, pattern.data(),
                   static_cast<std::int32_t>(pattern.size()), nullptr,
                   mask.keys.data(), mask.values.data(), mask.count(), nullptr,
                   0, 0, 0, &count, &stop, 0, go_on);
  return count;
}

std::int64_t find_last(Span text, const Longs& pattern) {
  std::int32_t start = 0;
  std::int32_t end = 0;
  return utf8_FindStrPrev(text.data, 0, text.end, pattern.data(),
                          static_cast<std::int32_t>(pattern.size()), nullptr,
                          nullptr, nullptr, 0, nullptr, 0, 0, 0, &start, &end,
                          0, go_on) == 1
             ? start
             : -1;
}

// A part that takes one character of `members`, or a run of them, or of what
// they leave.
struct Part {
  std::string members;
  std::int32_t maximum;
  bool include;
};

std::int64_t count_patterns(Span text, const std::vector<Part>& parts) {
  std::vector<Longs> sets;
  std::vector<QuillRangePart> records;
  std::vector<const QuillRangePart*> pointers;
  for (const Part& part : parts) sets.push_back(characters(part.members));
  for (std::size_t i = 0; i < parts.size(); ++i) {
    records.push_back(
        {sets[i].data(), static_cast<std::int32_t>(sets[i].size()), 1,
         parts[i].maximum, static_cast<unsigned char>(parts[i].include)});
  }
  for (const QuillRangePart& record : records) pointers.push_back(&record);
  std::int32_t count = 0;
  std::int32_t stop = 0;
  utf8_CountPatternAll(text.data, 0, text.end, pointers.data(),
                       static_cast<std::int32_t>(pointers.size()), &count,
                       &stop, 0, go_on);
  return count;
}

std::int64_t none(std::string_view) { return 0; }
std::int64_t one_a_byte(std::string_view bytes) { return std::ssize(bytes); }

void add_searches() {
  const Longs folded_needle = characters(kManyA + "b");
  add_scan(
      "growth/FindStrAll/rare word", english(),
      [](Span text) { return count_plain(text, "Window"); },
      [](std::string_view bytes) {
        return static_cast<std::int64_t>(matches(bytes, "Window").size() / 2);
      },
      kSizes);
  add_scan(
      "growth/FindStrAll/63 a and b in a...a", all('a'),
      [](Span text) { return count_plain(text, kManyA + "b"); }, none, kSizes);
  add_scan(
      "growth/FindStrAll/b and 63 a in a...a", all('a'),
      [](Span text) { return count_plain(text, "b" + kManyA); }, none, kSizes);
  add_scan(
      "growth/FindStrAll/match at every byte", all('a'),
      [](Span text) { return count_plain(text, "a"); }, one_a_byte,
      kSmallerSizes);
  add_scan(
      "growth/utf8_CountStrAll/fold, match at every byte", all('a'),
      [](Span text) { return count_folded(text, {'a'}); }, one_a_byte, kSizes);
  add_scan(
      "growth/utf8_CountStrAll/fold, 63 a and b in a...a", all('a'),
      [=](Span text) { return count_folded(text, folded_needle); }, none,
      kSizes);
  add_scan(
      "growth/utf8_CountStrAll/fold, in continuation bytes", all('\x80'),
      [=](Span text) {
        return count_folded(text, {'a', 'b'});
      },
      none, kSizes);
  add_scan(
      "growth/utf8_FindStrPrev/b and 63 a in a...a", all('a'),
      [pattern = characters("b" + kManyA)](Span text) {
        return find_last(text, pattern);
      },
      [](std::string_view) { return std::int64_t{-1}; }, kSizes);
}

void add_patterns() {
  const std::string letters = "abcdefghijklmnopqrstuvwxyz";
  const std::vector<Part> open_run = {{"a", 0, true}, {"b", 1, true}};
  const std::vector<Part> bracket = {
      {"(", 1, true}, {")", 0, false}, {")", 1, true}};
  add_scan(
      "growth/utf8_CountPatternAll/[a-z]+ in continuation bytes", all('\x80'),
      [=](Span text) {
        return count_patterns(text, {{letters, 0, true}});
      },
      none, kSizes);
  add_scan(
      "growth/utf8_CountPatternAll/a+b in a...a", all('a'),
      [=](Span text) { return count_patterns(text, open_run); }, none, kSizes);
  add_scan(
      "growth/utf8_CountPatternAll/([^)]+) in (...(", all('('),
      [=](Span text) { return count_patterns(text, bracket); }, none,
      kSmallerSizes);
}

void add_characters() {
  const auto count = [](Span text) {
    std::int32_t characters = 0;
    utf8_CountCharacters(text.data, 0, text.end, &characters);
    return static_cast<std::int64_t>(characters);
  };
  add_scan("growth/utf8_CountCharacters/english", english(), count, one_a_byte,
           kSizes);
  // A stray continuation byte counts as a character.
  add_scan("growth/utf8_CountCharacters/continuation bytes", all('\x80'), count,
           one_a_byte, kSizes);

  // Only the longs of the list are looked at: the Block is made once a size.
  const auto source = std::make_shared<Held>();
  const auto cuts = [=](Span text) {
    const auto size = static_cast<std::size_t>(text.end);
    if (source->bytes().size() != size) source->assign({text.data, size});
    QuillBlock list = nullptr;
    std::int32_t longs = 0;
    utf8_ComputeBreaks(source->block, 0, text.end, 80, &list, &longs, 0, go_on);
    DisposeBlock(list);
    return static_cast<std::int64_t>(longs / 2);
  };
  add_scan(
      "growth/utf8_ComputeBreaks/every 80, english", english(), cuts,
      [](std::string_view bytes) {
        return static_cast<std::int64_t>(bytes.size() / 80);
      },
      kSizes);
}

void add_replacing() {
  const auto double_each = [](const std::string& name, const Source& source,
                              const std::string& needle,
                              const std::vector<std::size_t>& sizes) {
    const std::string with = needle + needle;
    add_edit("growth/ReplaceStrAll/" + name, source,
             {[](std::string_view) { return Longs{}; },
              [=](Held& text, Held&) {
                std::int32_t to = GetBlockSize(text.block);
                std::int32_t position = 0;
                ReplaceStrAll(text.block, 0, &to, needle.data(),
                              static_cast<std::int32_t>(needle.size()), 0,
                              with.data(),
                              static_cast<std::int32_t>(with.size()), nullptr,
                              0, 0, 0, 0, &position, 0, go_on);
              },
              [=](std::string_view bytes, const Longs&) {
                return spliced(bytes, matches(bytes, needle), with);
              }},
             sizes);
  };
  double_each("rare word", english(), "Window", kSizes);
  double_each("match at every byte", all('a'), "a", kSmallerSizes);
}

// One selection of 24 bytes in every 64 bytes of text.
void add_selections(std::int32_t count) {
  const std::int32_t size = count * 64;
  const auto bytes = static_cast<std::size_t>(size);
  const std::string suffix = "/" + std::to_string(count);
  const auto select = [=](std::string_view) {
    return spread(bytes, static_cast<std::size_t>(count), 24);
  };
  add_edit(
      "growth/DelSel/24 of 64 bytes", english(),
      {select, [](Held& text, Held& list) { DelSel(&text.block, list.block); },
       [](std::string_view text, const Longs& selections) {
         return spliced(text, selections, "");
       }},
      {bytes});
  add_edit("growth/InsertStr/30 for 24 of 64 bytes", english(),
           {select,
            [](Held& text, Held& list) {
              InsertStr(&text.block, list.block, kManyA.data(), 30, nullptr);
            },
            [](std::string_view text, const Longs& selections) {
              return spliced(text, selections, kManyA.substr(0, 30));
            }},
           {bytes});

  Longs shuffled;
  std::vector<std::int32_t> order(static_cast<std::size_t>(count));
  std::iota(order.begin(), order.end(), 0);
  std::shuffle(order.begin(), order.end(), std::mt19937(7));
  for (const std::int32_t i : order) {
    shuffled.insert(shuffled.end(), {i * 64, i * 64 + 24});
  }
  const auto ordered = [=] {
    auto list = std::make_unique<Held>(shuffled);
    OrderSelections(&list->block, size);
    return list;
  };
  add(
      "growth/OrderSelections/shuffled" + suffix, count,
      [=] { return ordered()->longs() == select({}); }, [=] { ordered(); });

  const auto list = std::make_shared<Held>(select({}));
  const auto map = std::make_shared<std::string>(bytes / 8 + 1, '\0');
  const auto to_map = [=] { SelectionToMap(map->data(), size, list->block); };
  const auto from_map = [=] {
    auto result = std::make_unique<Held>();
    std::int32_t longs = 0;
    MapToSelection(map->data(), size, &result->block, &longs);
    return result;
  };
  const auto same_again = [=] {
    to_map();
    return from_map()->longs() == select({});
  };
  add("growth/SelectionToMap/24 of 64 bytes" + suffix, count, same_again,
      to_map);
  add("growth/MapToSelection/24 of 64 bytes" + suffix, count, same_again,
      [=] { from_map(); });
}

}  // namespace

void add_growth_cases() {
  add_searches();
  add_patterns();
  add_characters();
  add_replacing();
  for (const int count : {1'000, 10'000, 100'000, 1'000'000}) {
    add_selections(count);
  }
}

}  // namespace quill::bench
