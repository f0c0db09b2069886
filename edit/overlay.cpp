#include "edit/overlay.h"

#include <algorithm>
#include <utility>

#include "blocks/active_block.h"
#include "blocks/block_lock.h"
#include "edit/delete.h"
#include "edit/short_moves.h"
#include "selection/selection_list.h"
#include "utf8/characters.h"

namespace quill {
namespace {

// Fills the output Block from a text, its selections and a template.
class Overlay {
 public:
  Overlay(const char* text, Offset text_length, const Template& form)
      : text_(text),
        text_length_(text_length),
        form_(form),
        room_a_template_(4 * std::ssize(form.characters)),
        output_(to_long(text_length)) {}

  // Null when the output could not be made or could not grow.
  QuillBlock run(std::span<const Selection> selections, Offset longest) {
    Offset copied = 0;
    for (const Selection& selection : selections) {
      if (!copy_run(copied, selection.start)) return nullptr;
      if (!make_room_for_template()) return nullptr;
      lay_over(selection);
      copied = selection.end;
    }
    if (!copy_run(copied, text_length_)) return nullptr;
    return output_.in_use() > longest ? nullptr : output_.finish();
  }

 private:
  static constexpr Offset kGrowth = 1'000'000;

  // False: the output Block is gone.
  bool copy_run(Offset start, Offset end) {
    const Offset length = end - start;
    if (length > output_.room() &&
        !output_.resize(output_.capacity() + length)) {
      return false;
    }
    if (!output_.alive()) return false;
    move_bytes(output_.write_position(), text_ + start, length);
    output_.advance(length);
    return true;
  }

  // A template of more than 250,000 characters may need more than one step.
  bool make_room_for_template() {
    if (output_.room() >= room_a_template_) return true;
    return output_.resize(output_.capacity() +
                          std::max(kGrowth, room_a_template_));
  }

  // Reads no more of the selection than the template has characters: what is
  // beyond them is dropped.
  void lay_over(const Selection& selection) {
    Offset position = selection.start;
    char* const begin = output_.write_position();
    char* out = begin;
    for (std::size_t i = 0; i < form_.characters.size(); ++i) {
      const Character own = read_next(as_bytes(text_), position, selection.end);
      position = own.next;
      const bool stays = own.found && form_.flags[i] != 1;
      out += unpack(stays ? own.packed : form_.characters[i], out);
    }
    output_.advance(out - begin);
  }

  const char* text_;
  Offset text_length_;
  const Template& form_;
  Offset room_a_template_;
  ActiveBlock output_;
};

// Gives the Block the contents of another.
bool copy_contents(QuillBlock from, QuillBlock to) {
  BlockLock target(to);
  const BlockLock source(from);
  if (!target.resize(source.size())) return false;
  std::memcpy(target.contents(), source.contents(),
              static_cast<std::size_t>(source.size()));
  return true;
}

}  // namespace

QuillBlock overlaid_text(QuillBlock text, QuillBlock selections,
                         const Template& form, Offset longest) {
  const BlockLock list_lock(selections);
  const BlockLock text_lock(text);
  if (!is_canonical(list_lock.longs(), text_lock.size())) return nullptr;
  Overlay overlay(text_lock.contents(), text_lock.size(), form);
  return overlay.run(selections_of(list_lock.longs()), longest);
}

bool overlay(QuillBlock* variable, QuillBlock selections, const Template& form,
             Handover handover, Offset longest) {
  if (form.characters.empty()) return delete_selections(*variable, selections);
  if (GetHandleSize(selections) < 4) return true;
  if (*variable == nullptr) {
    HUnlock(selections);
    return false;
  }
  const QuillBlock result = overlaid_text(*variable, selections, form, longest);
  if (result == nullptr) return false;
  if (handover == Handover::kNewBlock) {
    DisposeHandle(std::exchange(*variable, result));
    return true;
  }
  const bool copied = copy_contents(result, *variable);
  DisposeHandle(result);
  return copied;
}

}  // namespace quill

std::int32_t InsertMaskedStr(QuillBlock* text, QuillBlock selections,
                             const std::int32_t* characters,
                             std::int32_t character_count,
                             const unsigned char* position_flags) {
  using namespace quill;
  const bool is_usable =
      character_count == 0 || (character_count > 0 && characters != nullptr &&
                               position_flags != nullptr);
  // An empty list is fine with any template.
  if (!is_usable) return GetHandleSize(selections) < 4 ? 1 : 0;
  const Template form{{characters, static_cast<std::size_t>(character_count)},
                      position_flags};
  return overlay(text, selections, form, Handover::kNewBlock, kMaxLong) ? 1 : 0;
}
