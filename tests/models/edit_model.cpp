#include <algorithm>
#include <optional>

#include "tests/models/naive.h"
#include "tests/support/blocks.h"

namespace quill::naive {
namespace {

using test::Longs;

// A selection and what takes its place; without anything it stays.
struct Edit {
  Long start;
  Long end;
  std::optional<std::string> with;
};
using Edits = std::vector<Edit>;

bool are_canonical(const Edits& edits, QuillBlock text) {
  Long reached = 0;
  for (const Edit& edit : edits) {
    if (edit.start < reached || edit.end < edit.start) return false;
    reached = edit.end;
  }
  return reached <= GetBlockSize(text);
}

// An edit at each of the list's selections, or nothing for a list that is not
// canonical. Both Blocks end unlocked.
std::optional<Edits> edits_at(QuillBlock text, QuillBlock selections,
                              const std::string& with) {
  UnlockBlock(text);
  UnlockBlock(selections);
  const Longs list = test::longs_of(selections);
  if (text == nullptr || list.size() % 2 != 0) return std::nullopt;
  Edits edits;
  for (std::size_t i = 0; i < list.size(); i += 2) {
    edits.push_back({list[i], list[i + 1], with});
  }
  if (!are_canonical(edits, text)) return std::nullopt;
  return edits;
}

std::string part_of(const std::string& text, Long start, Long end) {
  return text.substr(static_cast<std::size_t>(start),
                     static_cast<std::size_t>(end - start));
}

// Makes the edits. Each then has the place of its selection in the text as it
// would be if only those that shrink had been made.
void make(Edits& edits, QuillBlock block) {
  const std::string text = test::bytes_of(block);
  std::string edited;
  Long done = 0;
  Long shrunk = 0;
  for (Edit& edit : edits) {
    const std::string selected = part_of(text, edit.start, edit.end);
    const std::string& piece = edit.with ? *edit.with : selected;
    edited += part_of(text, done, edit.start) + piece;
    done = edit.end;
    const std::size_t kept = std::min(piece.size(), selected.size());
    edit.start -= shrunk;
    edit.end = edit.start + static_cast<Long>(kept);
    shrunk += static_cast<Long>(selected.size() - kept);
  }
  edited += text.substr(static_cast<std::size_t>(done));
  test::set_bytes(block, edited);
}

Longs decoded(const std::string& bytes) {
  Longs characters;
  const auto end = test::length_of(bytes);
  Character read = next_character(bytes.data(), 0, end);
  while (read.was_read) {
    characters.push_back(read.packed);
    read = next_character(bytes.data(), read.next, end);
  }
  return characters;
}

bool is_string(const char* bytes, Long length) {
  return length == 0 || (length > 0 && bytes != nullptr);
}

std::string string_of(const char* bytes, Long length) {
  return length == 0 ? ""
                     : std::string(bytes, static_cast<std::size_t>(length));
}

bool has_open_position(const std::string& string, const unsigned char* flags) {
  Long count = 0;
  utf8_CountCharacters(string.data(), 0, test::length_of(string), &count);
  return flags != nullptr &&
         std::any_of(flags, flags + count,
                     [](unsigned char flag) { return flag == 0; });
}

// What an entry is to become, or nothing where its fields contradict each
// other.
std::optional<Edit> edit_of(const QuillReplaceEntry& entry) {
  Edit edit = {entry.start, entry.end, std::nullopt};
  if (entry.kind == 0) return edit;
  const Long length = entry.replacement_length;
  if (!is_string(entry.replacement, length)) return std::nullopt;
  const std::int64_t selected = std::int64_t{entry.end} - entry.start;
  if (entry.kind != kind_of(length, selected)) return std::nullopt;
  edit.with = string_of(entry.replacement, length);
  return edit;
}

}  // namespace

Long DelSel(QuillBlock* text, QuillBlock selections) {
  if (GetBlockSize(*text) == 0 || GetBlockSize(selections) < 4) return 1;
  std::optional<Edits> edits = edits_at(*text, selections, "");
  if (!edits) return 0;
  make(*edits, *text);
  return 1;
}

Long InsertDualStr(QuillBlock* text, QuillBlock selections, const char* leading,
                   Long leading_length, const char* trailing,
                   Long trailing_length) {
  if (!is_string(leading, leading_length)) return 0;
  if (!is_string(trailing, trailing_length)) return 0;
  if (GetBlockSize(selections) < 8) return 0;
  const std::optional<Edits> places = edits_at(*text, selections, "");
  if (!places) return 0;
  Edits edits;
  for (const auto& [start, end, with] : *places) {
    edits.push_back({start, start, string_of(leading, leading_length)});
    edits.push_back({end, end, string_of(trailing, trailing_length)});
  }
  make(edits, *text);
  return 1;
}

Long InsertStr(QuillBlock* text, QuillBlock selections, const char* string,
               Long string_length, const unsigned char* position_flags) {
  if (!is_string(string, string_length)) return 0;
  const std::string with = string_of(string, string_length);
  if (with.empty()) return DelSel(text, selections);
  if (has_open_position(with, position_flags)) {
    const Longs form = decoded(with);
    return InsertMaskedStr(text, selections, form.data(), test::length_of(form),
                           position_flags);
  }
  if (GetBlockSize(selections) < 4) return 0;
  std::optional<Edits> edits = edits_at(*text, selections, with);
  if (!edits) return 0;
  make(*edits, *text);
  auto* place = reinterpret_cast<Long*>(*selections);
  for (const Edit& edit : *edits) {
    *place++ = edit.start;
    *place++ = edit.end;
  }
  return 1;
}

Long InsertMaskedStr(QuillBlock* text, QuillBlock selections,
                     const Long* characters, Long character_count,
                     const unsigned char* position_flags) {
  if (character_count == 0) return DelSel(text, selections);
  if (GetBlockSize(selections) < 4) return 1;
  if (character_count < 0 || characters == nullptr ||
      position_flags == nullptr) {
    return 0;
  }
  std::optional<Edits> edits = edits_at(*text, selections, "");
  if (!edits) return 0;
  const std::string before = test::bytes_of(*text);
  for (Edit& edit : *edits) {
    const Longs own = decoded(part_of(before, edit.start, edit.end));
    for (Long i = 0; i < character_count; ++i) {
      const bool stays = position_flags[i] != 1 && i < std::ssize(own);
      append_character(
          *edit.with, stays ? own[static_cast<std::size_t>(i)] : characters[i]);
    }
  }
  make(*edits, *text);
  const QuillBlock made = test::block_of(test::bytes_of(*text));
  DisposeBlock(*text);
  *text = made;
  return 1;
}

Long InsertMultiple(QuillBlock* text, QuillReplaceEntry** entries,
                    Long entry_count) {
  if (entry_count <= 0 || entries == nullptr || *text == nullptr) return 0;
  UnlockBlock(*text);
  Edits edits;
  for (Long i = 0; i < entry_count; ++i) {
    if (entries[i] == nullptr) return 0;
    const std::optional<Edit> edit = edit_of(*entries[i]);
    if (!edit) return 0;
    edits.push_back(*edit);
  }
  if (!are_canonical(edits, *text)) return 0;
  make(edits, *text);
  for (Long i = 0; i < entry_count; ++i) {
    entries[i]->start = edits[static_cast<std::size_t>(i)].start;
    entries[i]->end = edits[static_cast<std::size_t>(i)].end;
  }
  return 1;
}

}  // namespace quill::naive
