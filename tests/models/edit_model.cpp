#include "tests/models/edit_model.h"

#include <cstddef>
#include <cstdint>

namespace quill::test {
namespace {

using Wide = std::int64_t;

std::size_t at(Wide index) { return static_cast<std::size_t>(index); }

int length_of(char lead) {
  const int byte = static_cast<unsigned char>(lead);
  if ((byte & 0xF0) == 0xF0) return 4;
  if ((byte & 0xE0) == 0xE0) return 3;
  if ((byte & 0xC0) == 0xC0) return 2;
  return 1;
}

bool continues(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

Longs decode(const std::string& bytes) {
  Longs characters;
  Wide i = 0;
  const Wide end = std::ssize(bytes);
  while (i < end) {
    while (i < end && continues(bytes[at(i)])) ++i;
    if (i == end) break;
    const int length = length_of(bytes[at(i)]);
    if (i + length > end) break;
    std::uint32_t packed = 0;
    for (int b = 0; b < length; ++b) {
      packed |= std::uint32_t{static_cast<unsigned char>(bytes[at(i + b)])}
                << (8 * b);
    }
    characters.push_back(static_cast<std::int32_t>(packed));
    i += length;
  }
  return characters;
}

void append_character(std::string& out, std::int32_t packed) {
  const auto bits = static_cast<std::uint32_t>(packed);
  out += static_cast<char>(bits & 0xFF);
  for (int b = 1; b < 4; ++b) {
    const auto byte = static_cast<char>((bits >> (8 * b)) & 0xFF);
    if (byte != 0) out += byte;
  }
}

bool canonical(const Longs& list, const std::string& text) {
  std::int32_t reached = 0;
  for (const std::int32_t offset : list) {
    if (offset < reached || offset > std::ssize(text)) return false;
    reached = offset;
  }
  return list.size() % 2 == 0;
}

// memmove within the text.
void move(std::string& text, Wide from, Wide to, Wide count) {
  const std::string moved = count > 0 ? text.substr(at(from), at(count)) : "";
  text.replace(at(to), moved.size(), moved);
}

void put(std::string& text, Wide where, const std::string& bytes) {
  text.replace(at(where), bytes.size(), bytes);
}

// A selection as the three passes see it.
struct Edit {
  Wide start;
  Wide end;
  std::string with;
  int kind;  // 0 stays, else the replacement is 1 shorter, 2 as long, 3 longer
  Wide length() const { return end - start; }
};

int kind_of(Wide length, Wide replacement) {
  return replacement < length ? 1 : replacement == length ? 2 : 3;
}

// The three passes; leaves the places of the second in `edits`.
void three_passes(std::string& text, std::vector<Edit>& edits) {
  const Wide size = std::ssize(text);
  for (const Edit& edit : edits) {
    if (edit.kind == 2) put(text, edit.start, edit.with);
  }
  Wide w = edits[0].start;
  for (std::size_t k = 0; k < edits.size(); ++k) {
    Edit& edit = edits[k];
    const Wide next = k + 1 < edits.size() ? edits[k + 1].start : size;
    const Edit old = edit;
    if (edit.kind != 1) {
      move(text, old.start, w, next - old.start);
      edit.start = w;
      edit.end = w + old.length();
      w += next - old.start;
    } else {
      put(text, w, edit.with);
      edit.start = w;
      edit.end = w + std::ssize(edit.with);
      w = edit.end;
      move(text, old.end, w, next - old.end);
      w += next - old.end;
    }
  }
  text.resize(at(w));
  const Wide compact = w;
  Wide grown = compact;
  for (const Edit& edit : edits) {
    if (edit.kind == 3) grown += std::ssize(edit.with) - edit.length();
  }
  text.resize(at(grown));
  const Wide last = edits.back().end;
  w = last + grown - compact;
  move(text, last, w, compact - last);
  for (std::size_t k = edits.size(); k-- > 0;) {
    const Edit& edit = edits[k];
    if (edit.kind == 3) {
      w -= std::ssize(edit.with);
      put(text, w, edit.with);
    } else {
      w -= edit.length();
      move(text, edit.start, w, edit.length());
    }
    if (k == 0) break;
    const Wide gap = edit.start - edits[k - 1].end;
    w -= gap;
    move(text, edits[k - 1].end, w, gap);
  }
}

}  // namespace

int model_count_characters(const std::string& string) {
  int count = 0;
  for (Wide i = 0; i < std::ssize(string); i += length_of(string[at(i)])) {
    ++count;
  }
  return count;
}

bool model_delete(std::string& text, const Longs& list) {
  if (text.empty() || list.empty()) return true;
  if (!canonical(list, text)) return false;
  for (std::size_t k = list.size(); k > 0; k -= 2) {
    text.erase(at(list[k - 2]), at(list[k - 1] - list[k - 2]));
  }
  return true;
}

bool model_wrap(std::string& text, const Longs& list,
                const std::string& leading, const std::string& trailing) {
  if (list.size() < 2 || !canonical(list, text)) return false;
  for (std::size_t k = list.size(); k > 0; k -= 2) {
    text.insert(at(list[k - 1]), trailing);
    text.insert(at(list[k - 2]), leading);
  }
  return true;
}

bool model_insert(std::string& text, Longs& list, const std::string& string,
                  const Flags* flags) {
  if (string.empty()) return model_delete(text, list);
  bool open = false;
  for (int i = 0; flags != nullptr && i < model_count_characters(string); ++i) {
    open = open || (*flags)[at(i)] == 0;
  }
  if (open) return model_overlay(text, list, decode(string), *flags);
  if (list.empty() || !canonical(list, text)) return false;

  std::vector<Edit> edits;
  for (std::size_t k = 0; k < list.size(); k += 2) {
    edits.push_back({list[k], list[k + 1], string,
                     kind_of(list[k + 1] - list[k], std::ssize(string))});
  }
  three_passes(text, edits);
  for (std::size_t k = 0; k < edits.size(); ++k) {
    list[2 * k] = static_cast<std::int32_t>(edits[k].start);
    list[2 * k + 1] = static_cast<std::int32_t>(edits[k].end);
  }
  return true;
}

bool model_overlay(std::string& text, const Longs& list,
                   const Longs& characters, const Flags& flags) {
  if (characters.empty()) return model_delete(text, list);
  if (list.empty()) return true;
  if (!canonical(list, text)) return false;
  std::string out;
  Wide done = 0;
  for (std::size_t k = 0; k < list.size(); k += 2) {
    out += text.substr(at(done), at(list[k] - done));
    const Longs own =
        decode(text.substr(at(list[k]), at(list[k + 1] - list[k])));
    for (std::size_t i = 0; i < characters.size(); ++i) {
      const bool stays = flags[i] != 1 && i < own.size();
      append_character(out, stays ? own[i] : characters[i]);
    }
    done = list[k + 1];
  }
  text = out + text.substr(at(done));
  return true;
}

bool model_insert_multiple(std::string& text,
                           std::vector<QuillReplaceEntry>& entries) {
  if (entries.empty()) return false;
  Longs list;
  std::vector<Edit> edits;
  for (const QuillReplaceEntry& entry : entries) {
    list.insert(list.end(), {entry.start, entry.end});
    const Wide length = Wide{entry.end} - entry.start;
    if (entry.kind != 0 &&
        (entry.replacement_length < 0 ||
         entry.kind != kind_of(length, entry.replacement_length) ||
         (entry.replacement == nullptr && entry.replacement_length > 0))) {
      return false;
    }
    std::string with;
    if (entry.kind != 0 && entry.replacement_length > 0) {
      with.assign(entry.replacement, at(entry.replacement_length));
    }
    edits.push_back({entry.start, entry.end, with, entry.kind});
  }
  if (!canonical(list, text)) return false;
  three_passes(text, edits);
  for (std::size_t k = 0; k < edits.size(); ++k) {
    entries[k].start = static_cast<std::int32_t>(edits[k].start);
    entries[k].end = static_cast<std::int32_t>(edits[k].end);
  }
  return true;
}

}  // namespace quill::test
