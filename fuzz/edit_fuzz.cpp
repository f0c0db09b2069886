// The edits at selections against their model: any text, any list, any string,
// template, flags and table.
#include <algorithm>
#include <iostream>

#include "fuzz/support/fuzz_input.h"
#include "tests/models/edit_model.h"
#include "tests/support/blocks.h"

namespace {

using quill::fuzz::FuzzInput;
using namespace quill::test;

template <class T>
std::int32_t size_of(const T& container) {
  return static_cast<std::int32_t>(container.size());
}

// Ascending for the most part; whatever comes, now and then.
Longs list_in(FuzzInput& input, const std::string& text) {
  Longs list(static_cast<std::size_t>(input.between(0, 12)));
  for (std::int32_t& offset : list) offset = input.offset(text.size());
  if (input.between(0, 7) != 7) std::sort(list.begin(), list.end());
  return list;
}

struct Outcome {
  bool result;
  std::string text;
  Longs list;
  bool operator==(const Outcome&) const = default;
};

void require(const Outcome& got, const Outcome& want, const char* what,
             const Outcome& before, const std::string& string) {
  if (got == want) return;
  std::cerr << what << " of " << string.size() << " bytes\n";
  for (const Outcome* each : {&before, &want, &got}) {
    std::cerr << each->result << " list";
    for (const std::int32_t offset : each->list) std::cerr << ' ' << offset;
    std::cerr << " text" << std::hex;
    for (const char byte : each->text) {
      std::cerr << ' ' << static_cast<int>(static_cast<unsigned char>(byte));
    }
    std::cerr << std::dec << '\n';
  }
  __builtin_trap();
}

void check_edit(FuzzInput& input) {
  const std::string text = input.text(40);
  const Longs list = list_in(input, text);
  const std::string string = input.text(8);
  const std::string other = input.text(80);
  const Longs characters = input.characters(80);
  const Flags flags = input.flags(std::max<std::size_t>(
      characters.size(),
      static_cast<std::size_t>(model_count_characters(string))));
  const int operation = input.between(0, 5);

  const Outcome before{false, text, list};
  Outcome want = before;
  HeldBlock block{std::string_view(text)};
  HeldBlock selections{list};
  std::int32_t result = 0;
  const Flags* const flags_or_null = operation == 3 ? &flags : nullptr;
  if (operation == 0) {
    want.result = model_delete(want.text, list);
    result = DelSel(&block.block, selections.block);
  } else if (operation == 1) {
    want.result = model_wrap(want.text, list, string, other);
    result = InsertDualStr(&block.block, selections.block, string.data(),
                           size_of(string), other.data(), size_of(other));
  } else if (operation == 5) {
    want.result = model_overlay(want.text, list, characters, flags);
    result = InsertMaskedStr(&block.block, selections.block, characters.data(),
                             size_of(characters), flags.data());
  } else {
    const std::string& with = operation == 4 ? other : string;
    want.result = model_insert(want.text, want.list, with, flags_or_null);
    result =
        InsertStr(&block.block, selections.block, with.data(), size_of(with),
                  flags_or_null == nullptr ? nullptr : flags.data());
  }
  require({result == 1, block.bytes(), selections.longs()}, want, "edit",
          before, string);
}

void check_table(FuzzInput& input) {
  const std::string text = input.text(40);
  const Longs list = list_in(input, text);
  const std::string strings = input.text(60);
  std::vector<QuillReplaceEntry> entries;
  for (std::size_t k = 0; k + 1 < list.size(); k += 2) {
    const std::int32_t length = input.between(0, size_of(strings));
    const std::int64_t selected = std::int64_t{list[k + 1]} - list[k];
    std::int32_t kind = length < selected ? 1 : length == selected ? 2 : 3;
    if (input.between(0, 3) == 3) kind = 0;
    if (input.between(0, 31) == 31) kind = input.any_long();
    entries.push_back({list[k], list[k + 1], strings.data(), length, kind});
  }
  const auto outcome_of = [](bool result, const std::string& edited,
                             const std::vector<QuillReplaceEntry>& table) {
    Outcome outcome{result, edited, {}};
    for (const QuillReplaceEntry& entry : table) {
      outcome.list.insert(outcome.list.end(), {entry.start, entry.end});
    }
    return outcome;
  };
  const Outcome before = outcome_of(false, text, entries);
  std::vector<QuillReplaceEntry> model = entries;
  std::string want = text;
  const bool want_result = model_insert_multiple(want, model);

  std::vector<QuillReplaceEntry*> pointers;
  pointers.reserve(entries.size());
  for (QuillReplaceEntry& entry : entries) pointers.push_back(&entry);
  HeldBlock block{std::string_view(text)};
  const std::int32_t result =
      InsertMultiple(&block.block, pointers.data(), size_of(pointers));
  require(outcome_of(result == 1, block.bytes(), entries),
          outcome_of(want_result, want, model), "table", before, strings);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  FuzzInput input(data, size);
  if (input.between(0, 3) == 3) {
    check_table(input);
  } else {
    check_edit(input);
  }
  return 0;
}
