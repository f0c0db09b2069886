#include "edit/overlay.h"

#include "blocks/block_lock.h"
#include "edit/composer.h"
#include "edit/delete.h"
#include "edit/one_string.h"
#include "edit/splice.h"
#include "selection/selection_list.h"

namespace quill {
namespace {

// The edit that puts what the composer makes of each selection in its place.
//
// A selection's own bytes are read when its length is asked for, or, where all
// lengths are known, when it is put in place: nothing near it has moved by
// then.
class Overlaying {
 public:
  static constexpr bool kNotesPlaces = false;

  // `known_length` is that of every replacement, or 0 where they differ.
  Overlaying(QuillBlock text, std::span<const Selection> selections,
             Composer& composer, Offset known_length)
      : text_(text),
        selections_(selections),
        composer_(&composer),
        known_length_(known_length) {}

  Offset count() const { return std::ssize(selections_); }
  Offset start(Offset k) const { return at(k).start; }
  Offset end(Offset k) const { return at(k).end; }
  static bool is_kept(Offset) { return false; }
  Offset length(Offset k) const {
    return known_length_ != 0 ? known_length_ : compose(k);
  }
  void put(Offset k, Offset length, char* to, Room) const {
    if (known_length_ != 0) {
      composer_->put_bytes(*text_ + start(k), at(k).length(), to);
    } else {
      move_bytes(to, composer_->bytes(), length);
    }
  }

  Offset growth() const {
    Offset sum = 0;
    for (Offset k = 0; k < count(); ++k) sum += compose(k) - at(k).length();
    return sum;
  }

 private:
  Offset compose(Offset k) const {
    return composer_->compose(*text_, start(k), end(k));
  }
  const Selection& at(Offset k) const {
    return selections_[static_cast<std::size_t>(k)];
  }

  QuillBlock text_;  // its contents move when the splice makes room
  std::span<const Selection> selections_;
  Composer* composer_;
  Offset known_length_;
};

// Whether all selections give bytes; those that are all as long as the template
// take less to look at.
bool give_bytes(const Composer& composer, char* text,
                std::span<const Selection> selections, Offset length) {
  if (length == 0) {
    return visit_each(text, selections,
                      [&](const char* own, Offset own_length) {
                        return composer.gives_bytes(own, own_length);
                      });
  }
  return visit_each(text, selections, [&, length](const char* own, Offset) {
    return composer.gives_bytes(own, length);
  });
}

bool overlay_in_place(QuillBlock text, QuillBlock selections,
                      const Template& form, const SizeLimits& limits) {
  const BlockLock list_lock(selections);
  BlockLock text_lock(text);
  const std::span<const std::int32_t> longs = list_lock.longs();
  const ListSurvey list(longs, text_lock.size(), std::ssize(form.characters));
  if (!list.is_canonical) return false;
  Composer composer(form);
  if (composer.refused()) return false;
  const std::span<const Selection> places = selections_of(longs);
  const auto length = std::ssize(form.characters);
  const bool keeps_lengths = list.growth == 0 && !list.shrinks;
  if (!give_bytes(composer, text_lock.contents(), places,
                  keeps_lengths ? length : 0)) {
    const Overlaying edits(text, places, composer, 0);
    return splice(text_lock, edits, edits.growth(), limits);
  }
  if (!keeps_lengths) {
    const Overlaying edits(text, places, composer, length);
    return splice(text_lock, edits, list.growth, limits);
  }
  return visit_each(text_lock.contents(), places, [&](char* own, Offset) {
    composer.compose_over(own);
    return true;
  });
}

}  // namespace

bool overlay(QuillBlock* variable, QuillBlock selections, const Template& form,
             Handover handover, const SizeLimits& limits) {
  const QuillBlock text = *variable;
  if (form.characters.empty()) {
    return delete_selections(text, selections, limits);
  }
  if (GetHandleSize(selections) < 4) return true;
  if (text == nullptr || text == selections) {
    HUnlock(selections);
    return false;
  }
  if (handover == Handover::kSameBlock) {
    return overlay_in_place(text, selections, form, limits);
  }
  const QuillBlock result = NewHandle(0);
  if (result == nullptr || !detach_contents(text)) {
    DisposeHandle(result);
    HUnlock(selections);
    HUnlock(text);
    return false;
  }
  if (!overlay_in_place(text, selections, form, limits)) {
    DisposeHandle(result);
    return false;
  }
  move_contents(text, result);
  *variable = result;
  return true;
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
  return overlay(text, selections, form, Handover::kNewBlock, {}) ? 1 : 0;
}
