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
/// produce canonical lists; edits ask for one, in a Block other than the
/// text's, and refuse any other without a change. OrderSelections makes any
/// list canonical. A *key selection list* has records of four longs: the
/// selection of a key, then that of the outer match it lies in.
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

/// One part of a range pattern: a run of characters that are all in a set, or
/// all outside it.
///
/// The record and its set belong to the host and are only read.
typedef struct QuillRangePart {
  /// The set: packed characters in ascending signed order, every member
  /// listed. Equal ones do no harm; in a set out of order members are missed.
  const int32_t* characters;
  /// Members of the set; 0 or less makes it empty.
  int32_t character_count;
  /// Fewest characters in the run.
  int32_t minimum;
  /// Most characters in the run; 0 for as many as there are. Below 0 the part
  /// matches nowhere.
  int32_t maximum;
  /// Any byte but 0: the run is of characters in the set; 0: of others.
  unsigned char include;
} QuillRangePart;

/// One entry of a replace table: a selection and what is to become of it.
///
/// A replace table is an array of pointers to entries, in ascending order of
/// their selections, which don't overlap. iArrayToReplaceTable makes one,
/// WordTable_FillReplaceTable fills it in, InsertMultiple applies it.
typedef struct QuillReplaceEntry {
  int32_t start;               ///< of the selection, a byte offset
  int32_t end;                 ///< just past it
  const char* replacement;     ///< bytes, not owned; not read for kind 0
  int32_t replacement_length;  ///< bytes
  /// 0: the selection stays; else it is replaced, and the replacement is
  /// 1: shorter than the selection, 2: as long, 3: longer.
  int32_t kind;
} QuillReplaceEntry;

/// A word of a word table and what takes its place. The library only reads it;
/// both arrays are the host's and stay in place while the table is in use.
typedef struct QuillWordEntry {
  /// The word's packed characters, in mapped form.
  const int32_t* word;
  /// Number of characters in the word; every selection begins with a word of 0
  /// or fewer.
  int32_t word_count;
  /// UTF-8 bytes put in place of a selection that begins with the word.
  const char* replacement;
  /// Number of bytes in the replacement; 0 deletes the selection.
  int32_t replacement_length;
} QuillWordEntry;

/// How qSortV compares two elements.
///
/// @param first       one element of the array
/// @param second      another
/// @param text        this and the following as qSortV was given them
/// @param mask_keys   see above
/// @param mask_values see above
/// @param mask_count  see above
/// @return below 0 when the first comes first, 0 when it does not matter,
///         above 0 when the second comes first
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

/// Makes a Block whose contents are undefined.
///
/// @param size  bytes; 0 makes a Block with an address but no contents
/// @return the Block, the host's, to be disposed of; null when `size` is
///         negative or memory is short
QUILL_EXPORT QuillBlock NewBlock(int32_t size);

/// Makes a Block filled with zero bytes.
///
/// @param size  bytes, as for NewBlock
/// @return as NewBlock
QUILL_EXPORT QuillBlock NewBlockClear(int32_t size);

/// Changes the size of a Block and unlocks it. The contents may move; the bytes
/// up to the smaller of both sizes stay. When the size can't be had, size and
/// contents stay as they were: the host compares GetBlockSize. Bytes that a
/// larger size adds are undefined.
///
/// @param block  the Block; null is ignored
/// @param size   bytes; a negative size can't be had
/// @return `block`, always
QUILL_EXPORT QuillBlock ResizeBlock(QuillBlock block, int32_t size);

/// The size of a Block.
///
/// @param block  the Block, or null
/// @return bytes; 0 for null
QUILL_EXPORT int32_t GetBlockSize(QuillBlock block);

/// Locks a Block, so that its contents stay where they are.
///
/// @param block  the Block, not null
/// @return the address of the contents, valid until the Block is unlocked,
///         resized or disposed of
QUILL_EXPORT char* LockBlock(QuillBlock block);

/// Unlocks a Block, however often it was locked.
///
/// @param block  the Block; null is ignored
QUILL_EXPORT void UnlockBlock(QuillBlock block);

/// Releases a Block and its contents, locked or not.
///
/// @param block  the Block, not used again afterwards; null is ignored
QUILL_EXPORT void DisposeBlock(QuillBlock block);

/// Copies bytes as if through a buffer: the two places may overlap.
///
/// @param source       address of the first byte copied
/// @param destination  where it goes
/// @param count        bytes; 0 or less does nothing
QUILL_EXPORT void MoveBytes(const void* source, void* destination,
                            int32_t count);

// ---------------------------------------------------------------------------
// Arrays of longs
// ---------------------------------------------------------------------------

/// Finds a value in an ascending array by bisection; compares signed. Reads
/// about log2(count) + 1 elements.
///
/// @param array  the elements, ascending; equal ones may occur
/// @param count  number of elements; with 0 or less the array is not read
/// @param key    the value sought
/// @param index  always set: to the index of the first element equal to `key`,
///               else to that of the first greater one, else to `count` (0 when
///               that is negative)
/// @return 1 when an element equals `key`, else 0
QUILL_EXPORT int32_t BinarySearchLongs(const int32_t* array, int32_t count,
                                       int32_t key, int32_t* index);

/// Sorts part of an array in place into ascending signed order. Allocates
/// nothing; takes n log n time at most, whatever the input.
///
/// @param array  the elements
/// @param first  index of the first element to be sorted
/// @param limit  index just past the last one; nothing happens when it is not
///               above `first`
QUILL_EXPORT void SortLongs(int32_t* array, int32_t first, int32_t limit);

/// Exchanges two values.
///
/// @param first   the one
/// @param second  the other; may be the same
QUILL_EXPORT void SwapLongs(int32_t* first, int32_t* second);

// ---------------------------------------------------------------------------
// Reading characters
// ---------------------------------------------------------------------------

/// Reads the first character whose first byte lies at or after a position:
/// skips continuation bytes. Stepping through a text passes `next` as the next
/// position.
///
/// @param text       address of offset 0; null reads as no character
/// @param position   byte offset at which reading begins
/// @param end        byte offset that bounds the reading, exclusive
/// @param start      set to the offset of the character's first byte; not
///                   written without a character
/// @param character  set to the packed character; not written without one
/// @param next       always set: to the offset just past the character, or to
///                   `end` without one
/// @return 1 when a character was read; 0 when `position` is negative or not
///         below `end`, when only continuation bytes are left, or when `end`
///         cuts the character off
QUILL_EXPORT int32_t utf8_GetNextCharAsLong(const char* text, int32_t position,
                                            int32_t end, int32_t* start,
                                            int32_t* character, int32_t* next);

/// Reads the same character as utf8_GetNextCharAsLong, but tells its length and
/// its code point. The code point is put together unchecked: overlong forms,
/// surrogates and whatever follows a first byte give some value.
///
/// @param text       address of offset 0; null reads as no character
/// @param position   byte offset at which reading begins
/// @param end        byte offset that bounds the reading, exclusive
/// @param start      set to the offset of the character's first byte; not
///                   written without a character
/// @param length     set to the character's length in bytes, 1 to 4; not
///                   written without one
/// @param code_point set to the code point; not written without one
/// @param next       always set: to the offset just past the character, or to
///                   `end` without one
/// @return 1 when a character was read; 0 when `position` is negative or not
///         below `end`, when only continuation bytes are left, or when `end`
///         cuts the character off
QUILL_EXPORT int32_t utf8_GetNextCharValue(const char* text, int32_t position,
                                           int32_t end, int32_t* start,
                                           int32_t* length, int32_t* code_point,
                                           int32_t* next);

/// Reads the character that contains a position: from a continuation byte it
/// goes back to the nearest byte that is none, however far. That character may
/// end before `position` when more continuation bytes follow it than it
/// announces. Where nothing but continuation bytes lies before, reads as
/// utf8_GetNextCharAsLong.
///
/// @param text       address of offset 0; null reads as no character
/// @param position   byte offset
/// @param end        byte offset that bounds the reading, exclusive
/// @param start      set to the offset of the character's first byte; not
///                   written without a character
/// @param character  set to the packed character; not written without one
/// @param next       always set: to the offset just past the character, or to
///                   `end` without one
/// @return 1 when a character was read; 0 when `position` is negative or not
///         below `end`, when only continuation bytes are left, or when `end`
///         cuts the character off
QUILL_EXPORT int32_t utf8_GetCharAsLong(const char* text, int32_t position,
                                        int32_t end, int32_t* start,
                                        int32_t* character, int32_t* next);

/// Reads the character that the nearest byte before a position that is no
/// continuation byte begins. Stepping backwards passes `start` as the next
/// position. The character is read in full up to `end`, so `next` may lie
/// beyond `position`.
///
/// @param text       address of offset 0; null reads as no character
/// @param position   byte offset; may equal `end`
/// @param end        byte offset that bounds the reading, exclusive
/// @param start      set to the offset of the character's first byte; not
///                   written without a character
/// @param character  set to the packed character; not written without one
/// @param next       always set: to the offset just past the character, or to
///                   `end` without one
/// @return 1 when a character was read; 0 when `position` is below 1 or above
///         `end`, when only continuation bytes lie before it, or when `end`
///         cuts the character off
QUILL_EXPORT int32_t utf8_GetPrevCharAsLong(const char* text, int32_t position,
                                            int32_t end, int32_t* start,
                                            int32_t* character, int32_t* next);

// ---------------------------------------------------------------------------
// Counting characters
// ---------------------------------------------------------------------------

/// Counts the characters whose first byte lies in a range. Goes by first bytes
/// alone: a continuation byte where a character is due counts as one, and a
/// character that the end cuts off counts in full. Allocates nothing.
///
/// @param text   address of offset 0; null is refused
/// @param start  byte offset; refused when negative or above `end`
/// @param end    byte offset, exclusive
/// @param count  set to 0 first, also when refused; then to the number of
///               characters
/// @return 1, or 0 when refused
QUILL_EXPORT int32_t utf8_CountCharacters(const char* text, int32_t start,
                                          int32_t end, int32_t* count);

/// Counts as utf8_CountCharacters does, and asks the host on the way.
///
/// @param text       address of offset 0; null is refused
/// @param start      byte offset; refused when negative or above `end`
/// @param end        byte offset, exclusive
/// @param count      set to 0 first, also when refused; then to the number of
///                   characters, up to the stop if the host stops; current
///                   whenever the host is asked
/// @param reference  handed to `yield` unchanged
/// @param yield      asked every YieldMax characters; hears the offset just
///                   past the last one, which lies beyond `end` when that cuts
///                   it off
/// @return 1, also when the host stopped; 0 when refused
QUILL_EXPORT int32_t utf8_CountCharactersTask(const char* text, int32_t start,
                                              int32_t end, int32_t* count,
                                              int32_t reference,
                                              QuillYield yield);

/// Finds the offset that lies a number of characters after another. Each step
/// goes to the end of the character that contains the offset, as
/// utf8_GetCharAsLong reads it: from inside a character to its end, and where
/// stray continuation bytes follow a character no further (the steps left are
/// then not taken one by one). Allocates nothing.
///
/// @param text    address of offset 0; null reads as no character
/// @param start   byte offset of the first step
/// @param end     byte offset, exclusive
/// @param count   in: how many characters to step over. Left as it is when that
///                is below 1 and when all were; else set to the number stepped
///                over before `end`, or to 0 when `start` is negative or not
///                below `end`, or a character could not be read
/// @param offset  always set: to the offset reached, or to `end` on a result of
///                0
/// @return 1 when that many characters were stepped over, else 0
QUILL_EXPORT int32_t utf8_CountToOffset(const char* text, int32_t start,
                                        int32_t end, int32_t* count,
                                        int32_t* offset);

// ---------------------------------------------------------------------------
// Character masks and sets
// ---------------------------------------------------------------------------

/// Maps one character through a mask.
///
/// @param character a packed character, or any other value
/// @param mask_keys the mask's keys
/// @param mask_values the mask's values
/// @param mask_count number of entries in both arrays
/// @param sorted 1: the keys ascend and are bisected; any other byte: they are
///   looked through in array order
/// @return the value of the first entry whose key equals `character`, else
///   `character` itself: also when an array is null or `mask_count` is 0 or
///   less. Bisection may miss a key among keys that do not ascend.
///
/// Costs about log2(mask_count) comparisons when sorted. Allocates nothing.
QUILL_EXPORT int32_t utf8_MaskChar(int32_t character, const int32_t* mask_keys,
                                   const int32_t* mask_values,
                                   int32_t mask_count, unsigned char sorted);

/// Tests whether a character is in a set, or whether it is not.
///
/// @param set packed characters in ascending signed order; not read, and may be
///   null, when `count` is 0 or less
/// @param count number of characters in the set
/// @param character the packed character to look for
/// @param include 1: the answer is true for members; any other byte: for all
///   others
/// @return 1 or 0. The set is bisected. Allocates nothing.
QUILL_EXPORT int32_t utf8_MatchChar(const int32_t* set, int32_t count,
                                    int32_t character, unsigned char include);

/// Tests whether a character is in a list of any order.
///
/// @param character the packed character to look for
/// @param list packed characters
/// @param count number of characters in the list; 0 or less is an empty list
/// @return 1 when an element equals `character`. The list is looked through
///   from its start. Allocates nothing.
QUILL_EXPORT int32_t utf8_InList(int32_t character, const int32_t* list,
                                 int32_t count);

/// Sorts the entries [first, limit) of a mask by key, ascending as signed
/// numbers, so that it can be used in searches. Each value moves together with
/// its key.
///
/// @param mask_keys the mask's keys, sorted in place
/// @param mask_values the mask's values, moved along
/// @param first index of the first entry to sort
/// @param limit index after the last; at most `first` + 1 changes nothing
///
/// Distinct keys cost about n log n, in any order; the stack stays small and
/// the heap is not used. Equal keys, of which only the first counts afterwards,
/// end up as a quicksort leaves them that takes the first key as its pivot and
/// exchanges greater ones to the end of the range: not in their former order.
/// Many equal keys may cost n * n.
QUILL_EXPORT void utf8_SortMask(int32_t* mask_keys, int32_t* mask_values,
                                int32_t first, int32_t limit);

/// Writes the characters of a range, mapped, as packed characters: a string as
/// searches take it.
///
/// Reading ends early, and still succeeds, at a character that can't be read;
/// those before it are stored.
///
/// @param text the text
/// @param start offset at which reading begins
/// @param end end of the range, exclusive
/// @param mask_keys the mask's keys, or null
/// @param mask_values the mask's values, or null
/// @param mask_count number of entries in the mask
/// @param array receives the packed characters; needs room for as many as there
///   are in the range, `end` - `start` at most
/// @param count receives the number of characters stored
/// @return 0, with nothing written, when `start` is negative or not below
///   `end`, or `text` or `array` is null; else 1. Allocates nothing.
QUILL_EXPORT int32_t utf8_StringToLongArray(const char* text, int32_t start,
                                            int32_t end,
                                            const int32_t* mask_keys,
                                            const int32_t* mask_values,
                                            int32_t mask_count, int32_t* array,
                                            int32_t* count);

// ---------------------------------------------------------------------------
// Rewriting text through a mask
// ---------------------------------------------------------------------------

/// Makes a new Block of a range's characters, each passed through a mask.
///
/// A mapped character is written as its lowest byte and then each higher byte
/// that is not 0, so the result may be shorter or longer than the range. Stray
/// continuation bytes are left out.
///
/// @param source the text's Block, only read; comes back unlocked
/// @param start offset at which the range begins, not negative
/// @param end end of the range, exclusive, at most the Block's size
/// @param mask_keys the mask's keys, in ascending order
/// @param mask_values the mask's values
/// @param mask_count number of entries in the mask; below 0 maps nothing
/// @param output receives the new Block, of exactly the bytes written; the
///   host's when the call returns true
/// @param ignored any value
/// @param reference handed to `yield` unchanged
/// @param yield asked every YieldMax characters; hears the offset just past the
///   last one. A stop leaves the rest of the range out of the result.
/// @return 1 with the Block, also after a stop. 0 with `output` not written
///   when the range is empty or not inside the text, `source` or an array is
///   null, or `mask_count` is 0. 0 with null in `output` when no Block can be
///   made. 0 with a Block in `output` that is already disposed of when a
///   character of the range can't be read, memory runs short, or the result
///   would exceed 2,147,483,647 bytes.
///
/// One pass; allocates the result only, which grows when mapped characters are
/// longer. Text that is mostly ASCII goes fastest.
QUILL_EXPORT int32_t utf8_MaskString(QuillBlock source, int32_t start,
                                     int32_t end, const int32_t* mask_keys,
                                     const int32_t* mask_values,
                                     int32_t mask_count, QuillBlock* output,
                                     int32_t ignored, int32_t reference,
                                     QuillYield yield);

/// Makes a new Block of a whole text in which the characters inside selections
/// are passed through a mask, and all else is copied.
///
/// Selections are taken in list order. What an earlier one has dealt with, also
/// the gap before it, is not looked at again: of a selection that begins before
/// that only the rest is masked. A selection's end bounds its last character.
///
/// @param source the text's Block, only read; comes back unlocked
/// @param selections address of the list's first long, in offsets of `source`;
///   only read
/// @param long_count number of longs in the list, two for each selection; a
///   lone last one is ignored
/// @param mask_keys the mask's keys, in ascending order
/// @param mask_values the mask's values
/// @param mask_count number of entries in the mask; below 0 maps nothing
/// @param output receives the new Block, of exactly the bytes written; the
///   host's when the call returns true
/// @param reference handed to `yield` unchanged
/// @param yield asked every YieldMax masked characters; hears the number of
///   longs taken from the list so far. After a stop the current selection is
///   finished (and an answer of 1 in it takes the stop back); later ones are
///   copied as they are.
/// @return 1 with the Block, also after a stop. 0 with `output` not written
///   when the text is empty, `source` or an array of the mask is null,
///   `mask_count` is 0, `selections` is null with two longs or more, or a
///   selection reaches beyond the text. Otherwise 0 as for utf8_MaskString,
///   when a selection ends inside a character too.
///
/// Allocates the result only.
QUILL_EXPORT int32_t utf8_MaskStringSelection(
    QuillBlock source, const int32_t* selections, int32_t long_count,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    QuillBlock* output, int32_t reference, QuillYield yield);

// ---------------------------------------------------------------------------
// Searching bytes
// ---------------------------------------------------------------------------

/// Finds the first occurrence of a byte string that lies wholly in a range.
/// Bytes are compared as they are. Takes time linear in the text whatever text
/// and pattern are; allocates nothing.
///
/// @param text            address of offset 0; null is refused
/// @param start           byte offset; refused when negative or above `end`
/// @param end             byte offset, exclusive; refused below 1
/// @param pattern         the bytes sought, any values; null is refused
/// @param pattern_length  bytes; refused below 1 and above `end` - `start`
/// @param reserved1       not looked at
/// @param reserved2       not looked at
/// @param reserved3       not looked at
/// @param reserved4       not looked at
/// @param found_start     set to the start of the occurrence, or to 0; not
///                        written when refused
/// @param found_end       set to its end, or to the offset at which the search
///                        ended (`end`, or where the host stopped it); not
///                        written when refused
/// @param reference       handed to `yield` unchanged
/// @param yield           asked every YieldMax offsets without an occurrence;
///                        hears the last of them. After a stop no further
///                        offset is examined
/// @return 1 when there is an occurrence; else 0, also when refused or stopped
QUILL_EXPORT int32_t FindStr(const char* text, int32_t start, int32_t end,
                             const char* pattern, int32_t pattern_length,
                             int32_t reserved1, int32_t reserved2,
                             int32_t reserved3, int32_t reserved4,
                             int32_t* found_start, int32_t* found_end,
                             int32_t reference, QuillYield yield);

/// Lists all occurrences of a byte string that lie wholly in a range, from left
/// to right; each is sought from the end of the one before, so they never
/// overlap. Takes time linear in the text whatever text and pattern are.
///
/// @param text            address of offset 0; null is refused
/// @param start           byte offset; refused when negative or above `end`
/// @param end             byte offset, exclusive; refused below 1
/// @param pattern         the bytes sought, any values; null is refused
/// @param pattern_length  bytes; refused below 1 and above `end` - `start`
/// @param reserved1       not looked at
/// @param reserved2       not looked at
/// @param reserved3       not looked at
/// @param reserved4       not looked at
/// @param list            set to a new canonical selection list, the host's; of
///                        0 bytes when there is no occurrence, null when it
///                        could not be made
/// @param long_count      set to the number of longs in the list, 2 for each
///                        occurrence; 0 when the list could not be made
/// @param stop            set to the offset at which the search ended: `end`,
///                        also when the list could not be made; where the host
///                        stopped it; or, when the list could not grow, the
///                        start of the first occurrence that is not in it
/// @param reference       handed to `yield` unchanged
/// @param yield           asked every YieldMax offsets or occurrences dealt
///                        with; hears the last offset, or the end of the
///                        occurrence. An occurrence found when the host stops
///                        is in the list
/// @return 1, also when the host stopped; 0 when refused, and then nothing is
///         written, or when the list could not be made
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

/// Widens a selection to the nearest breaks between classes of characters:
/// backwards over characters of one class, then forwards over those of another.
///
/// The character that stops a direction stays outside the selection. Characters
/// are compared as they are, without a mask, with one class element after the
/// other.
///
/// @param text the text
/// @param lower_bound offset below which the selection is not widened
/// @param end offset beyond which it is not widened and nothing is read
/// @param backward_class packed characters, in any order
/// @param backward_count number of them; 0 or less leaves the start alone
/// @param backward_flag 1: widen over the members of the class; any other byte:
///   over all other characters
/// @param forward_class packed characters, in any order
/// @param forward_count number of them; 0 or less leaves the end alone
/// @param forward_flag as `backward_flag`, forwards
/// @param selection_start in: where the backward search begins; written once it
///   stops at a character or at the bound
/// @param selection_end in: where the forward search begins, read after
///   `selection_start` has been written; written once it stops
/// @param break_found set to 1 at once; to 0 when a direction reaches its bound
///   and when the call fails
/// @param reference handed to `yield` unchanged
/// @param yield asked every YieldMax characters, counted anew in each
///   direction; hears `lower_bound` always
/// @return 1 when each direction has stopped at a character or at its bound. 0
///   when a character can't be read or the host stops the search; a start that
///   was found by then stays written. Allocates nothing.
QUILL_EXPORT int32_t utf8_FindBreaks(
    const char* text, int32_t lower_bound, int32_t end,
    const int32_t* backward_class, int32_t backward_count,
    unsigned char backward_flag, const int32_t* forward_class,
    int32_t forward_count, unsigned char forward_flag, int32_t* selection_start,
    int32_t* selection_end, unsigned char* break_found, int32_t reference,
    QuillYield yield);

/// Lists a break after every `chunk` characters of a range.
///
/// A break list is a selection list with an empty selection at each break, in
/// ascending order. The end of the range is a break when the last piece is a
/// whole one.
///
/// @param text the text's Block, only read; comes back unlocked
/// @param start offset at which the range begins; inside a character, the first
///   step goes over that whole character
/// @param end end of the range, exclusive, at most the Block's size
/// @param chunk number of characters from one break to the next, at least 1
/// @param list receives a new Block with the breaks, two equal longs for each;
///   one of 0 bytes when there are none. The host's when the call returns true.
/// @param long_count receives the number of longs in the list
/// @param reference handed to `yield` unchanged
/// @param yield asked every YieldMax pieces, the short last one included; hears
///   the offset reached. A stop ends the list there.
/// @return 1 with the list, also after a stop. 0, with nothing written, when
///   `start` is negative, the range is empty or not inside the text, `chunk` is
///   below 1, `text` is null, a character can't be read, stray continuation
///   bytes keep a step from moving on, or memory is short (the list is
///   allocated for (`end` - `start`) / `chunk` breaks of 8 bytes).
QUILL_EXPORT int32_t utf8_ComputeBreaks(QuillBlock text, int32_t start,
                                        int32_t end, int32_t chunk,
                                        QuillBlock* list, int32_t* long_count,
                                        int32_t reference, QuillYield yield);

/// Lists the breaks that cut a range into lines of at most `width` bytes, after
/// a space where the line has one.
///
/// A line that reaches its width is cut after its last space or, without one,
/// after the character that reached it; that character is taken whole, so a
/// line may be up to 3 bytes too long. A carriage return or line feed is no
/// break: it starts the width anew, but a space before it may still be the one
/// that the line is cut after. The last line, which fits, has no break.
///
/// @param text the text's Block, only read; comes back unlocked
/// @param start offset at which the first line begins
/// @param end end of the range, exclusive, at most the Block's size
/// @param width the most bytes in a line, at least 1
/// @param list receives a new Block with the breaks, as utf8_ComputeBreaks
/// @param long_count receives the number of longs in the list
/// @param reference handed to `yield` unchanged
/// @param yield asked every YieldMax lines, the last one included; hears the
///   offset at which the next line begins. A stop ends the list there.
/// @return 1 with the list, also after a stop. 0, with nothing written, as for
///   utf8_ComputeBreaks, also when the list can't grow.
QUILL_EXPORT int32_t utf8_ComputeSpaceBreaks(
    QuillBlock text, int32_t start, int32_t end, int32_t width,
    QuillBlock* list, int32_t* long_count, int32_t reference, QuillYield yield);

// ---------------------------------------------------------------------------
// Range patterns
// ---------------------------------------------------------------------------

/// @name Range patterns
///
/// A range pattern is an array of pointers to parts (QuillRangePart) and their
/// number. The parts match one after the other, each where the one before
/// ended. Matching is greedy and never gives back: letters, 1 or more, then one
/// `a`, never matches `aba`, since the letters take all of it.
/// @{

/// Matches one part at one position.
///
/// A character that can't be read (one that `end` cuts off, or nothing but
/// continuation bytes up to `end`) makes a part that comes to it fail, even
/// when it had matched enough. Costs one bisection of the set for each
/// character; allocates nothing and never yields.
///
/// @param part      the part
/// @param text      address of offset 0; null reads as no character
/// @param position  byte offset at which the run starts
/// @param end       byte offset that bounds the reading
/// @param next      set to the offset just past the last character of the run,
///                  `position` when there is none; also when the run is too
///                  short, but not when a character can't be read
/// @return 1 when the run is as long as the part asks for, else 0
QUILL_EXPORT int32_t utf8_CompareRangePart(const QuillRangePart* part,
                                           const char* text, int32_t position,
                                           int32_t end, int32_t* next);

/// Matches a whole pattern at one position.
///
/// No parts at all match everywhere, without a character. Costs and fails as
/// utf8_CompareRangePart does.
///
/// @param text        address of offset 0; null reads as no character
/// @param position    byte offset at which the match must start
/// @param end         byte offset that bounds the reading
/// @param parts       the pattern's parts
/// @param part_count  number of parts; 0 or less for none
/// @param next        set to the offset just past the match; without one to
///                    where a search goes on: just past the first character at
///                    or after `position`, or `end` when there is none
/// @return 1 when every part matched, else 0
QUILL_EXPORT int32_t utf8_CompareRangePattern(
    const char* text, int32_t position, int32_t end,
    const QuillRangePart* const* parts, int32_t part_count, int32_t* next);

/// @}

// ---------------------------------------------------------------------------
// Searching range patterns
// ---------------------------------------------------------------------------

/// @name Searching range patterns
///
/// Matches start in `[from, to)` and end by `to`. A search attempts one offset,
/// then the one just past the first character at or after it; a match is said
/// to start at the offset attempted, which may lie on stray continuation bytes
/// before its first character. When the first part asks for at least one of a
/// single character, and its include flag is exactly 1, the first attempt is
/// made at the first byte equal to that character's lead byte, found by a scan
/// of bytes; in malformed text that byte may lie inside a longer character.
///
/// The searches for all matches go on at each match's end. A match may be empty
/// when every part can be; it is reported once, also at the end of the match
/// before, and the search goes on just past the first character at or after it.
///
/// A single search is refused when `text` is null, `from` is below 0 or above
/// `to`, `to` is below 1, or there are no parts. The searches for all matches
/// refuse nothing: they then find nothing and stop at `to`.
/// @{

/// Finds the first match.
///
/// Each attempt is a unit of work, and the host is told of the offset to be
/// attempted next. Before that the scan of bytes, if there is one, yields as
/// FindByte does. Allocates nothing.
///
/// @param text        address of offset 0
/// @param from        byte offset of the first attempt
/// @param to          byte offset that bounds attempts and matches
/// @param parts       the pattern's parts
/// @param part_count  number of parts, at least 1
/// @param start       set to the start of the match; not written without one
/// @param end         set to the end of the match; without one it is left with
///                    no meaningful value, and unwritten when refused
/// @param next        set to `to` first, even when refused, and to the end of a
///                    match
/// @param reference   handed to `yield` unchanged
/// @param yield       asked after every YieldMax attempts; the search ends
///                    unless it answers 1, but a match of the same attempt
///                    stands
/// @return 1 when there is a match, else 0
QUILL_EXPORT int32_t utf8_FindPattern(const char* text, int32_t from,
                                      int32_t to,
                                      const QuillRangePart* const* parts,
                                      int32_t part_count, int32_t* start,
                                      int32_t* end, int32_t* next,
                                      int32_t reference, QuillYield yield);

/// Finds the match that starts at the highest offset.
///
/// Attempts every byte offset from `to - 1` down to `from`; the match may end
/// anywhere up to `to`. Each attempt is a unit of work, and the host is told of
/// the offset below. Allocates nothing.
///
/// @param text        address of offset 0
/// @param from        lowest byte offset attempted
/// @param to          byte offset that bounds attempts and matches
/// @param parts       the pattern's parts
/// @param part_count  number of parts, at least 1
/// @param start       set to the start of the match; not written without one
/// @param end         set to the end of the match; without one it is left with
///                    no meaningful value, and unwritten when refused
/// @param next        set to `from` first, even when refused, and to the start
///                    of a match: the `to` of a search for the one before
/// @param reference   handed to `yield` unchanged
/// @param yield       asked after every YieldMax attempts; the search ends
///                    unless it answers 1, but a match of the same attempt
///                    stands
/// @return 1 when there is a match, else 0
QUILL_EXPORT int32_t utf8_FindPatternPrev(const char* text, int32_t from,
                                          int32_t to,
                                          const QuillRangePart* const* parts,
                                          int32_t part_count, int32_t* start,
                                          int32_t* end, int32_t* next,
                                          int32_t reference, QuillYield yield);

/// Counts the matches.
///
/// Each match found is a unit of work, and so is the last search that finds
/// none; the host is told where the next search begins. Inside each search it
/// is asked as utf8_FindPattern asks it, with a count of its own; a stop there
/// ends that search, and with it the count, as if nothing more were found.
/// Allocates nothing.
///
/// @param text        address of offset 0
/// @param from        byte offset at which the first search begins
/// @param to          byte offset that bounds attempts and matches
/// @param parts       the pattern's parts
/// @param part_count  number of parts
/// @param number      set to the number of matches
/// @param stop        set to `to`; to `from` when that is not below `to`; or to
///                    where the next search would have begun when the host
///                    stopped the operation between two searches
/// @param reference   handed to `yield` unchanged
/// @param yield       asked as said above
/// @return always 1
QUILL_EXPORT int32_t utf8_CountPatternAll(const char* text, int32_t from,
                                          int32_t to,
                                          const QuillRangePart* const* parts,
                                          int32_t part_count, int32_t* number,
                                          int32_t* stop, int32_t reference,
                                          QuillYield yield);

/// Lists the matches.
///
/// Works and yields as utf8_CountPatternAll does. The list grows in steps of
/// 4,000,000 bytes or more and is trimmed at the end. When it can't grow, the
/// operation ends at once: the list keeps the matches stored before, the one
/// that did not fit is dropped, and `stop` is where the search would have gone
/// on after it.
///
/// @param text        address of offset 0
/// @param from        byte offset at which the first search begins
/// @param to          byte offset that bounds attempts and matches
/// @param parts       the pattern's parts
/// @param part_count  number of parts
/// @param list        set to a new canonical selection list, the host's; null
///                    when there is no match
/// @param long_count  set to the number of longs in the list, 2 for each match
/// @param stop        set as by utf8_CountPatternAll
/// @param reference   handed to `yield` unchanged
/// @param yield       asked as by utf8_CountPatternAll
/// @return 0 when the list could not be made: `list` is then null, `long_count`
///         0 and `stop` is `to`. Else 1
QUILL_EXPORT int32_t utf8_FindPatternAll(const char* text, int32_t from,
                                         int32_t to,
                                         const QuillRangePart* const* parts,
                                         int32_t part_count, QuillBlock* list,
                                         int32_t* long_count, int32_t* stop,
                                         int32_t reference, QuillYield yield);

/// Lists the matches of an outer pattern that contain a match of a key pattern,
/// with the first such match.
///
/// Searches for the outer pattern as utf8_FindPatternAll does, and inside each
/// of its matches for the key, as utf8_FindPattern does between the start and
/// the end of the outer match. A search for a key yields with a count of its
/// own; a stop there only means that no key is found.
///
/// @param text              address of offset 0
/// @param from              byte offset at which the first search begins
/// @param to                byte offset that bounds attempts and matches
/// @param outer_parts       the parts of the outer pattern
/// @param outer_part_count  number of them
/// @param key_parts         the parts of the key pattern
/// @param key_part_count    number of them
/// @param list              set to a new key selection list, the host's; null
///                          when there is no record
/// @param long_count        set to the number of longs in the list, 4 for each
///                          record
/// @param stop              set as by utf8_CountPatternAll
/// @param reference         handed to `yield` unchanged
/// @param yield             asked by every search, and between the outer ones
/// @return as utf8_FindPatternAll
QUILL_EXPORT int32_t utf8_FindKeyPatternAll(
    const char* text, int32_t from, int32_t to,
    const QuillRangePart* const* outer_parts, int32_t outer_part_count,
    const QuillRangePart* const* key_parts, int32_t key_part_count,
    QuillBlock* list, int32_t* long_count, int32_t* stop, int32_t reference,
    QuillYield yield);

/// Runs utf8_FindPatternAll over the contents of a Block, and disposes of the
/// list: what the host learns is how far the search came.
///
/// Nothing is searched and `stop` is not written when there is no Block, when
/// `from` or `to` is below 0, when `from` is not below `to`, when `to` lies
/// beyond the contents, when `part_count` is 0, or when the Block is empty.
///
/// @param text        the host's variable that holds the text; the Block is
///                    locked for the search and comes back unlocked
/// @param from        byte offset at which the first search begins
/// @param to          byte offset that bounds attempts and matches
/// @param parts       the pattern's parts
/// @param part_count  number of parts
/// @param stop        set as by utf8_FindPatternAll
/// @param reference   handed to `yield` unchanged
/// @param yield       asked as by utf8_FindPatternAll
/// @return 0 when the list of the search could not be made, else 1, also when
///         nothing was searched
QUILL_EXPORT int32_t utf8_SortPattern(QuillBlock* text, int32_t from,
                                      int32_t to,
                                      const QuillRangePart* const* parts,
                                      int32_t part_count, int32_t* stop,
                                      int32_t reference, QuillYield yield);

/// @}

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
///   one is an insertion point. The Block stays the same, every byte moves at
///   most once, and memory is only needed to grow the Block.
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
/// The result is in a new Block, stored into the variable; the old one is
/// disposed of. Memory is needed for that Block's record, to make room where
/// the text grows, and for a template of more than 64 characters; the text is
/// not copied. A template of 0 characters deletes the selections, as DelSel
/// does, in the Block that is there. The list is only read, and comes back
/// unlocked.
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
/// The text stays in the Block that the host passes, whatever the flags, also
/// when they select an overlay. It comes back unlocked.
///
/// @param text           the Block to edit; null is refused with nothing
///                       written
/// @param from           where the range begins, a byte offset
/// @param to             the end of the range, exclusive; once the search was
///                       made it is moved by the change in the text's length
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
///                       search was made, set to the value of `to` when it was
///                       not
/// @param reference      passed to `yield`
/// @param yield          called by the search, as FindStrAll says
/// @return what InsertStr returns, so 0 also when nothing was found, `string`
///         is not empty and no flag asks for an overlay; 0 when the search is
///         not made: FindStrAll refuses its arguments, `to` lies beyond the
///         text, or memory is short. After a 0 the text is unchanged. An edit
///         is refused when the result would be too long, or the moved position
///         would leave 32 bits
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
///                         refused with nothing written
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
/// @param edge_flag        1: offset 0 and the end of the range are breaks
/// @param invert_flag      1: a match needs sides that are no breaks
/// @param position         an offset of the host's; moved like `to` once the
///                         search was made, set to the value of `to` when it
///                         was not
/// @param reference        passed to `yield`
/// @param yield            called by the search, as utf8_FindStrAll says
/// @return 1 when nothing was found, else what InsertStr returns; 0 when the
///         search is not made: `to` lies beyond the text, or memory is short.
///         After a 0 the text is unchanged. An edit is refused when the result
///         would be too long, or the moved position would leave 32
///         bits
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
///                      was not made
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

/// Replaces the words of a range by what a word table gives for them.
///
/// The matches of a range pattern are the words of the text. Each is looked up
/// in the table: the first entry, in table order, whose characters the match
/// begins with, mapped, takes the place of the whole match. Matches that begin
/// with none stay.
///
/// @param text the host's variable that holds the text's Block, which is edited
///   in place; the Block comes back unlocked
/// @param from offset at which the search begins
/// @param to in: end of the range; out, on success after an edit: moved by the
///   change in the text's length
/// @param parts the parts of the range pattern
/// @param part_count number of parts
/// @param words pointers to the table's entries
/// @param word_count number of entries
/// @param mask_keys the mask's keys, in ascending order, or null
/// @param mask_values the mask's values, or null
/// @param mask_count number of entries in the mask
/// @param new_end receives the value of `to` at once, and its new value on
///   success
/// @param reference handed to `yield` unchanged
/// @param yield asked by the pattern search only, as by utf8_FindPatternAll; a
///   stop keeps the words found so far, which are then replaced
/// @return 1 when the words were replaced, or none was found. 0, with the text
///   and `to` as they were, when the variable holds no Block, `to` lies beyond
///   the text, the replacement of an entry that matches has a negative length
///   or no bytes, memory is short, or the result would exceed 2,147,483,647
///   bytes.
///
/// A table of many words is indexed once, so that each match costs a few steps
/// for each of its characters; when memory is too short for that, its words are
/// tried in order.
QUILL_EXPORT int32_t utf8_WordTableReplace(
    QuillBlock* text, int32_t from, int32_t* to,
    const QuillRangePart* const* parts, int32_t part_count,
    const QuillWordEntry* const* words, int32_t word_count,
    const int32_t* mask_keys, const int32_t* mask_values, int32_t mask_count,
    int32_t* new_end, int32_t reference, QuillYield yield);

// ---------------------------------------------------------------------------
// Swapping byte patterns
// ---------------------------------------------------------------------------

/// Overwrites every occurrence of a byte string in a range with another of the
/// same length, from left to right. Swapped bytes are not examined again, so
/// occurrences never overlap; one that would cross `end` stays. Allocates
/// nothing.
///
/// @param buffer       address of offset 0; the bytes are changed in place
/// @param start        byte offset; what lies before offset 0 is passed over
/// @param end          byte offset, exclusive
/// @param pattern      `length` bytes, any values, read only
/// @param replacement  `length` bytes, any values, read only
/// @param length       bytes in each of them
/// @param reference    handed to `yield` unchanged
/// @param yield        asked every YieldMax offsets or swaps; hears the last
///                     offset dealt with, of a swap its last byte. After a stop
///                     nothing more is swapped; what was stays
/// @return always 1: also when stopped, and when `start` is not below `end`,
///         `end` is negative or `length` is below 1, and nothing happens
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
///                     destination
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
///         did not fit, or is not empty and begins below offset 0 (those before
///         it are copied); else 1
QUILL_EXPORT int32_t CopySelectionsTo(const char* text, char* destination,
                                      int32_t capacity, int32_t* copied,
                                      const int32_t* selections, int32_t count,
                                      int32_t reference, QuillYield yield);

/// Copies the text under each record's second pair, the outer match, in list
/// order, back to back: CopySelectionsTo for a key selection list. The keys are
/// not read.
///
/// @param text         address of offset 0; its bytes may overlap the
///                     destination
/// @param destination  the host's buffer, written from its first byte on
/// @param capacity     bytes in the destination
/// @param copied       as in CopySelectionsTo
/// @param records      four longs each: key start, key end, start, end; only
///                     read
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
///                     at its end stays where it is
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
///                     its end stays where it is
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
///         the list is as it was; else 1, also when the list is null or the
///         length below 1 and nothing was done
QUILL_EXPORT int32_t OrderSelections(QuillBlock* list, int32_t text_length);

/// Adds a list to a selection map. Bit n of the map (as BitTest counts) stands
/// for the text's byte n - 1, bit 0 for none: a selection sets the bits start +
/// 1 to end. Bits are never cleared, so that several lists give their union.
///
/// Offsets outside the text are cut to it, an end at or before the start sets
/// nothing, and a lone last long is ignored. Works by words; allocates nothing.
///
/// @param map          the host's `(text_length + 9) / 8` bytes, of which only
///                     the bits of the list change
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
///                     when no bit is set; not written on failure
/// @param long_count   set to the list's number of longs, after `list`; not
///                     written on failure
/// @return 0 when memory for the list can't be had; else 1. When a list that
///         has begun can't grow, the selections that no longer fit are left out
QUILL_EXPORT int32_t MapToSelection(const char* map, int32_t text_length,
                                    QuillBlock* list, int32_t* long_count);

/// Turns a canonical list, in place, into its complement within a range: what
/// lies between its selections, before the first and behind the last.
///
/// A list of size 0 becomes the one selection (`range_start`, `range_end`), as
/// they are. Left as it is, with result 1: no list (null); a list that does not
/// ascend within the range, or is no whole number of selections; and a list
/// that has to grow, by 8 bytes at most, where memory is short.
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
///                       lone last long is ignored, an end before the start is
///                       empty
/// @param prefix         bytes put before each piece
/// @param prefix_length  bytes in the prefix; 0 or less for none
/// @param suffix         bytes put behind each piece
/// @param suffix_length  bytes in the suffix; 0 or less for none
/// @param result         set to the new Block, which is the host's, or to null
///                       when the host stopped the call; not written when the
///                       result is 0
/// @param reference      handed to `yield` unchanged
/// @param yield          asked after every YieldMax selections; any answer but
///                       1 ends the call and drops what was gathered
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

/// Changes the size of a Block that is being filled and locks it again. The
/// bytes up to the smaller of both sizes stay. When `size` equals `capacity`
/// nothing is done at all.
///
/// @param block     the host's variable that holds the Block, locked
/// @param capacity  the size in bytes that the host takes it to have; set to
///                  `size` on success
/// @param contents  set to the address of the contents on success
/// @param size      bytes
/// @return 1 when the Block has that size and is locked; 0 when it is gone: the
///         variable held null, or the size could not be had and the Block has
///         been disposed of. The variables then keep what they held, which is
///         not to be used any more
QUILL_EXPORT int32_t ResizeActiveBlock(QuillBlock* block, int32_t* capacity,
                                       char** contents, int32_t size);

/// Reads one bit of a bit set: bit n is bit n mod 8, least significant first,
/// of byte n / 8.
///
/// @param bits  address of the first byte
/// @param bit   number of the bit, not negative
/// @return the bit, 0 or 1
QUILL_EXPORT int32_t BitTest(char* bits, int32_t bit);

/// Sets one bit, numbered as for BitTest, to 1.
///
/// @param bits  address of the first byte
/// @param bit   number of the bit, not negative
QUILL_EXPORT void BitSet(char* bits, int32_t bit);

/// Sets one bit, numbered as for BitTest, to 0.
///
/// @param bits  address of the first byte
/// @param bit   number of the bit, not negative
QUILL_EXPORT void BitClear(char* bits, int32_t bit);

/// Finds the first occurrence of a byte in a range. Checks nothing; allocates
/// nothing.
///
/// @param text       address of offset 0
/// @param start      byte offset, not negative
/// @param end        byte offset, exclusive; nothing is read when it is not
///                   above `start`
/// @param byte       the byte sought
/// @param reference  handed to `yield` unchanged
/// @param yield      asked every YieldMax offsets; hears the next offset. After
///                   a stop that one is still examined
/// @return its offset; -1 when there is none or the host stopped before it
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
///                    host's
/// @param entry_count the number of entries
/// @return 1 when the table was applied, also when all entries are of kind 0;
///         0, with nothing changed, for a count of 0 or less, no Block in the
///         variable, a missing entry, selections out of order, overlapping or
///         outside the text, a kind that is none or contradicts the lengths, a
///         replacement missing or of negative length, or when the result would
///         be too long or memory is short
QUILL_EXPORT int32_t InsertMultiple(QuillBlock* text,
                                    QuillReplaceEntry** entries,
                                    int32_t entry_count);

/// Makes a replace table from a selection list: a Block of pointers to
/// QuillReplaceEntry, one for each selection.
///
/// Each entry is allocated by itself and belongs to the table; its start and
/// end are the selection's, its other fields are cleared. The table is handed
/// over unlocked.
///
/// @param selections the list's Block, only read; comes back unlocked
/// @param long_count number of longs of the list to use, two for each entry; a
///   lone last one is left out, and so is what the list does not hold
/// @param table receives the table, to be released with DisposeReplaceTable;
///   null on failure
/// @param entry_count receives the number of entries; 0 on failure
/// @return 0 when `long_count` is 0 or less, `selections` is null or memory is
///   short, in which case nothing stays allocated; else 1.
QUILL_EXPORT int32_t iArrayToReplaceTable(QuillBlock selections,
                                          int32_t long_count, QuillBlock* table,
                                          int32_t* entry_count);

/// Looks up the word of every entry of a replace table and notes in the entry
/// what is to be put in its place.
///
/// An entry takes the replacement of the first word that its selection begins
/// with, each character mapped, and the kind 1, 2 or 3 when that is shorter
/// than, as long as or longer than the selection. Without such a word its
/// replacement is null, its length and kind are 0.
///
/// @param entries the table's first entry pointer (the locked Block's contents)
/// @param entry_count number of entries
/// @param words pointers to the word table's entries
/// @param word_count number of words
/// @param text the text that the selections lie in; read inside them only
/// @param mask_keys the mask's keys, in ascending order, or null
/// @param mask_values the mask's values, or null
/// @param mask_count number of entries in the mask
/// @return 1 always. The replacements stay the word table's; they are not
///   copied.
///
/// Many entries and words are matched through an index made for the call, as by
/// utf8_WordTableReplace.
QUILL_EXPORT int32_t WordTable_FillReplaceTable(
    QuillReplaceEntry** entries, int32_t entry_count, QuillWordEntry** words,
    int32_t word_count, char* text, int32_t* mask_keys, int32_t* mask_values,
    int32_t mask_count);

/// Releases a replace table and the entries that belong to it.
///
/// @param table a table from iArrayToReplaceTable
/// @param entry_count the number of its entries
/// @return 0, with nothing released, when `table` is null; else 1.
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
///                      when its second does, 0 when they are equal
/// @param text          handed to `compare` unchanged, as are the next three
/// @param mask_keys     see `text`
/// @param mask_values   see `text`
/// @param mask_count    see `text`
QUILL_EXPORT void qSortV(void* base, uint32_t count, uint32_t element_size,
                         QuillCompare compare, char* text, int32_t* mask_keys,
                         int32_t* mask_values, int32_t mask_count);

#endif
