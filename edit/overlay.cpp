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
// The selection's own bytes are read when its length is asked for, before
// anything near it moves; put() uses what was composed then.
class Overlaying {
 public:
  static constexpr bool kNotesPlaces = false;

  Overlaying(QuillBlock text, std::span<const Selection> selections,
             Composer& composer)
      : text_(text), selections_(selections), composer_(&composer) {}

  Offset count() const { return std::ssize(selections_); }
  Offset start(Offset k) const { return at(k).start; }
  Offset end(Offset k) const { return at(k).end; }
  static bool is_kept(Offset) { return false; }
  Offset length(Offset k) const {
    return composer_->compose(*text_, start(k), end(k));
  }
  void put(Offset, Offset length, char* to, Room) const {
    move_bytes(to, composer_->bytes(), length);
  }

 private:
  const Selection& at(Offset k) const {
    return selections_[static_cast<std::size_t>(k)];
  }

  QuillBlock text_;  // its contents move when the splice makes room
  std::span<const Selection> selections_;
  Composer* composer_;
};

Offset growth_of(const Overlaying& edits) {
  Offset growth = 0;
  for (Offset k = 0; k < edits.count(); ++k) {
    growth += edits.length(k) - (edits.end(k) - edits.start(k));
  }
  return growth;
}

// Calls `visit` with the text of every selection up to one for which it answers
// false, and tells whether there was none.
template <class Visit>
bool visit_each(char* text, std::span<const Selection> selections,
                Visit visit) {
  const Offset count = std::ssize(selections);
  for (Offset i = 0; i < count; ++i) {
    const Selection& selection = selections[static_cast<std::size_t>(i)];
    if (i + kSelectionsAhead < count) {
      fetch_text(text, (&selection)[kSelectionsAhead]);
    }
    if (!visit(text + selection.start)) return false;
  }
  return true;
}

// Overlays selections that all have as many bytes as the template characters.
// False, and nothing is changed, where that isn't done byte by byte.
bool lay_over(char* text, std::span<const Selection> selections,
              const Composer& composer) {
  if (!composer.is_blended() ||
      !visit_each(text, selections, [&](const char* own) {
        return composer.is_ascii_text(own);
      })) {
    return false;
  }
  return visit_each(text, selections, [&](char* own) {
    composer.blend_over(own);
    return true;
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
  if (list.growth == 0 && !list.shrinks &&
      lay_over(text_lock.contents(), places, composer)) {
    return true;
  }
  const Overlaying edits(text, places, composer);
  return splice(text_lock, edits, growth_of(edits), limits);
}

}  // namespace

bool overlay(QuillBlock* variable, QuillBlock selections, const Template& form,
             Handover handover, const SizeLimits& limits) {
  const QuillBlock text = *variable;
  if (form.characters.empty()) {
    return delete_selections(text, selections, limits);
  }
  if (GetHandleSize(selections) < 4) return true;
  if (text == nullptr) {
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
