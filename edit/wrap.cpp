// Wrapping every selection in two strings: an edit that puts the one in at
// each start and the other at each end, and replaces nothing.
#include <span>
#include <string_view>

#include "blocks/block_lock.h"
#include "blocks/repeated_string.h"
#include "edit/byte_string.h"
#include "edit/splice.h"
#include "selection/selection_list.h"

namespace quill {
namespace {

// Every long of the list is an empty selection of its own.
class Wrapping {
 public:
  static constexpr bool kNotesPlaces = false;

  Wrapping(std::span<const std::int32_t> longs, std::string_view leading,
           std::string_view trailing)
      : longs_(longs),
        strings_{{leading, count() / 2}, {trailing, count() / 2}} {}

  Offset count() const { return std::ssize(longs_); }
  Offset start(Offset k) const { return longs_[static_cast<std::size_t>(k)]; }
  Offset end(Offset k) const { return start(k); }
  bool is_kept(Offset k) const { return length(k) == 0; }
  Offset length(Offset k) const { return string(k).length(); }
  void put(Offset k, Offset, char* at, Room room) const {
    string(k).put(at, room);
  }

 private:
  const RepeatedString& string(Offset k) const { return strings_[k & 1]; }

  std::span<const std::int32_t> longs_;
  RepeatedString strings_[2];
};

bool wrap_selections(QuillBlock text, QuillBlock selections,
                     std::string_view leading, std::string_view trailing) {
  if (GetHandleSize(selections) < 8) return false;
  const BlockLock list_lock(selections);
  if (text == nullptr || text == selections) return false;
  BlockLock text_lock(text);
  if (!is_canonical(list_lock.longs(), text_lock.size())) return false;
  const Offset pairs = std::ssize(list_lock.longs()) / 2;
  const Offset growth = pairs * (std::ssize(leading) + std::ssize(trailing));
  return splice(text_lock, Wrapping(list_lock.longs(), leading, trailing),
                growth);
}

}  // namespace
}  // namespace quill

std::int32_t InsertDualStr(QuillBlock* text, QuillBlock selections,
                           const char* leading, std::int32_t leading_length,
                           const char* trailing, std::int32_t trailing_length) {
  using quill::is_byte_string;
  if (!is_byte_string(leading, leading_length)) return 0;
  if (!is_byte_string(trailing, trailing_length)) return 0;
  return quill::wrap_selections(*text, selections,
                                quill::byte_string(leading, leading_length),
                                quill::byte_string(trailing, trailing_length))
             ? 1
             : 0;
}
