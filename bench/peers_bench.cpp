// What a user might take instead, on the same texts: the C library, the
// standard library and, where they are installed, PCRE2 (compiled ahead) and
// RE2. A case peer/NAME/... stands beside the case of the same work.
#include <algorithm>
#include <memory>

#include "bench/support/bench.h"

#ifdef QUILL_BENCH_PCRE2
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#endif
#ifdef QUILL_BENCH_RE2
#include <re2/re2.h>
#endif

namespace quill::bench {
namespace {

std::string_view view(Span text) {
  return {text.data, static_cast<std::size_t>(text.end)};
}

std::int32_t count_of(const Longs& list) {
  return static_cast<std::int32_t>(list.size() / 2);
}

void add_c_library() {
  add_scan(
      "peer/memchr/absent", english(),
      [](Span text) {
        return std::memchr(text.data, '#', view(text).size()) == nullptr;
      },
      [](std::string_view) { return true; });
  for (const char* needle : {"Window", "zebra", "e"}) {
    const std::string_view sought = needle;
    add_scan(
        "peer/memmem/count_" + std::string(needle), english(),
        [=](Span text) {
          std::int32_t count = 0;
          const char* end = text.data + text.end;
          for (const char* at = text.data; at != nullptr; ++count) {
            at = static_cast<const char*>(
                memmem(at, static_cast<std::size_t>(end - at), sought.data(),
                       sought.size()));
            if (at == nullptr) break;
            at += sought.size();
          }
          return count;
        },
        [=](std::string_view bytes) {
          return count_of(matches(bytes, sought));
        });
  }
}

void add_standard_library() {
  add_edit("peer/std_string/replace_rare", english(),
           {[](std::string_view bytes) { return matches(bytes, "Window"); },
            [](Held& text, Held& list) {
              text.assign(spliced(text.bytes(), list.longs(), "Door"));
            },
            [](std::string_view bytes, const Longs& selections) {
              return spliced(bytes, selections, "Door");
            }});
  const auto sorted = [] {
    const std::string& bytes = text(Language::kEnglish, kLong);
    Longs longs = lines(bytes);
    longs.resize(1'000'000);
    std::vector<std::string_view> views;
    for (std::size_t i = 0; i < longs.size(); i += 2) {
      views.push_back(std::string_view(bytes).substr(
          static_cast<std::size_t>(longs[i]),
          static_cast<std::size_t>(longs[i + 1] - longs[i])));
    }
    std::stable_sort(views.begin(), views.end());
    return views;
  };
  add(
      "peer/std_stable_sort/lines/500000", 500'000,
      [=] {
        const auto views = sorted();
        return std::is_sorted(views.begin(), views.end());
      },
      [=] { benchmark::DoNotOptimize(sorted().data()); });
}

#ifdef QUILL_BENCH_PCRE2
class Pcre2 {
 public:
  explicit Pcre2(const std::string& expression, std::uint32_t options) {
    int error = 0;
    PCRE2_SIZE offset = 0;
    code_ = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(expression.data()),
                          expression.size(), options | PCRE2_UTF, &error,
                          &offset, nullptr);
    pcre2_jit_compile(code_, PCRE2_JIT_COMPLETE);
    match_ = pcre2_match_data_create_from_pattern(code_, nullptr);
  }
  ~Pcre2() {
    pcre2_match_data_free(match_);
    pcre2_code_free(code_);
  }
  Pcre2(const Pcre2&) = delete;
  Pcre2& operator=(const Pcre2&) = delete;

  std::int32_t count(Span text) const {
    std::int32_t count = 0;
    PCRE2_SIZE at = 0;
    while (pcre2_match(code_, reinterpret_cast<PCRE2_SPTR>(text.data),
                       view(text).size(), at, PCRE2_NO_UTF_CHECK, match_,
                       nullptr) > 0) {
      at = pcre2_get_ovector_pointer(match_)[1];
      ++count;
    }
    return count;
  }

 private:
  pcre2_code* code_;
  pcre2_match_data* match_;
};

void add_pcre2(const std::string& name, const Source& source,
               const std::string& expression, std::uint32_t options,
               const std::function<std::int32_t(std::string_view)>& expected) {
  const auto compiled = std::make_shared<Pcre2>(expression, options);
  add_scan(
      "peer/pcre2/count_" + name, source,
      [=](Span text) { return compiled->count(text); }, expected);
}
#endif

std::int32_t count_words(std::string_view text) {
  std::int32_t count = 0;
  bool inside = false;
  for (const char byte : text) {
    const auto lower = static_cast<unsigned char>(byte | 0x20);
    const bool letter = lower >= 'a' && lower <= 'z';
    if (letter && !inside) ++count;
    inside = letter;
  }
  return count;
}

std::int32_t count_folded(std::string_view text, const std::string& word) {
  return count_of(matches(folded(text), folded(word)));
}

#ifdef QUILL_BENCH_RE2
void add_re2(const std::string& name, const std::string& expression,
             const std::function<std::int32_t(std::string_view)>& expected) {
  const auto compiled = std::make_shared<re2::RE2>("(" + expression + ")");
  add_scan(
      "peer/re2/count_" + name, english(),
      [=](Span text) {
        re2::StringPiece rest(text.data, static_cast<std::size_t>(text.end));
        std::int32_t count = 0;
        while (re2::RE2::FindAndConsume(&rest, *compiled)) ++count;
        return count;
      },
      expected);
}
#endif

}  // namespace

void add_peer_cases() {
  add_c_library();
  add_standard_library();
#ifdef QUILL_BENCH_PCRE2
  add_pcre2(
      "fold_rare", english(), "window", PCRE2_CASELESS,
      [](std::string_view bytes) { return count_folded(bytes, "window"); });
  add_pcre2("fold_dense", english(), "e", PCRE2_CASELESS,
            [](std::string_view bytes) { return count_folded(bytes, "e"); });
  add_pcre2(
      "fold_words", english(), "\\bthe\\b", PCRE2_CASELESS,
      [](std::string_view bytes) {
        return count_of(whole_words(bytes, matches(folded(bytes), "the")));
      });
  add_pcre2("words", english(), "[A-Za-z]+", 0, count_words);
#endif
#ifdef QUILL_BENCH_RE2
  add_re2("fold_rare", "(?i)window",
          [](std::string_view bytes) { return count_folded(bytes, "window"); });
  add_re2("words", "[A-Za-z]+", count_words);
#endif
}

}  // namespace quill::bench
