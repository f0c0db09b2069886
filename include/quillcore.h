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
