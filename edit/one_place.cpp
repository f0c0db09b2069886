#include "edit/one_place.h"

#include "blocks/short_move.h"

namespace quill {

bool replace_one(BlockLock& text, Selection place, std::string_view string,
                 const SizeLimits& limits) {
  const Offset old_size = text.size();
  if (place.start < 0 || place.end < place.start || place.end > old_size) {
    return false;
  }
  const Offset growth = std::ssize(string) - place.length();
  const Offset new_size = old_size + growth;
  if (!limits.allow(new_size)) return false;
  if (growth > 0 && !text.resize(new_size)) return false;
  char* const start = text.contents() + place.start;
  const auto move_rest = [&] {
    std::memmove(start + string.size(), start + place.length(),
                 static_cast<std::size_t>(old_size - place.end));
  };
  if (growth > 0) move_rest();
  move_bytes(start, string.data(), std::ssize(string));
  if (growth >= 0) return true;
  // Not before: the string may be a piece of it.
  move_rest();
  // A smaller size is never refused.
  return text.resize(new_size);
}

}  // namespace quill
