#include "edit/delete.h"

#include "blocks/block_lock.h"
#include "edit/one_string.h"
#include "edit/splice.h"

namespace quill {

bool delete_selections(QuillBlock text, QuillBlock selections) {
  if (GetHandleSize(text) == 0 || GetHandleSize(selections) < 4) return true;
  BlockLock text_lock(text);
  const BlockLock list_lock(selections);
  if (!is_canonical(list_lock.longs(), text_lock.size())) return false;
  return splice(text_lock, OneString(list_lock.longs(), {}));
}

}  // namespace quill

std::int32_t DelSel(QuillBlock* text, QuillBlock selections) {
  return quill::delete_selections(*text, selections) ? 1 : 0;
}
