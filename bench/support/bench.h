// How a case is registered: what it works on is made outside the timing, and
// its answer is checked once before it.
//
// A case is named Export/what_it_stresses/size. The texts are made only when
// the case is run.
#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/support/texts.h"
#include "quillcore.h"

namespace quill::bench {

inline std::string size_name(std::size_t bytes) {
  if (bytes >= (1u << 20)) return std::to_string(bytes >> 20) + "_MiB";
  return std::to_string(bytes) + "_B";
}

// A Block for the length of a scope.
class Held {
 public:
  Held() = default;
  explicit Held(std::string_view bytes) { assign(bytes); }
  explicit Held(const Longs& longs)
      : Held(std::string_view(reinterpret_cast<const char*>(longs.data()),
                              longs.size() * 4)) {}
  ~Held() { drop(); }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;

  void assign(std::string_view bytes) {
    drop();
    block = NewBlock(static_cast<std::int32_t>(bytes.size()));
    if (!bytes.empty()) std::memcpy(*block, bytes.data(), bytes.size());
  }
  void drop() {
    DisposeBlock(block);
    block = nullptr;
  }
  std::string_view bytes() const {
    if (block == nullptr) return {};
    return {*block, static_cast<std::size_t>(GetBlockSize(block))};
  }
  Longs longs() const {
    Longs longs(bytes().size() / 4);
    if (!longs.empty()) std::memcpy(longs.data(), *block, longs.size() * 4);
    return longs;
  }

  QuillBlock block = nullptr;
};

// Registers `work`, which needs nothing and is right when `is_right` says so.
inline void add(const std::string& name, std::int64_t items,
                const std::function<bool()>& is_right,
                const std::function<void()>& work) {
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
    if (!is_right()) return state.SkipWithError("wrong answer");
    for (auto _ : state) {
      work();
      benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * items);
  })->UseRealTime();
}

using Source = std::function<const std::string&(std::size_t)>;

inline Source english() {
  return [](std::size_t size) -> const std::string& {
    return text(Language::kEnglish, size);
  };
}
inline Source greek() {
  return [](std::size_t size) -> const std::string& {
    return text(Language::kGreek, size);
  };
}
inline Source chinese() {
  return [](std::size_t size) -> const std::string& {
    return text(Language::kChinese, size);
  };
}
inline Source all(char byte) {
  return [byte](std::size_t size) -> const std::string& {
    return repeated(byte, size);
  };
}

// A text as exports take it.
struct Span {
  const char* data;
  std::int32_t end;
};

// All places of a byte string, as FindStrAll lists them.
inline QuillBlock find_bytes(Span text, std::string_view needle) {
  QuillBlock list = nullptr;
  std::int32_t longs = 0;
  std::int32_t stop = 0;
  FindStrAll(text.data, 0, text.end, needle.data(),
             static_cast<std::int32_t>(needle.size()), 0, 0, 0, 0, &list,
             &longs, &stop, 0, go_on);
  return list;
}

// Registers `work` on a short text and on a long one (or on the sizes given).
// It is right when `answer` of the same text gives what `expected` does.
// Work and Answer take a Span, Expected takes a string_view.
template <class Work, class Answer, class Expected>
void add_scan(const std::string& name, const Source& source, Work work,
              Answer answer, Expected expected,
              const std::vector<std::size_t>& sizes = {kShort, kLong}) {
  for (const std::size_t size : sizes) {
    const auto run = [=](benchmark::State& state) {
      const std::string& bytes = source(size);
      const Span span = {bytes.data(), static_cast<std::int32_t>(bytes.size())};
      if (answer(span) != expected(std::string_view(bytes))) {
        return state.SkipWithError("wrong answer");
      }
      for (auto _ : state) benchmark::DoNotOptimize(work(span));
      state.SetBytesProcessed(state.iterations() *
                              static_cast<std::int64_t>(bytes.size()));
    };
    benchmark::RegisterBenchmark((name + "/" + size_name(size)).c_str(), run)
        ->UseRealTime();
  }
}

// As above, for work whose result is the answer.
template <class Work, class Expected>
void add_scan(const std::string& name, const Source& source, Work work,
              Expected expected,
              const std::vector<std::size_t>& sizes = {kShort, kLong}) {
  add_scan(name, source, work, work, expected, sizes);
}

// Registers an edit of a Block: each round gets a fresh copy of the text and
// of the list that `select` makes, outside the timing. `edit` takes both.
struct Edit {
  std::function<Longs(std::string_view)> select;
  std::function<void(Held& text, Held& list)> edit;
  std::function<std::string(std::string_view, const Longs&)> expected;
};

inline void add_edit(const std::string& name, const Source& source,
                     const Edit& edit,
                     const std::vector<std::size_t>& sizes = {kShort, kLong}) {
  for (const std::size_t size : sizes) {
    const auto run = [=](benchmark::State& state) {
      const std::string& bytes = source(size);
      const Longs selections = edit.select(bytes);
      {
        Held text(bytes);
        Held list(selections);
        edit.edit(text, list);
        if (text.bytes() != edit.expected(bytes, selections)) {
          return state.SkipWithError("wrong answer");
        }
      }
      // A short edit is timed in batches: one reading of the clock costs as
      // much as the edit itself. The report divides by `batch`.
      const std::size_t batch = size < 10'000 ? 256 : 1;
      std::vector<Held> texts(batch);
      std::vector<Held> lists(batch);
      const std::string_view list_bytes(
          reinterpret_cast<const char*>(selections.data()),
          selections.size() * 4);
      for (auto _ : state) {
        for (Held& text : texts) text.assign(bytes);
        for (Held& list : lists) list.assign(list_bytes);
        const auto start = std::chrono::steady_clock::now();
        for (std::size_t i = 0; i < batch; ++i) edit.edit(texts[i], lists[i]);
        const auto end = std::chrono::steady_clock::now();
        state.SetIterationTime(
            std::chrono::duration<double>(end - start).count());
      }
      const auto edits = state.iterations() * static_cast<std::int64_t>(batch);
      state.SetBytesProcessed(edits * static_cast<std::int64_t>(bytes.size()));
      state.SetItemsProcessed(edits *
                              static_cast<std::int64_t>(selections.size() / 2));
      state.counters["batch"] = static_cast<double>(batch);
    };
    benchmark::RegisterBenchmark((name + "/" + size_name(size)).c_str(), run)
        ->UseManualTime();
  }
}

// Every family registers its cases.
void add_block_cases();
void add_character_cases();
void add_mask_cases();
void add_byte_search_cases();
void add_string_search_cases();
void add_break_cases();
void add_pattern_cases();
void add_edit_cases();
void add_word_table_cases();
void add_selection_cases();
void add_growth_cases();
void add_peer_cases();

}  // namespace quill::bench
