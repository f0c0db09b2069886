// Copying the text under selections, back to back, into the host's buffer.
//
// Invariant: what has been written is what `copied` counts, and never more
// than the capacity.
#include <cstdint>

#include "blocks/short_move.h"
#include "blocks/yield_meter.h"
#include "quillcore.h"
#include "selection/selection_list.h"

using namespace quill;

namespace {

struct Destination {
  char* bytes;
  std::int32_t capacity;
  std::int32_t* copied;  // the host's; kept current, the callback may look
};

const Selection& to_copy(const Selection& selection) { return selection; }
const Selection& to_copy(const KeyRecord& record) { return record.super; }

// False when a selection did not fit, or begins before the text. Such a one
// is not copied, nor is any after it.
//
// The host is not asked at an interval: the number of selections done is never
// set back, so that it is asked once, unless it changes YieldMax meanwhile.
template <class Element>
bool copy_texts(const char* text, const Destination& to,
                const Element* elements, Offset count, std::int32_t reference,
                QuillYield yield) {
  *to.copied = 0;
  Offset copied = 0;
  for (Offset done = 0; done < count && copied < to.capacity;) {
    if (done + kSelectionsAhead < count) {
      fetch_text(text, to_copy(elements[done + kSelectionsAhead]));
    }
    const Selection selection = to_copy(elements[done++]);
    const Offset length = selection.length();
    // An end before the start covers nothing.
    if (length > 0) {
      if (selection.start < 0 || length > to.capacity - copied) return false;
      move_bytes(to.bytes + copied, text + selection.start, length);
      copied += length;
      *to.copied = to_long(copied);
    }
    if (done == YieldMax && !ask_host(yield, reference, done)) return true;
  }
  return true;
}

}  // namespace

std::int32_t CopySelectionsTo(const char* text, char* destination,
                              std::int32_t capacity, std::int32_t* copied,
                              const std::int32_t* selections,
                              std::int32_t count, std::int32_t reference,
                              QuillYield yield) {
  if (capacity < 1) return 0;
  const auto* elements = reinterpret_cast<const Selection*>(selections);
  return copy_texts(text, {destination, capacity, copied}, elements, count,
                    reference, yield)
             ? 1
             : 0;
}

std::int32_t CopySuperSelectionsTo(const char* text, char* destination,
                                   std::int32_t capacity, std::int32_t* copied,
                                   const std::int32_t* records,
                                   std::int32_t count, std::int32_t reference,
                                   QuillYield yield) {
  if (capacity < 1) return 0;
  const auto* elements = reinterpret_cast<const KeyRecord*>(records);
  return copy_texts(text, {destination, capacity, copied}, elements, count,
                    reference, yield)
             ? 1
             : 0;
}
