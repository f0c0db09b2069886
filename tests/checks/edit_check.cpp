#include "tests/checks/calls.h"
#include "tests/support/guarded_text.h"

namespace quill::test {

namespace {

// Entries with all of their fields right, for the most part.
std::vector<QuillReplaceEntry> draw_entries(Input& in, const Longs& list,
                                            const std::string& string) {
  std::vector<QuillReplaceEntry> entries;
  for (std::size_t i = 0; i + 1 < list.size(); i += 2) {
    const std::int64_t selected = std::int64_t{list[i + 1]} - list[i];
    const std::int32_t length = in.between(0, length_of(string));
    std::int32_t kind = length < selected ? 1 : length == selected ? 2 : 3;
    if (in.one_in(4)) kind = 0;
    if (in.one_in(64)) kind = in.between(-1, 4);
    entries.push_back(
        {list[i], list[i + 1], nullptr, in.one_in(64) ? -1 : length, kind});
  }
  return entries;
}

}  // namespace

Outcome EditCall::run(Side side, QuillYield) const {
  HeldBlock block(missing == kText ? nullptr : block_of(text));
  const HeldBlock selections(missing == kList ? nullptr : block_of(list));
  for (const QuillBlock each : {block.block, selections.block}) {
    if (is_locked && each != nullptr) LockBlock(each);
  }
  const QuillBlock before = block.block;
  const GuardedText first(string);
  const GuardedText second(trailing);
  const char* const at = missing == kString ? nullptr : first.data();
  const std::int32_t length = missing == kLength ? -1 : length_of(string);
  const unsigned char* const flags_at =
      missing == kFlags || flags.empty() ? nullptr : flags.data();
  std::vector<QuillReplaceEntry> table = entries;
  std::vector<QuillReplaceEntry*> pointers;
  Outcome o;
  switch (operation) {
    case kDelete:
      o.result = QUILL_PICK(side, DelSel)(&block.block, selections.block);
      break;
    case kWrap:
      o.result = QUILL_PICK(side, InsertDualStr)(
          &block.block, selections.block, second.data(), length_of(trailing),
          at, length);
      break;
    case kInsert:
      o.result = QUILL_PICK(side, InsertStr)(&block.block, selections.block, at,
                                             length, flags_at);
      break;
    case kOverlay:
      o.result = QUILL_PICK(side, InsertMaskedStr)(
          &block.block, selections.block,
          missing == kString ? nullptr : characters.data(),
          missing == kLength ? -1 : length_of(characters), flags_at);
      break;
    case kMultiple:
      for (QuillReplaceEntry& entry : table) {
        entry.replacement = at;
        pointers.push_back(&entry);
      }
      if (missing == kList && !pointers.empty()) pointers.back() = nullptr;
      o.result = QUILL_PICK(side, InsertMultiple)(
          &block.block, missing == kFlags ? nullptr : pointers.data(),
          missing == kLength ? -1 : length_of(pointers));
      break;
  }
  o.text = state_of(block.block);
  o.list = state_of(selections.block);
  o.outs = {block.block == before ? 1 : 0};
  for (const QuillReplaceEntry& entry : table) {
    o.outs.insert(o.outs.end(), {entry.start, entry.end});
  }
  return o;
}

std::string EditCall::show() const {
  Longs table;
  for (const QuillReplaceEntry& entry : entries) {
    table.insert(table.end(), {entry.replacement_length, entry.kind});
  }
  return show_fields("operation", operation, "text", text, "list", list,
                     "string", string, "trailing", trailing, "characters",
                     characters, "flags", flags, "entries", table, "missing",
                     missing);
}

std::string check_edit(Input& in) {
  EditCall call;
  call.operation = static_cast<EditCall::Operation>(in.between(0, 4));
  call.text = in.any_text(in.pick({4, 40, 100}));
  // Runs of every length that moves differently.
  for (int runs = in.one_in(4) ? 20 : 0; runs > 0; --runs) {
    call.text += in.long_text(in.between(0, in.pick({30, 150, 600})));
  }
  const bool is_nearly_ascii = in.one_in(3);
  if (is_nearly_ascii) {
    call.text = in.letters(in.between(1, 100), 26);
    for (int left = in.between(0, 4); left > 0; --left) {
      const int at = in.between(0, length_of(call.text) - 1);
      call.text[static_cast<std::size_t>(at)] = in.piece()[0];
    }
  }
  call.list = in.selections(call.text.size(), in.pick({4, 12, 60}));
  call.string = in.text(in.pick({3, 8, 80}));
  call.trailing = in.text(in.pick({3, 80}));
  call.characters = in.characters(in.pick({3, 80}));
  if (is_nearly_ascii) {
    call.string = in.letters(in.between(0, 40), 26);
    call.characters.assign(call.string.begin(), call.string.end());
  }
  std::int32_t count = 0;
  naive::utf8_CountCharacters(call.string.data(), 0, length_of(call.string),
                              &count);
  if (call.operation == EditCall::kOverlay) count = length_of(call.characters);
  if (call.operation == EditCall::kOverlay || in.flag()) {
    call.flags = in.flags(static_cast<std::size_t>(count));
  }
  if (call.operation == EditCall::kMultiple) {
    call.entries = draw_entries(in, call.list, call.string);
  }
  if (in.one_in(16)) {
    call.missing = static_cast<EditCall::Missing>(in.between(1, 5));
  }
  return first_difference(call);
}

}  // namespace quill::test
