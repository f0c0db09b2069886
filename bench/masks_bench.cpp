// Masks and sets, and rewriting text through a mask.
#include <algorithm>
#include <memory>
#include <numeric>
#include <random>

#include "bench/support/bench.h"

namespace quill::bench {
namespace {

const FoldMask& mask() { return fold_mask(); }

void add_lookup_cases() {
  const Longs asked =
      characters("The quick brown Fox, \xC3\x89t\xC3\xA9 \xD0\x9F");
  const auto items = static_cast<std::int64_t>(asked.size());
  for (const bool bisect : {false, true}) {
    const auto sorted = static_cast<unsigned char>(bisect);
    const auto map = [=](std::int32_t character) {
      return utf8_MaskChar(character, mask().keys.data(), mask().values.data(),
                           mask().count(), sorted);
    };
    add(
        sorted == 1 ? "utf8_MaskChar/sorted" : "utf8_MaskChar/in_array_order",
        items, [=] { return map('Q') == 'q' && map('q') == 'q'; },
        [=] {
          for (const std::int32_t character : asked) {
            benchmark::DoNotOptimize(map(character));
          }
        });
  }
  const auto match = [](std::int32_t character) {
    return utf8_MatchChar(mask().keys.data(), mask().count(), character, 1);
  };
  add(
      "utf8_MatchChar/set_of_100", items,
      [=] { return match('Q') == 1 && match('q') == 0; },
      [=] {
        for (const std::int32_t character : asked) {
          benchmark::DoNotOptimize(match(character));
        }
      });
  const auto listed = [](std::int32_t character) {
    const Longs& breaks = word_breaks();
    return utf8_InList(character, breaks.data(),
                       static_cast<std::int32_t>(breaks.size()));
  };
  add(
      "utf8_InList/breaks", items,
      [=] { return listed('.') == 1 && listed('q') == 0; },
      [=] {
        for (const std::int32_t character : asked) {
          benchmark::DoNotOptimize(listed(character));
        }
      });
}

// Sorting starts from a copy, which is part of the time.
void add_sort_case(const std::string& name, const Longs& unsorted) {
  const auto sorted = [=] {
    Longs keys = unsorted;
    Longs values = unsorted;
    utf8_SortMask(keys.data(), values.data(), 0,
                  static_cast<std::int32_t>(keys.size()));
    return keys == values ? keys : Longs{};
  };
  add(
      name, static_cast<std::int64_t>(unsorted.size()),
      [=] {
        Longs expected = unsorted;
        std::sort(expected.begin(), expected.end());
        return sorted() == expected;
      },
      [=] { benchmark::DoNotOptimize(sorted().data()); });
}

void add_sort_cases() {
  std::mt19937 random(3);
  for (const std::size_t count : {200u, 20'000u}) {
    Longs keys(count);
    std::iota(keys.begin(), keys.end(), -50);
    add_sort_case("utf8_SortMask/ascending/" + std::to_string(count), keys);
    std::shuffle(keys.begin(), keys.end(), random);
    add_sort_case("utf8_SortMask/random/" + std::to_string(count), keys);
  }
}

std::string_view masked(Span text, Held& source, Held& output) {
  if (source.block == nullptr) {
    source.assign({text.data, static_cast<std::size_t>(text.end)});
  }
  output.drop();
  const auto done = utf8_MaskString(source.block, 0, text.end,
                                    mask().keys.data(), mask().values.data(),
                                    mask().count(), &output.block, 0, 0, go_on);
  if (done != 1) output.block = nullptr;  // it has been disposed of
  return output.bytes();
}

std::string_view masked_selections(Span text, Held& source, Held& output,
                                   const Longs& selections) {
  if (source.block == nullptr) {
    source.assign({text.data, static_cast<std::size_t>(text.end)});
  }
  output.drop();
  const auto done = utf8_MaskStringSelection(
      source.block, selections.data(),
      static_cast<std::int32_t>(selections.size()), mask().keys.data(),
      mask().values.data(), mask().count(), &output.block, 0, go_on);
  if (done != 1) output.block = nullptr;  // it has been disposed of
  return output.bytes();
}

// The source Block is made by the first round, which checks the answer.
void add_rewrite_cases(const std::string& kind, const Source& source) {
  for (const std::size_t size : {kShort, kLong}) {
    const auto kept = std::make_shared<std::pair<Held, Held>>();
    const auto rewrite = [=](Span text) {
      return masked(text, kept->first, kept->second);
    };
    add_scan("utf8_MaskString/" + kind, source, rewrite, folded, {size});

    const auto selections = std::make_shared<Longs>();
    const auto rewrite_lines = [=](Span text) {
      if (selections->empty()) {
        *selections = lines({text.data, static_cast<std::size_t>(text.end)});
      }
      return masked_selections(text, kept->first, kept->second, *selections);
    };
    add_scan("utf8_MaskStringSelection/lines_of_" + kind, source, rewrite_lines,
             folded, {size});
  }
}

void add_array_cases() {
  for (const auto& [name, source] :
       {std::pair{"ascii", english()}, {"two_bytes", greek()}}) {
    const auto array = std::make_shared<Longs>();
    const auto convert = [=](Span text) {
      array->resize(static_cast<std::size_t>(text.end));
      std::int32_t count = 0;
      utf8_StringToLongArray(text.data, 0, text.end, mask().keys.data(),
                             mask().values.data(), mask().count(),
                             array->data(), &count);
      return count;
    };
    const auto answer = [=](Span text) {
      const auto count = static_cast<std::size_t>(convert(text));
      return Longs(array->begin(),
                   array->begin() + static_cast<std::ptrdiff_t>(count));
    };
    add_scan("utf8_StringToLongArray/" + std::string(name), source, convert,
             answer,
             [](std::string_view bytes) { return characters(folded(bytes)); });
  }
}

}  // namespace

void add_mask_cases() {
  add_lookup_cases();
  add_sort_cases();
  add_rewrite_cases("ascii", english());
  add_rewrite_cases("two_bytes", greek());
  add_rewrite_cases("three_bytes", chinese());
  add_array_cases();
}

}  // namespace quill::bench
