// Wrapping every selection in two strings: an edit that puts the one in at
// each start and the other at each end, and replaces nothing.
#include <span>
#include <string_view>

#include "blocks/block_lock.h"
#include "edit/byte_string.h"
#include "edit/splice.h"
#include "selection/selection_list.h"

namespace quill {
namespace {

// Every long of the list is an empty selection of its own.
class Wrapping {
 public:
  Wrapping(std::span<const std::int32_t> longs, std::string_view leading,
           std::string_view trailing)
      : longs_(longs), leading_(leading), trailing_(trailing) {}

  Offset count() const { return std::ssize(longs_); }
  Offset start(Offset k) const { return longs_[static_cast<std::size_t>(k)]; }
  Offset end(Offset k) const { return start(k); }
  bool is_kept(Offset k) const { return replacement(k).empty(); }
  std::string_view replacement(Offset k) const {
    return k % 2 == 0 ? leading_ : trailing_;
  }
  Offset growth() const {
    return count() / 2 * (std::ssize(leading_) + std::ssize(trailing_));
  }

 private:
  std::span<const std::int32_t> longs_;
  std::string_view leading_;
  std::string_view trailing_;
};

bool wrap_selections(QuillBlock text, QuillBlock selections,
                     std::string_view leading, std::string_view trailing) {
  if (GetHandleSize(selections) < 8) return false;
  const BlockLock list_lock(selections);
  if (text == nullptr) return false;
  BlockLock text_lock(text);
  if (!is_canonical(list_lock.longs(), text_lock.size())) return false;
  return splice(text_lock, Wrapping(list_lock.longs(), leading, trailing));
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
