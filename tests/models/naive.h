// The naive twins: every export again, with the same type and in namespace
// naive, told one byte, one unit and one comparison at a time, too simple to be
// wrong. And what the twins are made of.
#pragma once

#include <bit>
#include <cstdint>
#include <string>

#include "quillcore.h"

namespace quill::naive {

using Long = std::int32_t;

decltype(::BinarySearchLongs) BinarySearchLongs;

decltype(::FindStr) FindStr;
decltype(::FindStrAll) FindStrAll;
decltype(::FindByte) FindByte;
decltype(::BytePatternSwap) BytePatternSwap;

decltype(::utf8_GetNextCharAsLong) utf8_GetNextCharAsLong;
decltype(::utf8_GetNextCharValue) utf8_GetNextCharValue;
decltype(::utf8_GetCharAsLong) utf8_GetCharAsLong;
decltype(::utf8_GetPrevCharAsLong) utf8_GetPrevCharAsLong;
decltype(::utf8_CountCharacters) utf8_CountCharacters;
decltype(::utf8_CountCharactersTask) utf8_CountCharactersTask;
decltype(::utf8_CountToOffset) utf8_CountToOffset;
decltype(::utf8_MaskChar) utf8_MaskChar;
decltype(::utf8_MatchChar) utf8_MatchChar;
decltype(::utf8_InList) utf8_InList;

decltype(::utf8_SortMask) utf8_SortMask;
decltype(::utf8_StringToLongArray) utf8_StringToLongArray;
decltype(::utf8_MaskString) utf8_MaskString;
decltype(::utf8_MaskStringSelection) utf8_MaskStringSelection;

decltype(::utf8_FindBreaks) utf8_FindBreaks;
decltype(::utf8_ComputeBreaks) utf8_ComputeBreaks;
decltype(::utf8_ComputeSpaceBreaks) utf8_ComputeSpaceBreaks;

decltype(::utf8_CompareRangePart) utf8_CompareRangePart;
decltype(::utf8_CompareRangePattern) utf8_CompareRangePattern;
decltype(::utf8_FindPattern) utf8_FindPattern;
decltype(::utf8_FindPatternPrev) utf8_FindPatternPrev;
decltype(::utf8_CountPatternAll) utf8_CountPatternAll;
decltype(::utf8_FindPatternAll) utf8_FindPatternAll;
decltype(::utf8_FindKeyPatternAll) utf8_FindKeyPatternAll;
decltype(::utf8_SortPattern) utf8_SortPattern;

decltype(::CopySelectionsTo) CopySelectionsTo;
decltype(::CopySuperSelectionsTo) CopySuperSelectionsTo;
decltype(::CompareSelections) CompareSelections;
decltype(::qSortV) qSortV;
decltype(::utf8_SortSelections) utf8_SortSelections;
decltype(::utf8_SortKeySelections) utf8_SortKeySelections;
decltype(::OrderSelections) OrderSelections;
decltype(::SelectionToMap) SelectionToMap;
decltype(::MapToSelection) MapToSelection;
decltype(::InvertSelections) InvertSelections;
decltype(::ExtractSelections) ExtractSelections;

decltype(::DelSel) DelSel;
decltype(::InsertDualStr) InsertDualStr;
decltype(::InsertStr) InsertStr;
decltype(::InsertMaskedStr) InsertMaskedStr;
decltype(::InsertMultiple) InsertMultiple;

decltype(::ReplaceStrAll) ReplaceStrAll;
decltype(::utf8_ReplaceStrAll) utf8_ReplaceStrAll;
decltype(::utf8_ReplacePatternAll) utf8_ReplacePatternAll;

decltype(::WordTable_FillReplaceTable) WordTable_FillReplaceTable;
decltype(::utf8_WordTableReplace) utf8_WordTableReplace;

// The readers as the other models use them.
struct Character {
  bool was_read = false;
  Long start = 0;
  Long packed = 0;
  Long next = 0;
};
Character next_character(const char* text, Long position, Long end);
Character containing_character(const char* text, Long position, Long end);
Character previous_character(const char* text, Long position, Long end);

bool is_continuation_at(const char* text, std::int64_t position);

// 1, 2 or 3 for a replacement that shrinks, keeps or grows its selection.
inline Long kind_of(std::int64_t length, std::int64_t selected) {
  return length < selected ? 1 : length == selected ? 2 : 3;
}

// Appends the bytes of a character, zero bytes behind the first left out.
void append_character(std::string& out, Long packed);

// Hosts in other languages answer with any byte, which no bool can hold.
inline bool ask(Long reference, std::int64_t progress, QuillYield yield) {
  const auto call = std::bit_cast<unsigned char (*)(Long, Long)>(yield);
  return call(reference, static_cast<Long>(progress)) == 1;
}

class Meter {
 public:
  Meter(Long reference, QuillYield yield)
      : reference_(reference), yield_(yield) {}

  void tick(std::int64_t progress) {
    count();
    ask_if_due(progress);
  }
  void count() { ++count_; }
  void ask_if_due(std::int64_t progress) {
    if (count_ != YieldMax) return;
    go_on = ask(reference_, progress, yield_);
    count_ = 0;
  }

  bool go_on = true;

 private:
  Long reference_;
  QuillYield yield_;
  std::int64_t count_ = 0;
};

// The thirteen leading parameters of a search.
struct StringCall {
  const char* text = nullptr;
  Long start = 0;
  Long end = 0;
  const Long* pattern = nullptr;
  Long pattern_count = 0;
  const unsigned char* flags = nullptr;
  const Long* mask_keys = nullptr;
  const Long* mask_values = nullptr;
  Long mask_count = 0;
  const Long* breaks = nullptr;
  Long break_count = 0;
  unsigned char edge = 0;
  unsigned char invert = 0;

  // Calls an export: the thirteen, then `rest`.
  template <class Export, class... Rest>
  auto operator()(Export function, Rest... rest) const {
    return function(text, start, end, pattern, pattern_count, flags, mask_keys,
                    mask_values, mask_count, breaks, break_count, edge, invert,
                    rest...);
  }
};

bool compare(const StringCall& c, Long position, Long* next);
Long find(const StringCall& c, Long* found_start, Long* found_end,
          Long reference, QuillYield yield);
Long find_previous(const StringCall& c, Long* found_start, Long* found_end,
                   Long reference, QuillYield yield);
Long find_nth(const StringCall& c, Long* occurrence, Long* found_start,
              Long* found_end, Long reference, QuillYield yield);
Long count_all(const StringCall& c, Long* match_count, Long* stop,
               Long reference, QuillYield yield);
Long find_all(const StringCall& c, QuillBlock* list, Long* long_count,
              Long* stop, Long reference, QuillYield yield);

// Such a function with the thirteen spread out, as an export has them.
template <auto function>
struct Spread;
template <class... Rest, Long (*function)(const StringCall&, Rest...)>
struct Spread<function> {
  static Long call(const char* text, Long start, Long end, const Long* pattern,
                   Long pattern_count, const unsigned char* flags,
                   const Long* mask_keys, const Long* mask_values,
                   Long mask_count, const Long* breaks, Long break_count,
                   unsigned char edge, unsigned char invert, Rest... rest) {
    return function(
        {text, start, end, pattern, pattern_count, flags, mask_keys,
         mask_values, mask_count, breaks, break_count, edge, invert},
        rest...);
  }
};

inline constexpr auto* utf8_FindStr = &Spread<find>::call;
inline constexpr auto* utf8_FindStrPrev = &Spread<find_previous>::call;
inline constexpr auto* utf8_FindStrNth = &Spread<find_nth>::call;
inline constexpr auto* utf8_CountStrAll = &Spread<count_all>::call;
inline constexpr auto* utf8_FindStrAll = &Spread<find_all>::call;

decltype(::utf8_CompareSubstring) utf8_CompareSubstring;
decltype(::utf8_TestBreakChars) utf8_TestBreakChars;
inline constexpr auto* utf8_CompareSelString = utf8_CompareSubstring;

}  // namespace quill::naive
