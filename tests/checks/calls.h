// The calls that are compared with the naive twins, one struct a family: what a
// host hands over, texts put against pages that can't be read. Each has a check
// that draws such a call from bytes, and returns what differs or nothing.
#pragma once

#include <array>

#include "tests/support/compare.h"
#include "tests/support/input.h"

namespace quill::test {

// A reader or a counter of characters.
struct CharacterCall {
  enum Operation {
    kNext,
    kNextValue,
    kContaining,
    kPrevious,
    kCount,
    kCountTask,
    kCountToOffset
  };

  Operation operation = kNext;
  std::string text = {};
  std::int32_t start = 0;  // or the position
  std::int32_t end = length_of(text);
  std::int32_t request = 1;  // characters, for kCountToOffset
  bool has_text = true;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};
std::string check_characters(Input& in);

// What a reader, one of the first four operations, answers: its result, then
// start, length, character and next, -9 where nothing is written.
using Reading = std::array<std::int32_t, 5>;
Reading read_character(Side side, CharacterCall::Operation reader,
                       const char* text, std::int32_t position,
                       std::int32_t end);

// A lookup in a mask, a sort of a mask, or a text rewritten through one.
struct MaskCall {
  enum Operation {
    kLookUp,    // each of `longs` in the mask, by every export that does
    kUseTable,  // the same by the table that long texts are mapped with
    kSort,
    kToArray,
    kRewrite,
    kRewriteSelections
  };

  Operation operation = kLookUp;
  std::string text = {};
  Mask mask = {};
  std::int32_t mask_count = mask.count();
  Longs longs = {};        // selections, or characters
  std::int32_t start = 0;  // in the text, or for kSort in the mask
  std::int32_t end = length_of(text);
  bool has_text = true;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};
std::string check_masks(Input& in);

// FindStr, FindStrAll, FindByte or BytePatternSwap.
struct ByteSearch {
  enum Operation { kFind, kFindAll, kFindByte, kSwap };

  Operation operation = kFind;
  std::string text = {};
  std::int32_t start = 0;
  std::int32_t end = length_of(text);
  std::string pattern = {};
  std::string replacement = {};
  // Where in the text the swap's two strings lie; -1: elsewhere.
  std::int32_t pattern_at = -1;
  std::int32_t replacement_at = -1;
  // What FindStr and FindStrAll refuse.
  bool has_text = true;
  bool has_pattern = true;
  std::int32_t length = length_of(pattern);

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};
std::string check_byte_search(Input& in);

using Flags = std::vector<unsigned char>;

// A search for a string of characters, or a comparison or test of break
// characters as a search makes them.
struct StringSearch {
  enum Operation {
    kFind,
    kFindPrevious,
    kFindNth,
    kCount,
    kFindAll,
    kCompare,
    kCompareSelection,
    kTestBreaks,
    // The filter for long texts by itself: the matches at its candidates, which
    // are to be all matches.
    kFilter,
    kFilterBackward
  };
  enum Null { kNone, kText, kPattern, kKeys, kValues, kBreaks };

  Operation operation = kFindAll;
  std::string text = {};
  Longs pattern = {};
  std::optional<Flags> flags = {};
  Mask mask = {};
  std::optional<Longs> breaks = {};
  unsigned char edge = 1;
  unsigned char invert = 0;
  std::int32_t start = 0;  // or where to compare, or where the match starts
  std::int32_t end = length_of(text);
  std::int32_t match_end = 0;
  std::int32_t nth = 1;

  // What contradicts the rest: a null pointer, counts that are not the sizes.
  Null null = kNone;
  std::int32_t pattern_count = length_of(pattern);
  std::int32_t mask_count = mask.count();
  std::int32_t break_count = breaks ? length_of(*breaks) : 0;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
  naive::StringCall arguments(const char* at) const;
};
std::string check_string_search(Input& in);

// A selection widened to breaks, or a list of breaks.
struct BreakCall {
  enum Operation { kWiden, kEveryFew, kAtSpaces };

  // The characters to widen over, or not to.
  struct Class {
    Longs members = {};
    unsigned char flag = 0;
  };

  Operation operation = kWiden;
  std::string text = {};
  std::int32_t unit = 1;   // characters or bytes
  std::int32_t start = 0;  // or the lower bound
  std::int32_t end = length_of(text);
  Class backward = {};
  Class forward = {};
  std::int32_t selection_start = 0;
  std::int32_t selection_end = 0;
  bool has_text = true;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};
std::string check_breaks(Input& in);

// A comparison with a range pattern or a search for it.
struct PatternCall {
  enum Operation {
    kComparePart,
    kCompare,
    kFind,
    kFindPrevious,
    kCount,
    kFindAll,
    kFindKeys,
    kSort
  };

  Operation operation = kFindAll;
  std::string text = {};
  std::int32_t from = 0;
  std::int32_t to = length_of(text);
  RangeParts parts = {};
  RangeParts key = {};
  bool is_text_null = false;
  std::int32_t part_count = length_of(parts);

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};
std::string check_pattern(Input& in);

// An edit at selections, text and list in Blocks that the host may have locked.
struct EditCall {
  enum Operation { kDelete, kWrap, kInsert, kOverlay, kMultiple };
  enum Missing { kNone, kText, kList, kString, kFlags, kLength };

  Operation operation = kInsert;
  std::string text = {};
  Longs list = {};
  std::string string = {};
  std::string trailing = {};
  Longs characters = {};
  Flags flags = {};  // none: null
  // Their replacements are the first bytes of `string`.
  std::vector<QuillReplaceEntry> entries = {};
  Missing missing = kNone;
  bool is_locked = true;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};
std::string check_edit(Input& in);

// A replace-all, the text in a Block that the host has locked.
struct ReplaceAllCall {
  enum Operation { kBytes, kCharacters, kPattern };

  Operation operation = kBytes;
  std::string text = {};
  std::int32_t from = 0;
  std::int32_t to = length_of(text);
  // What is sought by the one, and by the others.
  std::string bytes = {};
  Longs characters = {};
  RangeParts parts = {};
  // For characters only.
  Mask mask = {};
  Longs breaks = {};
  unsigned char edge = 0;
  unsigned char invert = 0;
  // What is put in.
  std::string string = {};
  Flags flags = {};  // none: null
  std::int32_t position = 1;
  bool is_text_null = false;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};
std::string check_replace_all(Input& in);

// A replace table filled through a word table, or the words of a text replaced.
struct WordTableCall {
  struct Word {
    Longs characters;
    std::string replacement;
  };

  bool only_fills = false;
  std::vector<Word> words = {};
  Mask mask = {};
  std::string text = {};
  Longs selections = {};  // of the replace table
  std::int32_t from = 0;
  std::int32_t to = length_of(text);
  RangeParts parts = {};
  int unusable = -1;  // the word whose replacement has a negative length
  bool is_text_null = false;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};
WordTableCall draw_word_table_call(Input& in);
std::string check_word_table(Input& in);

// An operation on selections; destination and map lie as the texts do.
struct SelectionCall {
  enum Operation {
    kCopy,
    kCopySuper,
    kCompare,
    kSort,
    kSortKeys,
    kSortAnything,
    kOrder,
    kToMap,
    kFromMap,
    kInvert,
    kExtract
  };

  Operation operation = kSort;
  std::string text = {};
  Longs list = {};
  Mask mask = {};
  std::int32_t mask_count = mask.count();
  std::int32_t size = 0;   // of the destination, the text or an element
  std::int32_t start = 0;  // of the range
  std::int32_t end = 0;
  std::string map = {};
  std::string prefix = {};
  std::string suffix = {};
  enum { kNothing, kText, kPrefix, kSuffix, kList } missing = kNothing;

  Outcome run(Side side, QuillYield yield) const;
  std::string show() const;
};
SelectionCall draw_selection_call(Input& in);
std::string check_selection(Input& in);

}  // namespace quill::test
