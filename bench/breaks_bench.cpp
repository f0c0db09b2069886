// Break lists, and widening a selection to its word.
#include <algorithm>
#include <memory>

#include "bench/support/bench.h"

namespace quill::bench {
namespace {

using List = decltype(&utf8_ComputeBreaks);

// The source Block is made by the first round, which checks the answer.
struct Lister {
  List function;
  std::int32_t step;
  std::shared_ptr<Held> source = std::make_shared<Held>();

  QuillBlock operator()(Span text) const {
    if (source->block == nullptr) {
      source->assign({text.data, static_cast<std::size_t>(text.end)});
    }
    QuillBlock list = nullptr;
    std::int32_t longs = 0;
    function(source->block, 0, text.end, step, &list, &longs, 0, go_on);
    return list;
  }
};

bool begins_character(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

// A break after every `chunk` characters.
Longs chunk_breaks(std::string_view text, int chunk) {
  Longs breaks;
  int seen = 0;
  for (std::size_t i = 1; i <= text.size(); ++i) {
    if (i < text.size() && !begins_character(text[i])) continue;
    if (++seen % chunk == 0) {
      breaks.insert(breaks.end(), 2, static_cast<std::int32_t>(i));
    }
  }
  return breaks;
}

// A break after the last space of each line that grows to `width` bytes.
Longs line_breaks(std::string_view text, std::size_t width) {
  Longs breaks;
  for (std::size_t line = 0; line < text.size();) {
    std::size_t limit = line + width;
    std::size_t at = line;
    std::size_t cut = 0;
    while (at < limit && at < text.size()) {
      const char byte = text[at];
      do {
        ++at;
      } while (at < text.size() && !begins_character(text[at]));
      if (byte == '\n' || byte == '\r') limit = at + width;
      if (byte == ' ') cut = at;
    }
    if (at == text.size()) break;
    line = cut != 0 ? cut : at;
    breaks.insert(breaks.end(), 2, static_cast<std::int32_t>(line));
  }
  return breaks;
}

template <class Expected>
void add_list(const std::string& name, const Source& source, List function,
              std::int32_t step, Expected expected) {
  for (const std::size_t size : {std::size_t{1000}, kLong}) {
    const Lister lister = {function, step};
    add_scan(
        name, source,
        [=](Span text) {
          const QuillBlock list = lister(text);
          DisposeBlock(list);
          return list;
        },
        [=](Span text) {
          Held list;
          list.block = lister(text);
          return list.longs();
        },
        expected, {size});
  }
}

// Both directions run over bytes that are no spaces.
void add_widening(const std::string& name, const Source& source) {
  const auto widen = [](Span text) {
    const std::int32_t spaces[] = {' ', '\n'};
    std::int32_t start = text.end / 2;
    std::int32_t end = text.end / 2;
    unsigned char found = 0;
    utf8_FindBreaks(text.data, 0, text.end, spaces, 2, 0, spaces, 2, 0, &start,
                    &end, &found, 0, go_on);
    return std::pair{start, end};
  };
  add_scan("utf8_FindBreaks/" + name, source, widen,
           [](std::string_view bytes) {
             const std::size_t middle = bytes.size() / 2;
             const std::size_t before = bytes.find_last_of(" \n", middle - 1);
             const std::size_t after = bytes.find_first_of(" \n", middle);
             return std::pair{
                 static_cast<std::int32_t>(before + 1),
                 static_cast<std::int32_t>(std::min(after, bytes.size()))};
           });
}

}  // namespace

void add_break_cases() {
  for (const int chunk : {1, 80}) {
    const auto expected = [=](std::string_view bytes) {
      return chunk_breaks(bytes, chunk);
    };
    const std::string every =
        "utf8_ComputeBreaks/every_" + std::to_string(chunk);
    add_list(every + "_ascii", english(), utf8_ComputeBreaks, chunk, expected);
    add_list(every + "_cjk", chinese(), utf8_ComputeBreaks, chunk, expected);
  }
  const auto lines = [](std::string_view bytes) {
    return line_breaks(bytes, 72);
  };
  add_list("utf8_ComputeSpaceBreaks/ascii", english(), utf8_ComputeSpaceBreaks,
           72, lines);
  add_list("utf8_ComputeSpaceBreaks/two_bytes", greek(),
           utf8_ComputeSpaceBreaks, 72, lines);
  add_list("utf8_ComputeSpaceBreaks/no_space", chinese(),
           utf8_ComputeSpaceBreaks, 72, lines);
  add_widening("word", english());
  add_widening("whole_text", all('a'));
}

}  // namespace quill::bench
