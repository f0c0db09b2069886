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

/// Copies the text under each selection, in list order, back to back.
///
/// The copying ends before the next selection once the destination is exactly
/// full; the result is then 1, and only `copied` tells whether anything was
/// left over. A selection that doesn't fit is not copied at all. An end before
/// the start covers nothing.
///
/// The callback is not asked at an interval: the number of selections done is
/// never set back, so that it is asked once, after exactly YieldMax selections,
/// and hears that number. Allocates nothing; one byte move for each selection.
///
/// @param text         address of offset 0; its bytes may overlap the
/// destination
/// @param destination  the host's buffer, written from its first byte on
/// @param capacity     bytes in the destination
/// @param copied       set to 0 and then kept at the bytes written so far; not
///                     written when `capacity` is below 1
/// @param selections   pairs of start and end, in any order; only read
/// @param count        number of selections; none when it is 0 or less
/// @param reference    handed to `yield` unchanged
/// @param yield        asked as told above; any answer but 1 ends the copying,
///                     with result 1 and what was copied so far
/// @return 0 when `capacity` is below 1 (nothing is written), when a selection
/// did
///         not fit or begins below offset 0 (those before it are copied); else
///         1
QUILL_EXPORT int32_t CopySelectionsTo(const char* text, char* destination,
                                      int32_t capacity, int32_t* copied,
                                      const int32_t* selections, int32_t count,
                                      int32_t reference, QuillYield yield);

/// Copies the text under each record's second pair, the outer match, in list
/// order, back to back: CopySelectionsTo for a key selection list. The keys are
/// not read.
///
/// @param text         address of offset 0; its bytes may overlap the
/// destination
/// @param destination  the host's buffer, written from its first byte on
/// @param capacity     bytes in the destination
/// @param copied       as in CopySelectionsTo
/// @param records      four longs each: key start, key end, start, end; only
/// read
/// @param count        number of records; none when it is 0 or less
/// @param reference    handed to `yield` unchanged
/// @param yield        asked once, after exactly YieldMax records, with that
///                     number as progress
/// @return as CopySelectionsTo
QUILL_EXPORT int32_t CopySuperSelectionsTo(const char* text, char* destination,
                                           int32_t capacity, int32_t* copied,
                                           const int32_t* records,
                                           int32_t count, int32_t reference,
                                           QuillYield yield);

// ---------------------------------------------------------------------------
// Sorting selections
// ---------------------------------------------------------------------------

/// @name Sorting selections
///
/// By the text that they cover: by code point, character for character, each
/// character mapped by the mask first. When one text begins the other, the one
/// of fewer bytes comes first, so empty selections come before all others. An
/// end before the start makes a negative length; such selections compare by
/// length alone. A character that can't be read before its selection's end
/// makes the two selections equal.
///
/// The sort is a heap sort and not stable: equal selections end in the order
/// that its steps give, which is always the same for the same list. Where
/// memory can be had it sorts keys taken from the texts, to the same result; it
/// needs none, and always succeeds. n log n comparisons.
/// @{

/// Sorts a selection list in place by the text of its selections. The list is
/// no longer canonical afterwards; OrderSelections restores the order of
/// offsets.
///
/// @param text         address of offset 0; only read
/// @param selections   pairs of start and end
/// @param byte_count   bytes in the list; what is left over a whole selection
/// at
///                     its end stays where it is
/// @param mask_keys    keys of the mask, ascending
/// @param mask_values  values of the mask
/// @param mask_count   entries of the mask; 0 for none
/// @return always 1
QUILL_EXPORT int32_t utf8_SortSelections(const char* text, int32_t* selections,
                                         uint32_t byte_count,
                                         const int32_t* mask_keys,
                                         const int32_t* mask_values,
                                         int32_t mask_count);

/// Sorts a key selection list in place by the text of its keys. Each record
/// moves as a whole.
///
/// @param text         address of offset 0; only read
/// @param records      four longs each: key start, key end, start, end
/// @param byte_count   bytes in the list; what is left over a whole record at
/// its
///                     end stays where it is
/// @param mask_keys    keys of the mask, ascending
/// @param mask_values  values of the mask
/// @param mask_count   entries of the mask; 0 for none
/// @return always 1
QUILL_EXPORT int32_t utf8_SortKeySelections(const char* text, int32_t* records,
                                            uint32_t byte_count,
                                            const int32_t* mask_keys,
                                            const int32_t* mask_values,
                                            int32_t mask_count);

/// @}

// ---------------------------------------------------------------------------
// Ordering, mapping, inverting and extracting selections
// ---------------------------------------------------------------------------

/// Makes a list canonical, in place: ascending, what touches or overlaps
/// merged, what is empty dropped. The bytes covered stay the same.
///
/// Offsets outside the text are cut to it, selections with the end before the
/// start cover nothing, and a lone last long is dropped. A list that covers
/// nothing becomes a Block of size 0. Time is linear in the list and the text;
/// a list that is in order already is only looked through.
///
/// @param list         the host's variable that holds the list; the Block stays
///                     the same one, shrinks to what is left and ends unlocked
/// @param text_length  bytes in the text that the list belongs to
/// @return 0 when memory for a map of the text, one bit a byte, can't be had:
/// the
///         list is as it was; else 1, also when the list is null or the length
///         below 1 and nothing was done
QUILL_EXPORT int32_t OrderSelections(QuillBlock* list, int32_t text_length);

/// Adds a list to a selection map. Bit n of the map (as BitTest counts) stands
/// for the text's byte n - 1, bit 0 for none: a selection sets the bits start +
/// 1 to end. Bits are never cleared, so that several lists give their union.
///
/// Offsets outside the text are cut to it, an end at or before the start sets
/// nothing, and a lone last long is ignored. Works by words; allocates nothing.
///
/// @param map          the host's `(text_length + 9) / 8` bytes, of which only
/// the
///                     bits of the list change
/// @param text_length  bytes in the text; below 1 nothing is done
/// @param list         the list, only read; ends unlocked. Null is no list
/// @return always 1
QUILL_EXPORT int32_t SelectionToMap(char* map, int32_t text_length,
                                    QuillBlock list);

/// Makes the canonical list of a selection map: one selection for each run of
/// set bits, from its first bit less 1 to its last bit.
///
/// The bits read are 0 to `text_length + 1`. The outermost two stand for no
/// byte: a host that has set them finds a start of -1, or an end of one more
/// than the length, in the list. Works by words.
///
/// @param map          `(text_length + 9) / 8` bytes, only read
/// @param text_length  bytes in the text; below 1 nothing is done or written
/// @param list         set to the new list, which is the host's, or to null
/// when no
///                     bit is set; not written on failure
/// @param long_count   set to the list's number of longs, after `list`; not
/// written
///                     on failure
/// @return 0 when memory for the list can't be had; else 1. When a list that
/// has
///         begun can't grow, the selections that no longer fit are left out
QUILL_EXPORT int32_t MapToSelection(const char* map, int32_t text_length,
                                    QuillBlock* list, int32_t* long_count);

/// Turns a canonical list, in place, into its complement within a range: what
/// lies between its selections, before the first and behind the last.
///
/// A list of size 0 becomes the whole range. Left as it is, with result 1: no
/// list (null); a list that does not ascend within the range, or is no whole
/// number of selections; a range that ends before it starts; and a list that
/// has to grow, by 8 bytes at most, where memory is short.
///
/// @param list         the host's variable that holds the list; the Block stays
///                     the same one and ends unlocked
/// @param range_start  first offset of the range
/// @param range_end    the offset just past it
/// @return always 1
QUILL_EXPORT int32_t InvertSelections(QuillBlock* list, int32_t range_start,
                                      int32_t range_end);

/// Gathers the text of every selection that is not empty into a new Block, in
/// list order, each piece between a prefix and a suffix.
///
/// The size is computed beforehand: one allocation of exactly the result. A
/// unit of work is one selection, also an empty one; the host hears the index
/// of the next long of the list.
///
/// @param text           address of offset 0
/// @param list           the list, in any order; only read, ends unlocked. A
/// lone
///                       last long is ignored, an end before the start is empty
/// @param prefix         bytes put before each piece
/// @param prefix_length  bytes in the prefix; 0 or less for none
/// @param suffix         bytes put behind each piece
/// @param suffix_length  bytes in the suffix; 0 or less for none
/// @param result         set to the new Block, which is the host's, or to null
/// when
///                       the host stopped the call; not written when the result
///                       is 0
/// @param reference      handed to `yield` unchanged
/// @param yield          asked after every YieldMax selections; any answer but
/// 1
///                       ends the call and drops what was gathered
/// @return 0 when the list has fewer than two longs, a selection begins below
///         offset 0, bytes that are needed are null, the result would be larger
///         than a Block, or memory is short; else 1, also when stopped
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

/// Compares two selections by the text that they cover, in the order of
/// utf8_SortSelections.
///
/// With a `mask_count` other than 0 the character that contains a position is
/// read, which can begin before its selection. Where only stray continuation
/// bytes are left to read on both sides, the two are equal.
///
/// @param first        pointer to the first selection's start and end
/// @param second       pointer to the second's; more longs may follow either
/// @param text         address of offset 0; only read
/// @param mask_keys    keys of the mask, ascending
/// @param mask_values  values of the mask
/// @param mask_count   entries of the mask; 0 for none
/// @return negative when the first comes first, 0 when they are equal, else
///         positive: the difference of two code points, or of the lengths in
///         bytes
QUILL_EXPORT int CompareSelections(const void* first, const void* second,
                                   char* text, int32_t* mask_keys,
                                   int32_t* mask_values, int32_t mask_count);

/// Sorts elements of any size in place, in ascending order of a comparison. A
/// heap sort: not stable, in the worst case too n log n comparisons, no
/// recursion. Allocates nothing.
///
/// Elements are compared where they lie, and exchanged whole. The comparison
/// may answer as it likes; the sort ends all the same.
///
/// @param base          address of the first element
/// @param count         number of elements
/// @param element_size  bytes in an element
/// @param compare       negative when its first element comes first, positive
/// when
///                      its second does, 0 when they are equal
/// @param text          handed to `compare` unchanged, as are the next three
/// @param mask_keys     see `text`
/// @param mask_values   see `text`
/// @param mask_count    see `text`
QUILL_EXPORT void qSortV(void* base, uint32_t count, uint32_t element_size,
                         QuillCompare compare, char* text, int32_t* mask_keys,
                         int32_t* mask_values, int32_t mask_count);

#endif
