/// @file
/// Quillcore: operations on UTF-8 text, for editors and other hosts.
///
/// Reading and counting characters, searching (byte strings, strings of
/// characters, range patterns), editing at many places at once, and selections
/// as sets. The library keeps no state but YieldMax, reads no file, prints
/// nothing and throws nothing. Valid C11 and C++17; eleven functions have C++
/// linkage and are declared for C++ only.
///
/// ## Results
/// Offsets, lengths, counts and characters are `int32_t`. Unless its
/// description says otherwise a function returns 1 for true and 0 for false,
/// and a false result is all that is heard of a failure. Each description says
/// what is written before a refusal; what it does not name keeps its value.
/// Lengths are added up in 64 bits: an edit whose result would be longer than
/// 2,147,483,647 bytes is refused and changes nothing. A flag is one byte, and
/// counts as set only when it is 1, unless its description says otherwise.
///
/// ## Text
/// A text is the address of its byte 0, or a Block that holds it. It has no
/// terminator. Places are byte offsets from 0; a range `[start, end)` leaves
/// out its end. Nothing is read at or beyond `end`; what lies before `start`
/// may be, down to offset 0, to see the character before a match.
///
/// ## Characters
/// The first byte alone says how long a character is: 0x00 to 0x7F one byte,
/// 0xC0 to 0xDF two, 0xE0 to 0xEF three, 0xF0 to 0xFF four. The bytes after it
/// belong to it whatever they are. So malformed text is read, not refused:
/// continuation bytes (0x80 to 0xBF) that no character claims are skipped on
/// the way to the next first byte, and a character that the end of the range
/// cuts off can't be read.
///
/// A *packed character* is a character's bytes in one `int32_t`, the first byte
/// lowest, missing bytes 0: `'a'` is 0x61, U+00E9 (C3 A9) is 0xA9C3. Packed
/// characters are ordered as signed numbers, which is not the order of code
/// points: those of four bytes with a last byte of 0x80 or more are negative.
///
/// ## Masks
/// A mask is three parameters: `mask_keys`, `mask_values` and `mask_count`. A
/// packed character equal to key i becomes value i, any other stays as it is.
/// Keys are in ascending signed order (utf8_SortMask); of equal keys the first
/// counts. A null array or a count of 0 is the mask that changes nothing. Text
/// is mapped before it is compared; patterns, words and break sets are not, so
/// the host gives them in *mapped form*.
///
/// ## Position flags
/// One byte for each character of a pattern or template. 1 makes the position
/// fixed; any other byte leaves it open: in a search it accepts every
/// character, in an insertion it keeps the character that is there. Null makes
/// all positions fixed.
///
/// ## Break sets
/// `break_characters` and `break_count` list the packed characters, in mapped
/// form and in any order, that delimit words. A match then counts only when a
/// break character stands on either side of it; or, with `invert_flag` 1, when
/// none does. At offset 0 and at the end of the range `edge_flag` answers in
/// place of a character: 1 for a break. Null or a count of 0 accepts every
/// match.
///
/// ## Selection lists
/// A selection is a pair of offsets, start and end; a selection list is an
/// array of them, in a Block or at an address. Counts of a list are in longs
/// (two for a selection) where a parameter says so. A list is *canonical* when
/// `0 <= start <= end <= text length` for every selection, each begins at or
/// after the end of the one before, and the number of longs is even. Searches
/// produce canonical lists; edits ask for one, and refuse any other without a
/// change. OrderSelections makes any list canonical. A *key selection list*
/// has records of four longs: the selection of a key, then that of the outer
/// match it lies in.
///
/// ## Blocks
/// A Block (QuillBlock) is memory that may move when its size changes: a
/// pointer to the pointer to its bytes. The host locks a Block while it uses
/// the address (LockBlock), and takes the address anew after any call that may
/// have resized it. Locks do not nest, and calls unlock what they locked
/// without looking: a Block that the host had locked comes back unlocked.
///
/// Blocks that the host passes in stay the host's, and so do all arrays, which
/// are only read unless a description says otherwise. A Block that a call
/// hands out through a variable belongs to the host once the call has returned
/// true; it goes back through DisposeBlock. What a call makes for itself it
/// releases on every path. Edits take the address of the host's variable that
/// holds the Block, since an edit may put another Block there; the host takes
/// it from its variable again.
///
/// ## Yielding
/// Operations that may run long take `reference` and `yield` last. Every
/// YieldMax units of work (the descriptions name the unit) they call
/// `yield(reference, progress)`, on the caller's thread, from inside the call;
/// most pass as progress how far in the text they have come. Only an answer of
/// 1 lets the operation go on: any other byte, from a host in another language
/// say, stops it. What was done up to then stays done, and is handed over. The
/// callback may set YieldMax; it must not resize, move or dispose of anything
/// that the running call uses. It may be null only when it cannot be due, that
/// is while YieldMax is 0 or less.
///
/// ## Threads
/// There are none inside, and no locks. Calls on different data may run at the
/// same time; they share only YieldMax, which is read without synchronisation.
///
/// ## Example
/// Replaces a word throughout a text, whatever its case; prints "A dog, the
/// dog's hat, and a bobcat."
/// @code{.c}
/// #include <quillcore.h>
/// #include <stdio.h>
/// #include <string.h>
///
/// static bool go_on(int32_t reference, int32_t progress) {
///   return reference == 0 && progress >= 0;  // a host answers false to stop
/// }
///
/// int main(void) {
///   const char text[] = "A cat, the Cat's hat, and a bobcat.";
///   const int32_t size = (int32_t)strlen(text);
///   QuillBlock block = NewBlock(size);
///   if (block == NULL) return 1;
///   memcpy(LockBlock(block), text, strlen(text));
///   UnlockBlock(block);
///
///   int32_t upper[26], lower[26];  // a mask that takes A to Z for a to z
///   for (int i = 0; i < 26; ++i) upper[i] = 'A' + i, lower[i] = 'a' + i;
///   const int32_t word[] = {'c', 'a', 't'}, breaks[] = {' ', ',', '.', '\''};
///
///   int32_t end = size, caret = size;  // both move with the text
///   const int32_t done = utf8_ReplaceStrAll(
///       &block, 0, &end, word, 3, NULL,     // where, and what is sought
///       "dog", 3, NULL,                     // what comes in its place
///       upper, lower, 26, breaks, 4, 1, 0,  // in any case, whole words
///       &caret, 0, go_on);
///   if (done) printf("%.*s\n", (int)end, LockBlock(block));
///   DisposeBlock(block);
///   return !done;
/// }
/// @endcode
#pragma once

#include <stdbool.h>
#include <stdint.h>

/// Marks what the library offers to its hosts.
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

/// A Block: the address of the pointer to its bytes, or null for no Block.
typedef char** QuillBlock;

/// The host's callback.
///
/// @param reference what the host gave the call, unchanged
/// @param progress  how far the call has come, as its description says
/// @return whether to go on; only a byte that equals 1 says so
typedef bool (*QuillYield)(int32_t reference, int32_t progress);

typedef struct QuillRangePart {
  const int32_t* characters;
  int32_t character_count;
  int32_t minimum;
  int32_t maximum;
  unsigned char include;
} QuillRangePart;

/// One entry of a replace table: a selection and what is to become of it.
///
/// A replace table is an array of pointers to entries, in ascending order of
/// their selections, which don't overlap. iArrayToReplaceTable makes one,
/// WordTable_FillReplaceTable fills it in, InsertMultiple applies it.
typedef struct QuillReplaceEntry {
  int32_t start;            ///< of the selection, a byte offset
  int32_t end;              ///< just past it
  const char* replacement;  ///< bytes, not owned; not read for kind 0
  int32_t replacement_length;
  /// 0: the selection stays; else it is replaced, and the replacement is
  /// 1: shorter than the selection, 2: as long, 3: longer.
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

/// Units of work between two calls of the yield callback; 10000 at first.
///
/// The host may set it at any time, also from inside the callback. A running
/// call compares its count with it after every unit, for equality: when
/// YieldMax has been lowered to less than the count, that call asks no more. 0
/// or less turns asking off.
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

QUILL_EXPORT int32_t utf8_CompareSubstring(const char* text, int32_t position,
                                           int32_t end, const int32_t* pattern,
                                           int32_t pattern_count,
                                           const unsigned char* position_flags,
                                           const int32_t* mask_keys,
                                           const int32_t* mask_values,
                                           int32_t mask_count, int32_t* next);

QUILL_EXPORT int32_t utf8_CompareSelString(const char* text, int32_t position,
                                           int32_t end, const int32_t* pattern,
                                           int32_t pattern_count,
                                           const unsigned char* position_flags,
                                           const int32_t* mask_keys,
                                           const int32_t* mask_values,
                                           int32_t mask_count, int32_t* next);

QUILL_EXPORT void utf8_TestBreakChars(
    const char* text, int32_t end, int32_t match_start, int32_t match_end,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char* before, unsigned char* after);

// ---------------------------------------------------------------------------
// Searching UTF-8 text
// ---------------------------------------------------------------------------

QUILL_EXPORT int32_t utf8_FindStr(
    const char* text, int32_t start, int32_t end, const int32_t* pattern,
    int32_t pattern_count, const unsigned char* position_flags,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag, int32_t* found_start,
    int32_t* found_end, int32_t reference, QuillYield yield);

QUILL_EXPORT int32_t utf8_FindStrPrev(
    const char* text, int32_t start, int32_t end, const int32_t* pattern,
    int32_t pattern_count, const unsigned char* position_flags,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag, int32_t* found_start,
    int32_t* found_end, int32_t reference, QuillYield yield);

QUILL_EXPORT int32_t utf8_FindStrNth(
    const char* text, int32_t start, int32_t end, const int32_t* pattern,
    int32_t pattern_count, const unsigned char* position_flags,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag, int32_t* occurrence,
    int32_t* found_start, int32_t* found_end, int32_t reference,
    QuillYield yield);

QUILL_EXPORT int32_t utf8_CountStrAll(
    const char* text, int32_t start, int32_t end, const int32_t* pattern,
    int32_t pattern_count, const unsigned char* position_flags,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag, int32_t* match_count,
    int32_t* stop, int32_t reference, QuillYield yield);

QUILL_EXPORT int32_t utf8_FindStrAll(
    const char* text, int32_t start, int32_t end, const int32_t* pattern,
    int32_t pattern_count, const unsigned char* position_flags,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag, QuillBlock* list,
    int32_t* long_count, int32_t* stop, int32_t reference, QuillYield yield);

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

/// Removes the bytes of every selection.
///
/// The Block stays the same and shrinks. Every byte that is kept moves once,
/// and nothing is allocated. Text and list come back unlocked, unless there was
/// nothing to do.
///
/// @param text       the variable that holds the text; null in it is an empty
///                   text
/// @param selections a canonical list, only read; null is an empty one
/// @return 1, also for an empty text or an empty list, with nothing touched; 0
///         for a list that is not canonical in a text of one byte or more, with
///         nothing changed
QUILL_EXPORT int32_t DelSel(QuillBlock* text, QuillBlock selections);

/// Puts one string before and another behind every selection.
///
/// The selected bytes stay. An empty selection gets both strings at its place,
/// leading first. The Block stays the same and grows once, before anything is
/// moved; every byte moves at most once. Text and list come back unlocked.
///
/// @param text            the variable that holds the text
/// @param selections      a canonical list, only read
/// @param leading         bytes put before each selection
/// @param leading_length  their number; with 0 `leading` may be null
/// @param trailing        bytes put behind each selection
/// @param trailing_length their number; with 0 `trailing` may be null
/// @return 1 when the text was edited; 0, with nothing changed, for a list of
///         fewer than two longs, without a Block in the variable, for a list
///         that is not canonical, a negative length, a string missing, or when
///         the result would be too long or memory is short
QUILL_EXPORT int32_t InsertDualStr(QuillBlock* text, QuillBlock selections,
                                   const char* leading, int32_t leading_length,
                                   const char* trailing,
                                   int32_t trailing_length);

// ---------------------------------------------------------------------------
// Inserting at selections
// ---------------------------------------------------------------------------

/// Puts a string in place of every selection.
///
/// One of three things happens:
/// - Without a string (length 0) the selections are deleted, as by DelSel.
/// - With a flag of 0 among those of the string's characters the string is
///   decoded and laid over each selection, as by InsertMaskedStr; the variable
///   then holds another Block.
/// - Otherwise every selection gives way to the string's bytes, and an empty
/// one
///   is an insertion point. The Block stays the same, every byte moves at most
///   once, and memory is only needed to grow the Block.
///
/// Replacing in place changes the list: every pair becomes the place of its
/// selection in the text as it would be if only selections longer than the
/// string had been replaced. Where no selection is shorter than the string,
/// that is where the string lies in the result. Deleting and overlaying leave
/// the list alone. Text and list come back unlocked.
///
/// @param text           the variable that holds the text
/// @param selections     a canonical list
/// @param string         the bytes put in
/// @param string_length  their number
/// @param position_flags a byte for each character of the string, or null;
///                       characters are counted as utf8_CountCharacters counts
///                       them
/// @return 1 when the text was edited, and what DelSel or InsertMaskedStr would
///         return; 0, with text and list unchanged, for an empty list that is
///         not deleted or overlaid, a list that is not canonical, no Block in
///         the variable, a negative length, a string missing, or when the
///         result would be too long or memory is short
QUILL_EXPORT int32_t InsertStr(QuillBlock* text, QuillBlock selections,
                               const char* string, int32_t string_length,
                               const unsigned char* position_flags);

/// Lays a template of characters over every selection.
///
/// A position whose flag is 1 gets the template's character. Any other keeps
/// the character that the selected text has there, and gets the template's
/// where the selection has no more. So every selection becomes exactly as many
/// characters as the template has; what is beyond them is dropped. A packed
/// character is written as its lowest byte and then each higher byte that is
/// not 0.
///
/// The result is a new Block, stored into the variable; the old one is disposed
/// of. It is filled in growing steps of 1,000,000 bytes and trimmed at the end.
/// A template of 0 characters deletes the selections, as DelSel does, in the
/// Block that is there. The list is only read, and comes back unlocked.
///
/// @param text            the variable that holds the text
/// @param selections      a canonical list
/// @param characters      the template: packed characters
/// @param character_count their number
/// @param position_flags  a byte for each character of the template
/// @return 1 when the text was edited, and for an empty list, with nothing
///         touched; 0, with nothing changed and the old Block in the variable,
///         for a list that is not canonical, no Block in the variable, a
///         negative count, a template or flags missing, or when the result
///         would be too long or memory is short
QUILL_EXPORT int32_t InsertMaskedStr(QuillBlock* text, QuillBlock selections,
                                     const int32_t* characters,
                                     int32_t character_count,
                                     const unsigned char* position_flags);

// ---------------------------------------------------------------------------
// Replacing all matches
// ---------------------------------------------------------------------------

/// Replaces every occurrence of a byte string in a range by another string.
///
/// All matches are found first, by FindStrAll, and then replaced in one edit,
/// by InsertStr: what was put in is never searched. When the host stops the
/// search, the matches found up to then are replaced. The list of matches is
/// made and disposed of here.
///
/// The text stays in the Block that the host passes, whatever the flags: the
/// result of an overlay is copied into it. It comes back unlocked.
///
/// @param text           the Block to edit; null is refused with nothing
/// written
/// @param from           where the range begins, a byte offset
/// @param to             the end of the range, exclusive; once the search was
/// made
///                       it is moved by the change in the text's length
/// @param pattern        the bytes sought
/// @param pattern_length their number, at least 1
/// @param reserved1      ignored
/// @param string         the bytes put in place of each match
/// @param string_length  their number; 0 deletes the matches
/// @param insert_flags   position flags of `string` as in InsertStr, or null
/// @param reserved2      ignored
/// @param reserved3      ignored
/// @param reserved4      ignored
/// @param ignored        not read
/// @param position       an offset of the host's; moved like `to` once the
/// search
///                       was made, set to the value of `to` when it was not
/// @param reference      passed to `yield`
/// @param yield          called by the search, as FindStrAll says
/// @return what InsertStr returns, so 0 also when nothing was found, `string`
/// is
///         not empty and no flag asks for an overlay; 0 when the search is not
///         made: FindStrAll refuses its arguments, `to` lies beyond the text,
///         or memory is short. After a 0 the text is unchanged. An edit is
///         refused when the result would be too long, or the moved position
///         would be above 2,147,483,647
QUILL_EXPORT int32_t ReplaceStrAll(
    QuillBlock text, int32_t from, int32_t* to, const char* pattern,
    int32_t pattern_length, int32_t reserved1, const char* string,
    int32_t string_length, const unsigned char* insert_flags, int32_t reserved2,
    int32_t reserved3, int32_t reserved4, int32_t ignored, int32_t* position,
    int32_t reference, QuillYield yield);

/// Replaces every match of a string of characters in a range.
///
/// As ReplaceStrAll, with the matches that utf8_FindStrAll finds: under open
/// positions, a mask, and the word test. When nothing is found nothing is
/// edited, and that is a success. An overlay (see InsertStr) stores a new Block
/// into the host's variable.
///
/// @param text             the variable that holds the text; null in it is
/// refused
///                         with nothing written
/// @param from             where the range begins, a byte offset
/// @param to               the end of the range, exclusive; once the search was
///                         made it is moved by the change in the text's length
/// @param pattern          the packed characters sought, in mapped form
/// @param pattern_count    their number
/// @param search_flags     position flags of `pattern`, or null
/// @param string           the bytes put in place of each match
/// @param string_length    their number; 0 deletes the matches
/// @param insert_flags     position flags of `string` as in InsertStr, or null
/// @param mask_keys        the mask of the search
/// @param mask_values      the mask of the search
/// @param mask_count       the mask of the search
/// @param break_characters the break set of the search, or null
/// @param break_count      its number of characters
/// @param edge_flag        1: the ends of the text are breaks
/// @param invert_flag      1: matches between break characters don't count
/// @param position         an offset of the host's; moved like `to` once the
///                         search was made, set to the value of `to` when it
///                         was not
/// @param reference        passed to `yield`
/// @param yield            called by the search, as utf8_FindStrAll says
/// @return 1 when nothing was found, else what InsertStr returns; 0 when the
///         search is not made: `to` lies beyond the text, or memory is short.
///         After a 0 the text is unchanged. An edit is refused when the result
///         would be too long, or the moved position would be above
///         2,147,483,647
QUILL_EXPORT int32_t utf8_ReplaceStrAll(
    QuillBlock* text, int32_t from, int32_t* to, const int32_t* pattern,
    int32_t pattern_count, const unsigned char* search_flags,
    const char* string, int32_t string_length,
    const unsigned char* insert_flags, const int32_t* mask_keys,
    const int32_t* mask_values, int32_t mask_count,
    const int32_t* break_characters, int32_t break_count,
    unsigned char edge_flag, unsigned char invert_flag, int32_t* position,
    int32_t reference, QuillYield yield);

/// Replaces every match of a range pattern in a range.
///
/// As utf8_ReplaceStrAll, with the matches that utf8_FindPatternAll finds.
///
/// @param text          the variable that holds the text; null in it is refused
///                      with nothing written
/// @param from          where the range begins, a byte offset
/// @param to            the end of the range, exclusive; moved by the change in
///                      the text's length
/// @param parts         the parts of the pattern
/// @param part_count    their number
/// @param string        the bytes put in place of each match
/// @param string_length their number; 0 deletes the matches
/// @param insert_flags  position flags of `string` as in InsertStr, or null
/// @param new_end       receives the final value of `to`, also when the search
/// was
///                      not made
/// @param reference     passed to `yield`
/// @param yield         called by the search, as utf8_FindPatternAll says
/// @return 1 when nothing was found, else what InsertStr returns; 0 when the
///         search is not made: `to` lies beyond the text, or memory is short.
///         After a 0 the text is unchanged
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

/// Puts the replacement of every entry of a replace table in place of its
/// selection.
///
/// The Block stays the same, every byte moves at most once, and memory is only
/// needed to grow the Block. On return every entry's `start` and `end` hold the
/// place of its selection in the text as it would be if only entries of kind 1
/// had been applied; of kinds 0 to 2 that is the place in the result as long as
/// no entry before is of kind 3. The other fields are only read. The text comes
/// back unlocked.
///
/// The whole table is checked before the first byte moves.
///
/// @param text        the variable that holds the text
/// @param entries     the table's first entry pointer; the entries are the
/// host's
/// @param entry_count the number of entries
/// @return 1 when the table was applied, also when all entries are of kind 0;
/// 0,
///         with nothing changed, for a count of 0 or less, no Block in the
///         variable, a missing entry, selections out of order, overlapping or
///         outside the text, a kind that is none or contradicts the lengths, a
///         replacement missing or of negative length, or when the result would
///         be too long or memory is short
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
