#include "edit/delete.h"

#include "blocks/block_lock.h"
#include "edit/one_place.h"
#include "edit/one_string.h"

namespace quill {

bool delete_selections(QuillBlock text, QuillBlock selections,
                       const SizeLimits& limits) {
  if (GetHandleSize(text) == 0 || GetHandleSize(selections) < 4) return true;
  BlockLock text_lock(text);
  const BlockLock list_lock(selections);
  if (text == selections) return false;
  const std::span<std::int32_t> longs = list_lock.longs();
  const std::span<Selection> places = selections_of(longs);
  if (longs.size() == 2) return replace_one(text_lock, places[0], {}, limits);
  const ListSurvey list(longs, text_lock.size(), 0);
  if (!list.is_canonical) return false;
  const RepeatedString nothing({}, std::ssize(places));
  return splice_string(text_lock, OneString<false>(places, nothing),
                       list.growth, limits);
}

}  // namespace quill

std::int32_t DelSel(QuillBlock* text, QuillBlock selections) {
  return quill::delete_selections(*text, selections, {}) ? 1 : 0;
}
