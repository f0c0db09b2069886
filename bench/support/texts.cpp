#include "bench/support/texts.h"

#include <algorithm>
#include <map>
#include <random>
#include <utility>

namespace quill::bench {
namespace {

struct Vocabulary {
  std::vector<std::string_view> words;
  std::string_view space;
  std::string_view stop;
};

const Vocabulary& vocabulary(Language language) {
  static const Vocabulary english = {
      {"the",     "of",       "and",      "to",      "a",       "in",
       "that",    "is",       "was",      "he",      "for",     "it",
       "with",    "as",       "his",      "on",      "be",      "at",
       "by",      "had",      "not",      "are",     "but",     "from",
       "or",      "have",     "an",       "they",    "which",   "one",
       "you",     "were",     "her",      "all",     "there",   "would",
       "their",   "We",       "him",      "been",    "has",     "when",
       "who",     "will",     "more",     "no",      "If",      "out",
       "so",      "said",     "what",     "up",      "its",     "about",
       "into",    "than",     "them",     "can",     "only",    "other",
       "new",     "some",     "could",    "time",    "house",   "Window",
       "garden",  "morning",  "letter",   "captain", "brought", "nothing",
       "another", "together", "something"},
      " ",
      ".\n"};
  static const Vocabulary greek = {
      {"και", "το",   "να",    "του",   "η",      "της",     "με",    "που",
       "την", "από",  "για",   "είναι", "Ο",      "δεν",     "στο",   "θα",
       "τον", "οι",   "σε",    "τα",    "Μια",    "στην",    "αυτό",  "των",
       "ένα", "πρωί", "σπίτι", "κήπος", "γράμμα", "Θάλασσα", "δρόμος"},
      " ",
      ".\n"};
  static const Vocabulary chinese = {
      {"的", "一", "是", "不", "了", "在", "人", "有", "我", "他", "这",
       "中", "大", "来", "上", "国", "个", "到", "说", "们", "为", "子",
       "和", "你", "地", "出", "道", "也", "时", "年", "得", "就", "那",
       "要", "下", "以", "生", "会", "自", "着", "去", "之", "过", "家"},
      "",
      "。\n"};
  switch (language) {
    case Language::kGreek:
      return greek;
    case Language::kChinese:
      return chinese;
    default:
      return english;
  }
}

bool is_continuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Frequent words come first in a vocabulary, and come often.
std::string make_text(const Vocabulary& vocabulary, std::size_t size) {
  std::mt19937 random(20);
  std::string text;
  text.reserve(size + 64);
  const double words = static_cast<double>(vocabulary.words.size());
  int left = 0;
  while (text.size() < size) {
    const double draw = static_cast<double>(random()) / 4294967296.0;
    text += vocabulary.words[static_cast<std::size_t>(draw * draw * words)];
    if (left == 0) left = static_cast<int>(4 + random() % 20);
    text += --left == 0 ? vocabulary.stop : vocabulary.space;
  }
  while (size > 0 && is_continuation(text[size])) --size;
  text.resize(size);
  return text;
}

std::string encoded(char32_t code_point) {
  if (code_point < 0x80) return {static_cast<char>(code_point)};
  return {static_cast<char>(0xC0 | (code_point >> 6)),
          static_cast<char>(0x80 | (code_point & 0x3F))};
}

struct Fold {
  char32_t from, to;
};

std::vector<Fold> folds() {
  std::vector<Fold> folds;
  const auto add = [&](char32_t first, char32_t last, char32_t distance) {
    for (char32_t c = first; c <= last; ++c) folds.push_back({c, c + distance});
  };
  add('A', 'Z', 0x20);
  add(0xC0, 0xD6, 0x20);
  add(0xD8, 0xDE, 0x20);
  add(0x391, 0x3A1, 0x20);
  add(0x3A3, 0x3A9, 0x20);
  add(0x400, 0x40F, 0x50);
  add(0x410, 0x42F, 0x20);
  return folds;
}

bool is_word(char byte) {
  const auto lower = static_cast<unsigned char>(byte | 0x20);
  return (lower >= 'a' && lower <= 'z') || (byte >= '0' && byte <= '9') ||
         byte == '_' || static_cast<unsigned char>(byte) >= 0x80;
}

std::int32_t to_long(std::size_t value) {
  return static_cast<std::int32_t>(value);
}

}  // namespace

const std::string& text(Language language, std::size_t size) {
  static std::map<std::pair<Language, std::size_t>, std::string> made;
  std::string& text = made[{language, size}];
  if (text.empty()) text = make_text(vocabulary(language), size);
  return text;
}

const std::string& repeated(char byte, std::size_t size) {
  static std::map<std::pair<char, std::size_t>, std::string> made;
  std::string& text = made[{byte, size}];
  if (text.empty()) text.assign(size, byte);
  return text;
}

Longs characters(std::string_view utf8) {
  Longs characters;
  std::uint32_t value = 0;
  int shift = 0;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    value |= std::uint32_t{static_cast<unsigned char>(utf8[i])} << shift;
    shift += 8;
    if (i + 1 == utf8.size() || !is_continuation(utf8[i + 1])) {
      characters.push_back(static_cast<std::int32_t>(value));
      value = 0;
      shift = 0;
    }
  }
  return characters;
}

const FoldMask& fold_mask() {
  static const FoldMask mask = [] {
    FoldMask made;
    for (const Fold& fold : folds()) {
      made.keys.push_back(characters(encoded(fold.from))[0]);
      made.values.push_back(characters(encoded(fold.to))[0]);
    }
    utf8_SortMask(made.keys.data(), made.values.data(), 0, made.count());
    return made;
  }();
  return mask;
}

std::string folded(std::string_view text) {
  std::vector<char32_t> to(0x800);
  for (char32_t c = 0; c < to.size(); ++c) to[c] = c;
  for (const Fold& fold : folds()) to[fold.from] = fold.to;
  std::string result(text);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) {
      result[i] = static_cast<char>(to[lead]);
    } else if (lead >= 0xC0 && lead < 0xE0 && i + 1 < text.size()) {
      const auto next = static_cast<unsigned char>(text[i + 1]);
      const std::string bytes =
          encoded(to[(lead & 0x1Fu) << 6 | (next & 0x3Fu)]);
      if (bytes.size() == 2) result.replace(i, 2, bytes);
    }
  }
  return result;
}

const Longs& word_breaks() {
  static const Longs breaks = [] {
    Longs made = {' ', '\n', '.', ','};
    for (std::int32_t c = 0; c < 0x80; ++c) {
      const bool listed = std::find(made.begin(), made.end(), c) != made.end();
      if (!listed && !is_word(static_cast<char>(c))) made.push_back(c);
    }
    return made;
  }();
  return breaks;
}

Longs matches(std::string_view text, std::string_view needle) {
  Longs found;
  for (std::size_t at = text.find(needle); at != std::string_view::npos;
       at = text.find(needle, at + needle.size())) {
    found.push_back(to_long(at));
    found.push_back(to_long(at + needle.size()));
  }
  return found;
}

Longs whole_words(std::string_view text, const Longs& found) {
  Longs words;
  for (std::size_t i = 0; i < found.size(); i += 2) {
    const auto start = static_cast<std::size_t>(found[i]);
    const auto end = static_cast<std::size_t>(found[i + 1]);
    if (start > 0 && is_word(text[start - 1])) continue;
    if (end < text.size() && is_word(text[end])) continue;
    words.push_back(found[i]);
    words.push_back(found[i + 1]);
  }
  return words;
}

Longs spread(std::size_t size, std::size_t count, std::size_t length) {
  Longs selections;
  selections.reserve(count * 2);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t start = size / count * i;
    selections.push_back(to_long(start));
    selections.push_back(to_long(start + length));
  }
  return selections;
}

Longs lines(std::string_view text) {
  Longs selections;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    selections.push_back(to_long(start));
    selections.push_back(to_long(end));
    start = end + 1;
  }
  return selections;
}

std::string spliced(std::string_view text, const Longs& selections,
                    std::string_view with) {
  std::string result;
  result.reserve(text.size());
  std::size_t copied = 0;
  for (std::size_t i = 0; i < selections.size(); i += 2) {
    const auto start = static_cast<std::size_t>(selections[i]);
    result += text.substr(copied, start - copied);
    result += with;
    copied = static_cast<std::size_t>(selections[i + 1]);
  }
  return result += text.substr(copied);
}

bool go_on(std::int32_t, std::int32_t) { return true; }

}  // namespace quill::bench
