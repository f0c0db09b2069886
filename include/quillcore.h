// Quillcore: operations on UTF-8 text for editors and other hosts.
//
// DRAFT of the conventions; see each family for its functions.
#pragma once

#include <stdbool.h>
#include <stdint.h>

#if defined(__GNUC__)
#define QUILL_EXPORT __attribute__((visibility("default")))
#else
#define QUILL_EXPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

// ---------------------------------------------------------------------------
// Types
// ---------------------------------------------------------------------------

typedef char** QuillBlock;

typedef bool (*QuillYield)(int32_t reference, int32_t progress);

typedef struct QuillRangePart {
  const int32_t* characters;
  int32_t character_count;
  int32_t minimum;
  int32_t maximum;
  unsigned char include;
} QuillRangePart;

typedef struct QuillReplaceEntry {
  int32_t start;
  int32_t end;
  const char* replacement;
  int32_t replacement_length;
  int32_t kind;
} QuillReplaceEntry;

typedef struct QuillWordEntry {
  const int32_t* word;
  int32_t word_count;
  const char* replacement;
  int32_t replacement_length;
} QuillWordEntry;

typedef int (*QuillCompare)(const void* first, const void* second, char* text,
                            int32_t* mask_keys, int32_t* mask_values,
                            int32_t mask_count);

extern QUILL_EXPORT int32_t YieldMax;

// ---------------------------------------------------------------------------
// Blocks and byte moves
// ---------------------------------------------------------------------------

QUILL_EXPORT QuillBlock NewBlock(int32_t size);

QUILL_EXPORT QuillBlock NewBlockClear(int32_t size);

QUILL_EXPORT QuillBlock ResizeBlock(QuillBlock block, int32_t size);

QUILL_EXPORT int32_t GetBlockSize(QuillBlock block);

QUILL_EXPORT char* LockBlock(QuillBlock block);

QUILL_EXPORT void UnlockBlock(QuillBlock block);

QUILL_EXPORT void DisposeBlock(QuillBlock block);

QUILL_EXPORT void MoveBytes(const void* source, void* destination,
                            int32_t count);

// ---------------------------------------------------------------------------
// Arrays of longs
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t BinarySearchLongs(const int32_t* array, int32_t count,
                                       int32_t key, int32_t* index);

QUILL_EXPORT void SortLongs(int32_t* array, int32_t first, int32_t limit);

QUILL_EXPORT void SwapLongs(int32_t* first, int32_t* second);

// ---------------------------------------------------------------------------
// Reading characters
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t utf8_GetNextCharAsLong(const char* text, int32_t position,
                                            int32_t end, int32_t* start,
                                            int32_t* character, int32_t* next);

QUILL_EXPORT int32_t utf8_GetNextCharValue(const char* text, int32_t position,
                                           int32_t end, int32_t* start,
                                           int32_t* length, int32_t* code_point,
                                           int32_t* next);

QUILL_EXPORT int32_t utf8_GetCharAsLong(const char* text, int32_t position,
                                        int32_t end, int32_t* start,
                                        int32_t* character, int32_t* next);

QUILL_EXPORT int32_t utf8_GetPrevCharAsLong(const char* text, int32_t position,
                                            int32_t end, int32_t* start,
                                            int32_t* character, int32_t* next);

// ---------------------------------------------------------------------------
// Counting characters
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t utf8_CountCharacters(const char* text, int32_t start,
                                          int32_t end, int32_t* count);

QUILL_EXPORT int32_t utf8_CountCharactersTask(const char* text, int32_t start,
                                              int32_t end, int32_t* count,
                                              int32_t reference,
                                              QuillYield yield);

QUILL_EXPORT int32_t utf8_CountToOffset(const char* text, int32_t start,
                                        int32_t end, int32_t* count,
                                        int32_t* offset);

// ---------------------------------------------------------------------------
// Character masks and sets
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t utf8_MaskChar(int32_t character, const int32_t* mask_keys,
                                   const int32_t* mask_values,
                                   int32_t mask_count, unsigned char sorted);

QUILL_EXPORT int32_t utf8_MatchChar(const int32_t* set, int32_t count,
                                    int32_t character, unsigned char include);

QUILL_EXPORT int32_t utf8_InList(int32_t character, const int32_t* list,
                                 int32_t count);

QUILL_EXPORT void utf8_SortMask(int32_t* mask_keys, int32_t* mask_values,
                                int32_t first, int32_t limit);

QUILL_EXPORT int32_t utf8_StringToLongArray(const char* text, int32_t start,
                                            int32_t end,
                                            const int32_t* mask_keys,
                                            const int32_t* mask_values,
                                            int32_t mask_count, int32_t* array,
                                            int32_t* count);

// ---------------------------------------------------------------------------
// Rewriting text through a mask
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t utf8_MaskString(QuillBlock source, int32_t start,
                                     int32_t end, const int32_t* mask_keys,
                                     const int32_t* mask_values,
                                     int32_t mask_count, QuillBlock* output,
                                     int32_t ignored, int32_t reference,
                                     QuillYield yield);

QUILL_EXPORT int32_t utf8_MaskStringSelection(
    QuillBlock source, const int32_t* selections, int32_t long_count,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    QuillBlock* output, int32_t reference, QuillYield yield);

// ---------------------------------------------------------------------------
// Searching bytes
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t FindStr(const char* text, int32_t start, int32_t end,
                             const char* pattern, int32_t pattern_length,
                             int32_t reserved1, int32_t reserved2,
                             int32_t reserved3, int32_t reserved4,
                             int32_t* found_start, int32_t* found_end,
                             int32_t reference, QuillYield yield);

QUILL_EXPORT int32_t FindStrAll(const char* text, int32_t start, int32_t end,
                                const char* pattern, int32_t pattern_length,
                                int32_t reserved1, int32_t reserved2,
                                int32_t reserved3, int32_t reserved4,
                                QuillBlock* list, int32_t* long_count,
                                int32_t* stop, int32_t reference,
                                QuillYield yield);

// ---------------------------------------------------------------------------
// Comparing characters, break characters
// ---------------------------------------------------------------------------

/// @name Comparing characters, break characters
///
/// A pattern and a break set are given in mapped form: the characters of the
/// text are mapped through the mask before they are compared with them, the
/// pattern and the set are not.
/// @{

/// Compares the characters of a text, from an offset on, with a pattern.
///
/// Each character is mapped through the mask, then compared with its element of
/// the pattern; what follows the last of them is not looked at. Stray
/// continuation bytes before a character are skipped, so that from inside a
/// character the comparison begins with the next one. A character that can't be
/// read, because the range ends within or before it, compares unequal.
/// Allocates nothing; costs a bisection of the mask for each fixed element.
///
/// @param text            address of offset 0; null reads as a text without
///                        characters
/// @param position        byte offset where reading begins; below 0 nothing can
///                        be read
/// @param end             byte offset where reading ends, exclusive
/// @param pattern         packed characters in mapped form
/// @param pattern_count   number of them; 0 or less: an empty pattern, which
///                        always matches
/// @param position_flags  one byte an element, 1: fixed, any other: open, takes
///                        any one character; null: all are fixed
/// @param mask_keys       the mask's keys, ascending; null: no mask
/// @param mask_values     the mask's values; null: no mask
/// @param mask_count      number of mask entries; 0 or less: no mask
/// @param next            set to the offset just past the last character read,
///                        or to `end` when one could not be read, whatever the
///                        result; not written for an empty pattern
/// @return 1 when every element was matched by a character, else 0
QUILL_EXPORT int32_t utf8_CompareSubstring(const char* text, int32_t position,
                                           int32_t end, const int32_t* pattern,
                                           int32_t pattern_count,
                                           const unsigned char* position_flags,
                                           const int32_t* mask_keys,
                                           const int32_t* mask_values,
                                           int32_t mask_count, int32_t* next);

/// The same as utf8_CompareSubstring in every respect, under a second name.
///
/// @param text            address of offset 0
/// @param position        byte offset where reading begins
/// @param end             byte offset where reading ends, exclusive
/// @param pattern         packed characters in mapped form
/// @param pattern_count   number of them
/// @param position_flags  one byte an element, 1: fixed; or null
/// @param mask_keys       the mask's keys, ascending; or null
/// @param mask_values     the mask's values; or null
/// @param mask_count      number of mask entries
/// @param next            set to the offset just past the last character read,
///                        as there
/// @return 1 when every element was matched by a character, else 0
QUILL_EXPORT int32_t utf8_CompareSelString(const char* text, int32_t position,
                                           int32_t end, const int32_t* pattern,
                                           int32_t pattern_count,
                                           const unsigned char* position_flags,
                                           const int32_t* mask_keys,
                                           const int32_t* mask_values,
                                           int32_t mask_count, int32_t* next);

/// Tells whether the sides of a match are delimited by break characters.
///
/// Without a break set both sides are breaks. Otherwise the side before is the
/// edge when the match starts at offset 0 of the text, and the side after is
/// when the match ends at the end of the range, even when the text goes on
/// there. The character on any other side is mapped and looked for in the set,
/// in the order given: put the frequent ones first. A character that can't be
/// read is no break. Allocates nothing.
///
/// @param text              address of offset 0
/// @param end               end of the range searched, a byte offset
/// @param match_start       byte offset; the character before it is tested even
///                          where it lies before the range searched
/// @param match_end         byte offset; the first character at or after it is
///                          tested
/// @param mask_keys         the mask's keys, ascending; null: no mask
/// @param mask_values       the mask's values; null: no mask
/// @param mask_count        number of mask entries; 0 or less: no mask
/// @param break_characters  packed characters in mapped form, in any order;
///                          null: no set
/// @param break_count       number of them; 0: no set, below 0: a set that
///                          contains nothing
/// @param edge_flag         the byte that a side at offset 0, or at `end`, gets
///                          as it is
/// @param before            set to 1 when the side before is a break, else to
///                          0, or to `edge_flag`; always written
/// @param after             the same for the side after
QUILL_EXPORT void utf8_TestBreakChars(
    const char* text, int32_t end, int32_t match_start, int32_t match_end,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char* before, unsigned char* after);

/// @}

// ---------------------------------------------------------------------------
// Searching UTF-8 text
// ---------------------------------------------------------------------------

/// @name Searching UTF-8 text
///
/// A match is a byte range whose characters compare equal to the pattern, as
/// utf8_CompareSubstring has it, and whose sides pass the word test: without a
/// break set every match does; with one, both sides must be breaks, as
/// utf8_TestBreakChars has it, or with the invert flag both must not. An
/// inverted test with a positive count of break characters but a null set, or
/// an edge flag other than 0 and 1 at an edge, passes nothing. Matches lie
/// inside the range; the character before one may not.
///
/// All searches take time in proportion to the range, times the number of
/// pattern elements at worst.
/// @{

/// Finds the first match that starts in a range.
///
/// A unit of work is one byte offset. Under a mask, or when the first element
/// is open, the host hears the offset to be tried next, and a stop takes effect
/// before that is tried; otherwise the text is scanned for the first element's
/// lead byte, the byte at the offset that the host has just heard has its look
/// first, and a scan that runs into the end of the range counts one unit more,
/// of which the host hears `end + 1`. A match found in the very unit is
/// returned whatever the host answers; the host then hears its end.
///
/// Refused, with nothing found: a null `text` or `pattern`, `start` below 0 or
/// above `end`, `end` below 1, `pattern_count` below 1. Allocates nothing but
/// the index of a long break set, and does without it when memory is short.
///
/// @param text              address of offset 0
/// @param start             byte offset where the range begins
/// @param end               byte offset where the range ends, exclusive
/// @param pattern           packed characters in mapped form
/// @param pattern_count     number of them, at least 1
/// @param position_flags    one byte an element, 1: fixed, any other: open;
///                          null: all are fixed
/// @param mask_keys         the mask's keys, ascending; null: no mask
/// @param mask_values       the mask's values; null: no mask
/// @param mask_count        number of mask entries; 0 or less: no mask
/// @param break_characters  the break set, in mapped form, in any order; null:
///                          none
/// @param break_count       number of break characters; 0: no set, below 0: a
///                          set that contains nothing
/// @param edge_flag         what a side at offset 0 of the text, or at `end`,
///                          counts as: 1 a break, 0 none
/// @param invert_flag       1: a match needs sides that are no breaks
/// @param found_start       set to 0 first, even when refused, then to the
///                          start of the match
/// @param found_end         set to `end` first, even when refused, then to the
///                          end of the match
/// @param reference         handed to `yield` unchanged
/// @param yield             asked every YieldMax units; must not be null
/// @return 1 when there is a match, else 0
QUILL_EXPORT int32_t utf8_FindStr(
    const char* text, int32_t start, int32_t end, const int32_t* pattern,
    int32_t pattern_count, const unsigned char* position_flags,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag, int32_t* found_start,
    int32_t* found_end, int32_t reference, QuillYield yield);

/// Finds the match that starts at the highest offset of a range.
///
/// Tries byte offsets from `end - pattern_count` down to `start`, each a unit
/// of work; the host hears the offset to be tried next, which is `start - 1`
/// after the last, or the start of the match. A stop takes effect before the
/// next offset; a match found in the very unit is returned all the same. A text
/// that opens with stray continuation bytes is matched from offset 0, where
/// they count as part of the first match's edge.
///
/// Refused, with nothing found: a null `text` or `pattern`, `start` below 0 or
/// above `end - pattern_count`, `end` below 1, `pattern_count` below 1.
/// Allocates as utf8_FindStr.
///
/// @param text              address of offset 0
/// @param start             byte offset where the range begins
/// @param end               byte offset where the range ends, exclusive
/// @param pattern           packed characters in mapped form
/// @param pattern_count     number of them, at least 1
/// @param position_flags    one byte an element, 1: fixed, any other: open;
///                          null: all are fixed
/// @param mask_keys         the mask's keys, ascending; null: no mask
/// @param mask_values       the mask's values; null: no mask
/// @param mask_count        number of mask entries; 0 or less: no mask
/// @param break_characters  the break set, in mapped form, in any order; null:
///                          none
/// @param break_count       number of break characters; 0: no set, below 0: a
///                          set that contains nothing
/// @param edge_flag         what a side at offset 0 of the text, or at `end`,
///                          counts as: 1 a break, 0 none
/// @param invert_flag       1: a match needs sides that are no breaks
/// @param found_start       set to 0 first, even when refused, then to the
///                          start of the match
/// @param found_end         set to `start` first, even when refused, then to
///                          the start, not the end, of the match: the `end` of
///                          a search for the one before
/// @param reference         handed to `yield` unchanged
/// @param yield             asked every YieldMax units; must not be null
/// @return 1 when there is a match, else 0
QUILL_EXPORT int32_t utf8_FindStrPrev(
    const char* text, int32_t start, int32_t end, const int32_t* pattern,
    int32_t pattern_count, const unsigned char* position_flags,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag, int32_t* found_start,
    int32_t* found_end, int32_t reference, QuillYield yield);

/// Finds the n-th match by repeated forward searches.
///
/// Each search begins at the end of the match before and is a utf8_FindStr in
/// every respect, down to what it writes, asks and refuses, with a count of its
/// own. The searches are units of work too: after every YieldMax of them the
/// host hears `found_end`, and a stop takes effect before the next search.
///
/// @param text              address of offset 0
/// @param start             byte offset where the range begins
/// @param end               byte offset where the range ends, exclusive
/// @param pattern           packed characters in mapped form
/// @param pattern_count     number of them, at least 1
/// @param position_flags    one byte an element, 1: fixed, any other: open;
///                          null: all are fixed
/// @param mask_keys         the mask's keys, ascending; null: no mask
/// @param mask_values       the mask's values; null: no mask
/// @param mask_count        number of mask entries; 0 or less: no mask
/// @param break_characters  the break set, in mapped form, in any order; null:
///                          none
/// @param break_count       number of break characters; 0: no set, below 0: a
///                          set that contains nothing
/// @param edge_flag         what a side at offset 0 of the text, or at `end`,
///                          counts as: 1 a break, 0 none
/// @param invert_flag       1: a match needs sides that are no breaks
/// @param occurrence        in: which match is wanted, from 1; out: the number
///                          of searches made, minus 1. With only k matches that
///                          is k, when the n-th was found n - 1, without any
///                          search -1
/// @param found_start       set to the start of the match, or to 0 when the
///                          last search found none; not written when no search
///                          was made
/// @param found_end         set to `start` first, then to the end of each
///                          match, or to `end` when a search finds none
/// @param reference         handed to `yield` unchanged
/// @param yield             asked every YieldMax units; must not be null
/// @return the result of the last search; 1 when none was asked for
QUILL_EXPORT int32_t utf8_FindStrNth(
    const char* text, int32_t start, int32_t end, const int32_t* pattern,
    int32_t pattern_count, const unsigned char* position_flags,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag, int32_t* occurrence,
    int32_t* found_start, int32_t* found_end, int32_t reference,
    QuillYield yield);

/// Counts the matches, each search beginning at the end of the match before.
///
/// Yields as utf8_FindStr within each search and, like utf8_FindStrNth, every
/// YieldMax searches, when the host hears where the next one would begin. A
/// stop between two searches leaves `stop` there; one within a search, and
/// parameters that utf8_FindStr refuses, end the count at `end`.
///
/// @param text              address of offset 0
/// @param start             byte offset where the range begins
/// @param end               byte offset where the range ends, exclusive
/// @param pattern           packed characters in mapped form
/// @param pattern_count     number of them, at least 1
/// @param position_flags    one byte an element, 1: fixed, any other: open;
///                          null: all are fixed
/// @param mask_keys         the mask's keys, ascending; null: no mask
/// @param mask_values       the mask's values; null: no mask
/// @param mask_count        number of mask entries; 0 or less: no mask
/// @param break_characters  the break set, in mapped form, in any order; null:
///                          none
/// @param break_count       number of break characters; 0: no set, below 0: a
///                          set that contains nothing
/// @param edge_flag         what a side at offset 0 of the text, or at `end`,
///                          counts as: 1 a break, 0 none
/// @param invert_flag       1: a match needs sides that are no breaks
/// @param match_count       set to the number of matches, at the end of the
///                          call
/// @param stop              set to the offset where searching stopped, at the
///                          end of the call: `end` when the range was searched
///                          through, `start` when it is empty
/// @param reference         handed to `yield` unchanged
/// @param yield             asked every YieldMax units; must not be null
/// @return always 1
QUILL_EXPORT int32_t utf8_CountStrAll(
    const char* text, int32_t start, int32_t end, const int32_t* pattern,
    int32_t pattern_count, const unsigned char* position_flags,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag, int32_t* match_count,
    int32_t* stop, int32_t reference, QuillYield yield);

/// Lists the matches, each search beginning at the end of the match before.
///
/// The result is a selection list, in a Block that becomes the host's: the
/// start and the end of every match, ascending, none overlapping. Yields and
/// stops as utf8_CountStrAll, with the matches found so far in the list. A list
/// that can't grow ends the search with what is in it. Outputs are written at
/// the end of the call.
///
/// @param text              address of offset 0
/// @param start             byte offset where the range begins
/// @param end               byte offset where the range ends, exclusive
/// @param pattern           packed characters in mapped form
/// @param pattern_count     number of them, at least 1
/// @param position_flags    one byte an element, 1: fixed, any other: open;
///                          null: all are fixed
/// @param mask_keys         the mask's keys, ascending; null: no mask
/// @param mask_values       the mask's values; null: no mask
/// @param mask_count        number of mask entries; 0 or less: no mask
/// @param break_characters  the break set, in mapped form, in any order; null:
///                          none
/// @param break_count       number of break characters; 0: no set, below 0: a
///                          set that contains nothing
/// @param edge_flag         what a side at offset 0 of the text, or at `end`,
///                          counts as: 1 a break, 0 none
/// @param invert_flag       1: a match needs sides that are no breaks
/// @param list              set to the list, or to null when there is no match
/// @param long_count        set to the number of longs in it, two a match
/// @param stop              set to the offset where searching stopped, as
///                          utf8_CountStrAll does
/// @param reference         handed to `yield` unchanged
/// @param yield             asked every YieldMax units; must not be null
/// @return 1, also when stopped or refused; 0 when the list can't be made, with
///         no list, a count of 0 and `stop` at `end`
QUILL_EXPORT int32_t utf8_FindStrAll(
    const char* text, int32_t start, int32_t end, const int32_t* pattern,
    int32_t pattern_count, const unsigned char* position_flags,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag, QuillBlock* list,
    int32_t* long_count, int32_t* stop, int32_t reference, QuillYield yield);

/// @}

// ---------------------------------------------------------------------------
// Breaks
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t utf8_FindBreaks(
    const char* text, int32_t lower_bound, int32_t end,
    const int32_t* backward_class, int32_t backward_count,
    unsigned char backward_flag, const int32_t* forward_class,
    int32_t forward_count, unsigned char forward_flag, int32_t* selection_start,
    int32_t* selection_end, unsigned char* break_found, int32_t reference,
    QuillYield yield);

QUILL_EXPORT int32_t utf8_ComputeBreaks(QuillBlock text, int32_t start,
                                        int32_t end, int32_t chunk,
                                        QuillBlock* list, int32_t* long_count,
                                        int32_t reference, QuillYield yield);

QUILL_EXPORT int32_t utf8_ComputeSpaceBreaks(
    QuillBlock text, int32_t start, int32_t end, int32_t width,
    QuillBlock* list, int32_t* long_count, int32_t reference, QuillYield yield);

// ---------------------------------------------------------------------------
// Range patterns
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t utf8_CompareRangePart(const QuillRangePart* part,
                                           const char* text, int32_t position,
                                           int32_t end, int32_t* next);

QUILL_EXPORT int32_t utf8_CompareRangePattern(
    const char* text, int32_t position, int32_t end,
    const QuillRangePart* const* parts, int32_t part_count, int32_t* next);

// ---------------------------------------------------------------------------
// Searching range patterns
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t utf8_FindPattern(const char* text, int32_t from,
                                      int32_t to,
                                      const QuillRangePart* const* parts,
                                      int32_t part_count, int32_t* start,
                                      int32_t* end, int32_t* next,
                                      int32_t reference, QuillYield yield);

QUILL_EXPORT int32_t utf8_FindPatternPrev(const char* text, int32_t from,
                                          int32_t to,
                                          const QuillRangePart* const* parts,
                                          int32_t part_count, int32_t* start,
                                          int32_t* end, int32_t* next,
                                          int32_t reference, QuillYield yield);

QUILL_EXPORT int32_t utf8_CountPatternAll(const char* text, int32_t from,
                                          int32_t to,
                                          const QuillRangePart* const* parts,
                                          int32_t part_count, int32_t* number,
                                          int32_t* stop, int32_t reference,
                                          QuillYield yield);

QUILL_EXPORT int32_t utf8_FindPatternAll(const char* text, int32_t from,
                                         int32_t to,
                                         const QuillRangePart* const* parts,
                                         int32_t part_count, QuillBlock* list,
                                         int32_t* long_count, int32_t* stop,
                                         int32_t reference, QuillYield yield);

QUILL_EXPORT int32_t utf8_FindKeyPatternAll(
    const char* text, int32_t from, int32_t to,
    const QuillRangePart* const* outer_parts, int32_t outer_part_count,
    const QuillRangePart* const* key_parts, int32_t key_part_count,
    QuillBlock* list, int32_t* long_count, int32_t* stop, int32_t reference,
    QuillYield yield);

QUILL_EXPORT int32_t utf8_SortPattern(QuillBlock* text, int32_t from,
                                      int32_t to,
                                      const QuillRangePart* const* parts,
                                      int32_t part_count, int32_t* stop,
                                      int32_t reference, QuillYield yield);

// ---------------------------------------------------------------------------
// Deleting and wrapping selections
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t DelSel(QuillBlock* text, QuillBlock selections);

QUILL_EXPORT int32_t InsertDualStr(QuillBlock* text, QuillBlock selections,
                                   const char* leading, int32_t leading_length,
                                   const char* trailing,
                                   int32_t trailing_length);

// ---------------------------------------------------------------------------
// Inserting at selections
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t InsertStr(QuillBlock* text, QuillBlock selections,
                               const char* string, int32_t string_length,
                               const unsigned char* position_flags);

QUILL_EXPORT int32_t InsertMaskedStr(QuillBlock* text, QuillBlock selections,
                                     const int32_t* characters,
                                     int32_t character_count,
                                     const unsigned char* position_flags);

// ---------------------------------------------------------------------------
// Replacing all matches
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t ReplaceStrAll(
    QuillBlock text, int32_t from, int32_t* to, const char* pattern,
    int32_t pattern_length, int32_t reserved1, const char* string,
    int32_t string_length, const unsigned char* insert_flags, int32_t reserved2,
    int32_t reserved3, int32_t reserved4, int32_t ignored, int32_t* position,
    int32_t reference, QuillYield yield);

QUILL_EXPORT int32_t utf8_ReplaceStrAll(
    QuillBlock* text, int32_t from, int32_t* to, const int32_t* pattern,
    int32_t pattern_count, const unsigned char* search_flags,
    const char* string, int32_t string_length,
    const unsigned char* insert_flags, const int32_t* mask_keys,
    const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag, int32_t* position,
    int32_t reference, QuillYield yield);

QUILL_EXPORT int32_t utf8_ReplacePatternAll(
    QuillBlock* text, int32_t from, int32_t* to,
    const QuillRangePart* const* parts, int32_t part_count, const char* string,
    int32_t string_length, const unsigned char* insert_flags, int32_t* new_end,
    int32_t reference, QuillYield yield);

// ---------------------------------------------------------------------------
// Replacing words through a table
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t utf8_WordTableReplace(
    QuillBlock* text, int32_t from, int32_t* to,
    const QuillRangePart* const* parts, int32_t part_count,
    const QuillWordEntry* const* words, int32_t word_count,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    int32_t* new_end, int32_t reference, QuillYield yield);

// ---------------------------------------------------------------------------
// Swapping byte patterns
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t BytePatternSwap(char* buffer, int32_t start, int32_t end,
                                     const char* pattern,
                                     const char* replacement, int32_t length,
                                     int32_t reference, QuillYield yield);

// ---------------------------------------------------------------------------
// Copying selections
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t CopySelectionsTo(const char* text, char* destination,
                                      int32_t capacity, int32_t* copied,
                                      const int32_t* selections, int32_t count,
                                      int32_t reference, QuillYield yield);

QUILL_EXPORT int32_t CopySuperSelectionsTo(const char* text, char* destination,
                                           int32_t capacity, int32_t* copied,
                                           const int32_t* records,
                                           int32_t count, int32_t reference,
                                           QuillYield yield);

// ---------------------------------------------------------------------------
// Sorting selections
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t utf8_SortSelections(const char* text, int32_t* selections,
                                         uint32_t byte_count,
                                         const int32_t* mask_keys,
                                         const int32_t* mask_values,
                                         int32_t mask_count);

QUILL_EXPORT int32_t utf8_SortKeySelections(const char* text, int32_t* records,
                                            uint32_t byte_count,
                                            const int32_t* mask_keys,
                                            const int32_t* mask_values,
                                            int32_t mask_count);

// ---------------------------------------------------------------------------
// Ordering, mapping, inverting and extracting selections
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t OrderSelections(QuillBlock* list, int32_t text_length);

QUILL_EXPORT int32_t SelectionToMap(char* map, int32_t text_length,
                                    QuillBlock list);

QUILL_EXPORT int32_t MapToSelection(const char* map, int32_t text_length,
                                    QuillBlock* list, int32_t* long_count);

QUILL_EXPORT int32_t InvertSelections(QuillBlock* list, int32_t range_start,
                                      int32_t range_end);

QUILL_EXPORT int32_t ExtractSelections(
    const char* text, QuillBlock list, const char* prefix,
    int32_t prefix_length, const char* suffix, int32_t suffix_length,
    QuillBlock* result, int32_t reference, QuillYield yield);

#ifdef __cplusplus
}  // extern "C"

// ---------------------------------------------------------------------------
// Functions with C++ linkage
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t ResizeActiveBlock(QuillBlock* block, int32_t* capacity,
                                       char** contents, int32_t size);

QUILL_EXPORT int32_t BitTest(char* bits, int32_t bit);

QUILL_EXPORT void BitSet(char* bits, int32_t bit);

QUILL_EXPORT void BitClear(char* bits, int32_t bit);

QUILL_EXPORT int32_t FindByte(char* text, int32_t start, int32_t end, char byte,
                              int32_t reference, QuillYield yield);

QUILL_EXPORT int32_t InsertMultiple(QuillBlock* text,
                                    QuillReplaceEntry** entries,
                                    int32_t entry_count);

QUILL_EXPORT int32_t iArrayToReplaceTable(QuillBlock selections,
                                          int32_t long_count, QuillBlock* table,
                                          int32_t* entry_count);

QUILL_EXPORT int32_t WordTable_FillReplaceTable(
    QuillReplaceEntry** entries, int32_t entry_count, QuillWordEntry** words,
    int32_t word_count, char* text, int32_t* mask_keys, int32_t* mask_values,
    int32_t mask_count);

QUILL_EXPORT int32_t DisposeReplaceTable(QuillBlock table, int32_t entry_count);

QUILL_EXPORT int CompareSelections(const void* first, const void* second,
                                   char* text, int32_t* mask_keys,
                                   int32_t* mask_values, int32_t mask_count);

QUILL_EXPORT void qSortV(void* base, uint32_t count, uint32_t element_size,
                         QuillCompare compare, char* text, int32_t* mask_keys,
                         int32_t* mask_values, int32_t mask_count);

#endif
