// Byte searches: the next byte, the next string, all of them, and swapping.
#include "bench/support/bench.h"

namespace quill::bench {
namespace {

void add_find_byte(const std::string& name, const Source& source, char byte) {
  add_scan(
      "FindByte/" + name, source,
      [=](Span text) {
        return FindByte(const_cast<char*>(text.data), 0, text.end, byte, 0,
                        go_on);
      },
      [=](std::string_view bytes) {
        const std::size_t at = bytes.find(byte);
        return at == std::string_view::npos ? -1 : static_cast<int>(at);
      });
}

std::int32_t find_first(Span text, std::string_view needle) {
  std::int32_t start = 0;
  std::int32_t end = 0;
  const bool found = FindStr(text.data, 0, text.end, needle.data(),
                             static_cast<std::int32_t>(needle.size()), 0, 0, 0,
                             0, &start, &end, 0, go_on) == 1;
  return found ? start : -1;
}

struct Case {
  const char* name;
  Source source;
  std::string needle;
};

void add_find(const Case& search) {
  const std::string needle = search.needle;
  add_scan(
      "FindStrAll/" + std::string(search.name), search.source,
      [=](Span text) {
        const QuillBlock list = find_bytes(text, needle);
        DisposeBlock(list);
        return list;
      },
      [=](Span text) {
        Held list;
        list.block = find_bytes(text, needle);
        return list.longs();
      },
      [=](std::string_view bytes) { return matches(bytes, needle); });
  add_scan(
      "FindStr/" + std::string(search.name), search.source,
      [=](Span text) { return find_first(text, needle); },
      [=](std::string_view bytes) {
        const std::size_t at = bytes.find(needle);
        return at == std::string_view::npos ? -1 : static_cast<int>(at);
      });
}

// Each round swaps there and back.
void add_swap(const std::string& name, const Source& source,
              const std::string& one, const std::string& other) {
  const auto swap = [](Span text, const std::string& from,
                       const std::string& to) {
    BytePatternSwap(const_cast<char*>(text.data), 0, text.end, from.data(),
                    to.data(), static_cast<std::int32_t>(from.size()), 0,
                    go_on);
  };
  add_scan(
      "BytePatternSwap/" + name, source,
      [=](Span text) {
        swap(text, one, other);
        swap(text, other, one);
        return 0;
      },
      [=](Span text) {
        const std::string before(text.data, static_cast<std::size_t>(text.end));
        const std::string wanted = spliced(before, matches(before, one), other);
        swap(text, one, other);
        const bool right = wanted == std::string_view(text.data, before.size());
        swap(text, other, one);
        return right && before == std::string_view(text.data, before.size());
      },
      [](std::string_view) { return true; });
}

}  // namespace

void add_byte_search_cases() {
  add_find_byte("absent", english(), '#');
  add_find_byte("near", english(), 'h');
  const Case cases[] = {
      {"rare_first_byte", english(), "Window"},
      {"common_first_byte", english(), "together"},
      {"dense", english(), "e"},
      {"absent", english(), "zebra"},
      {"long", english(),
       " the house of the captain and the garden of another morning "},
      {"cjk", chinese(), "\xE4\xB8\xAD\xE5\x9B\xBD"},
      {"match_everywhere", all('a'), "aa"},
      {"periodic", all('a'), std::string(60, 'a') + "b" + std::string(3, 'a')},
  };
  for (const Case& search : cases) add_find(search);
  add_swap("rare", english(), "Window", "#indow");
  add_swap("dense", english(), "e", "#");
  add_swap("absent", english(), "zebra", "ZEBRA");
}

}  // namespace quill::bench
