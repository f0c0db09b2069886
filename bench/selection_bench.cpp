// Selections as sets: copy, extract, sort, order, maps, inversion.
#include <algorithm>
#include <memory>
#include <random>

#include "bench/support/bench.h"

namespace quill::bench {
namespace {

Longs half(std::string_view text) {
  return spread(text.size(), std::max<std::size_t>(text.size() / 64, 1), 32);
}

std::string joined(std::string_view text, const Longs& selections,
                   std::string_view before, std::string_view after) {
  std::string result;
  for (std::size_t i = 0; i < selections.size(); i += 2) {
    result += before;
    result += text.substr(
        static_cast<std::size_t>(selections[i]),
        static_cast<std::size_t>(selections[i + 1] - selections[i]));
    result += after;
  }
  return result;
}

// Things that a case makes once for each text.
struct Prepared {
  Longs selections;
  Longs records;
  std::string room;
  Held list;

  void make(Span text) {
    if (!selections.empty()) return;
    const std::string_view bytes(text.data, static_cast<std::size_t>(text.end));
    selections = half(bytes);
    for (std::size_t i = 0; i < selections.size(); i += 2) {
      records.insert(records.end(), {selections[i], selections[i],
                                     selections[i], selections[i + 1]});
    }
    room.resize(bytes.size());
    list.assign({reinterpret_cast<const char*>(selections.data()),
                 selections.size() * 4});
  }
};

void add_copies(std::size_t size) {
  const auto kept = std::make_shared<Prepared>();
  const auto expected = [](std::string_view bytes) {
    return joined(bytes, half(bytes), "", "");
  };
  const auto copy = [=](auto function, auto list, std::size_t longs) {
    return [=](Span text) {
      kept->make(text);
      std::int32_t copied = 0;
      function(text.data, kept->room.data(), text.end, &copied,
               ((*kept).*list).data(),
               static_cast<std::int32_t>(((*kept).*list).size() / longs), 0,
               go_on);
      return std::string_view(kept->room.data(),
                              static_cast<std::size_t>(copied));
    };
  };
  add_scan("CopySelectionsTo/half", english(),
           copy(CopySelectionsTo, &Prepared::selections, 2), expected, {size});
  add_scan("CopySuperSelectionsTo/half", english(),
           copy(CopySuperSelectionsTo, &Prepared::records, 4), expected,
           {size});
  const auto extract = [=](Span text) {
    kept->make(text);
    QuillBlock result = nullptr;
    ExtractSelections(text.data, kept->list.block, "<", 1, ">\n", 2, &result, 0,
                      go_on);
    return result;
  };
  add_scan(
      "ExtractSelections/half", english(),
      [=](Span text) {
        const QuillBlock result = extract(text);
        DisposeBlock(result);
        return result;
      },
      [=](Span text) {
        Held result;
        result.block = extract(text);
        return std::string(result.bytes());
      },
      [](std::string_view bytes) {
        return joined(bytes, half(bytes), "<", ">\n");
      },
      {size});
}

std::string_view selected(std::string_view text, const std::int32_t* pair) {
  return text.substr(static_cast<std::size_t>(pair[0]),
                     static_cast<std::size_t>(pair[1] - pair[0]));
}

// Whether the texts ascend, by bytes: English sorts as its code points do.
bool ascend(std::string_view text, const Longs& longs, std::size_t width,
            bool fold) {
  const std::string copy = fold ? folded(text) : std::string(text);
  for (std::size_t i = width; i < longs.size(); i += width) {
    if (selected(copy, &longs[i]) < selected(copy, &longs[i - width])) {
      return false;
    }
  }
  return true;
}

// Sorts a copy of the list; the copy is part of the time.
void add_sorts(std::size_t line_count) {
  const std::string& text_of_lines = text(Language::kEnglish, kLong);
  const auto list = std::make_shared<Longs>();
  const auto records = std::make_shared<Longs>();
  const auto make = [=, &text_of_lines] {
    if (!list->empty()) return;
    *list = lines(text_of_lines);
    list->resize(std::min(list->size(), line_count * 2));
    for (std::size_t i = 0; i < list->size(); i += 2) {
      const std::int32_t start = (*list)[i];
      const std::int32_t end = (*list)[i + 1];
      records->insert(records->end(), {start, end, start, end});
    }
  };
  const auto add_sort = [&](const std::string& name, auto function,
                            const std::shared_ptr<Longs>& from,
                            std::size_t width, bool fold) {
    const auto sorted = [=, &text_of_lines] {
      make();
      Longs copy = *from;
      const FoldMask& mask = fold_mask();
      function(text_of_lines.data(), copy.data(),
               static_cast<std::uint32_t>(copy.size() * 4),
               fold ? const_cast<std::int32_t*>(mask.keys.data()) : nullptr,
               fold ? const_cast<std::int32_t*>(mask.values.data()) : nullptr,
               fold ? mask.count() : 0);
      return copy;
    };
    add(
        name + "/" + std::to_string(line_count),
        static_cast<std::int64_t>(line_count),
        [=, &text_of_lines] {
          const Longs result = sorted();
          return result.size() == line_count * width &&
                 ascend(text_of_lines, result, width, fold);
        },
        [=] { benchmark::DoNotOptimize(sorted().data()); });
  };
  add_sort("utf8_SortSelections/lines", utf8_SortSelections, list, 2, false);
  add_sort("utf8_SortSelections/fold_lines", utf8_SortSelections, list, 2,
           true);
  add_sort("utf8_SortKeySelections/lines", utf8_SortKeySelections, records, 4,
           false);
  const auto generic = [](const char* text, std::int32_t* longs,
                          std::uint32_t bytes, std::int32_t* keys,
                          std::int32_t* values, std::int32_t count) {
    qSortV(longs, bytes / 8, 8, CompareSelections, const_cast<char*>(text),
           keys, values, count);
  };
  add_sort("qSortV/lines", generic, list, 2, false);
}

void add_comparison() {
  static char words[] = "captain Captain";
  static const std::int32_t first[] = {0, 7};
  static const std::int32_t second[] = {8, 15};
  const auto compare = [] {
    const FoldMask& mask = fold_mask();
    return CompareSelections(
        first, second, words, const_cast<std::int32_t*>(mask.keys.data()),
        const_cast<std::int32_t*>(mask.values.data()), mask.count());
  };
  add(
      "CompareSelections/equal_under_mask", 1, [=] { return compare() == 0; },
      [=] { benchmark::DoNotOptimize(compare()); });
}

// A million selections of a 64 MiB text, or ten of a short one.
void add_sets(std::size_t count, std::int32_t size) {
  const std::string suffix = "/" + std::to_string(count);
  const auto items = static_cast<std::int64_t>(count);
  const Longs canonical = spread(static_cast<std::size_t>(size), count,
                                 static_cast<std::size_t>(size) / count / 2);
  Longs shuffled = canonical;
  std::mt19937 random(5);
  for (std::size_t i = count - 1; i > 0; --i) {
    const std::size_t other = random() % (i + 1);
    std::swap(shuffled[2 * i], shuffled[2 * other]);
    std::swap(shuffled[2 * i + 1], shuffled[2 * other + 1]);
  }
  // The list is made anew for each round; the copy is part of the time.
  const auto ordered = [=] {
    auto list = std::make_unique<Held>(shuffled);
    OrderSelections(&list->block, size);
    return list;
  };
  add(
      "OrderSelections/shuffled" + suffix, items,
      [=] { return ordered()->longs() == canonical; }, [=] { ordered(); });

  const auto inverted = [=] {
    auto list = std::make_unique<Held>(canonical);
    InvertSelections(&list->block, 0, size);
    return list;
  };
  add(
      "InvertSelections/canonical" + suffix, items,
      [=] {
        Longs expected(canonical.begin() + 1, canonical.end());
        if (expected.back() != size) expected.push_back(size);
        return inverted()->longs() == expected;
      },
      [=] { inverted(); });

  const auto list = std::make_shared<Held>(canonical);
  const auto map = std::make_shared<std::string>(
      static_cast<std::size_t>(size) / 8 + 1, '\0');
  const auto back = [=] {
    auto result = std::make_unique<Held>();
    std::int32_t longs = 0;
    MapToSelection(map->data(), size, &result->block, &longs);
    return result;
  };
  const auto right = [=] {
    SelectionToMap(map->data(), size, list->block);
    return back()->longs() == canonical;
  };
  add("SelectionToMap/canonical" + suffix, items, right,
      [=] { SelectionToMap(map->data(), size, list->block); });
  add("MapToSelection/canonical" + suffix, items, right, [=] { back(); });
}

}  // namespace

void add_selection_cases() {
  add_copies(1000);
  add_copies(kLong);
  add_comparison();
  add_sorts(1000);
  add_sorts(500'000);
  add_sets(10, 100);
  add_sets(1'000'000, static_cast<std::int32_t>(kLong));
}

}  // namespace quill::bench
