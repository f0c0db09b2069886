// One edit at selections, text and list in Blocks that the host may have
// locked.
#pragma once

#include "tests/support/compare.h"
#include "tests/support/input.h"

namespace quill::test {

struct EditCall {
  enum Operation { kDelete, kWrap, kInsert, kOverlay, kMultiple };
  enum Missing { kNone, kText, kList, kString, kFlags, kLength };

  Operation operation = kInsert;
  std::string text = {};
  Longs list = {};
  std::string string = {};
  std::string trailing = {};
  Longs characters = {};
  std::vector<unsigned char> flags = {};  // none: null
  // Their replacements are the first bytes of `string`.
  std::vector<QuillReplaceEntry> entries = {};
  Missing missing = kNone;
  bool is_locked = true;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};

std::string check_edit(Input& in);

}  // namespace quill::test
