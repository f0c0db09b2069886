// A mask prepared for rewriting text: tables of bytes, by which vector kernels
// map a block of characters in a few steps.
//
// The map knows the characters that keep their length: ASCII that gives a
// single byte, and longer characters, in order, that give as many bytes as they
// have. All others are stops, which the caller maps one by one. Since input and
// output then advance alike, a mapped stretch is the text itself with some
// bytes replaced.
//
// A lead byte from 0xC0 on says by its kind what to look at next: nothing, the
// row of a pair's second byte, or the page that it forms with the second byte
// of a longer character. Rows and pages are indexed by the low six bits of the
// last byte, and hold what each byte of the character becomes.
#pragma once

#include <array>
#include <span>

#include "blocks/base.h"
#include "selection/selection_list.h"
#include "utf8/mask.h"

namespace quill {

struct CharacterMap {
  using Row = std::array<Byte, 64>;

  enum Kind : Byte {
    kCopied = 0,  // no key begins with this byte
    kPaired = 1,  // two bytes; see leads and seconds
    kPaged = 2,   // three or four bytes; see pages
    kStop = 4,    // every character is a stop
  };
  struct Page {
    Row first;
    Row second;
    Row third;  // 0 for a stop
  };
  static constexpr int kMostPages = 40;
  static constexpr Byte kNoPage = 0;  // no key begins with these two bytes
  static constexpr Byte kStopPage = 255;

  // The bytes that ASCII becomes; for a stop `ascii_stops` is 0xFF, else 0.
  alignas(64) std::array<Byte, 128> ascii;
  std::array<Byte, 128> ascii_stops;  // filled when there are any
  Row kinds;                          // by lead byte
  // What follows is undefined where no kind leads to it.
  std::array<Row, 32> leads;    // by the lead byte 0xC0 to 0xDF
  std::array<Row, 32> seconds;  // 0 for a stop
  std::array<Row, 32> pages;    // by the lead byte 0xE0 to 0xFF; number + 1
  std::array<Page, kMostPages> page;

  bool has_ascii_stops = false;
  Byte changed_rows = 0;  // bit n: some of the ASCII from 16 n on is changed
};

struct MappedRun {
  Offset bytes;
  Offset characters;
};

// Maps the characters at `from` that are in order and lie whole in `size`
// bytes, at most `most` of them and up to the first stop. Writes to the `size`
// bytes at `to`, where those behind the run are undefined then.
MappedRun map_characters(const CharacterMap& map, const Byte* from, Offset size,
                         char* to, Offset most);

// The same in plain code, which defines the answer.
MappedRun map_characters_plainly(const CharacterMap& map, const Byte* from,
                                 Offset size, char* to, Offset most);

// Maps what lies in `selections` as long as that is a few bytes of ASCII each
// that keep their length, in text order from `position` on. Returns the number
// of selections, and takes the characters from `most`, which is enough for
// them.
//
// Up to `limit` text and output are the same as yet, and behind the last one
// they stay so. May stop anywhere; plain code does nothing.
Offset map_selections(const CharacterMap& map, const Byte* text,
                      Offset position, Offset limit,
                      std::span<const Selection> selections, char* to,
                      Offset& most);

// Fills in a map from a mask: ASCII at once, with all else left as stops, and
// longer characters when they come to pay for it.
void map_ascii(const Mask& mask, CharacterMap& map);
void map_longer(const Mask& mask, CharacterMap& map);

}  // namespace quill
