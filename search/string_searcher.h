// Searching UTF-8 text for a string of characters, under open positions, a
// character mask and the word test.
//
// A searcher is built once per call of an export. It knows where the next match
// lies and counts nothing; the loops that count offsets and ask the host stand
// around it.
#pragma once

#include <optional>

#include "blocks/base.h"
#include "search/ascii_opening.h"
#include "search/break_chars.h"
#include "search/comparison.h"
#include "search/marks.h"
#include "search/string_filter.h"
#include "utf8/mask.h"
#include "utf8/mask_table.h"

namespace quill {

// What all searches for a string are given.
struct StringQuery {
  const Byte* text;
  Offset start;
  Offset end;
  CharPattern pattern;
  Mask mask;
  WordTest word;

  // Asked anew for every start that a repeated search begins at.
  bool is_valid_from(Offset from) const {
    return text != nullptr && from >= 0 && end >= from && end >= 1 &&
           pattern.elements != nullptr && pattern.count >= 1;
  }
};

struct Match {
  Offset start;
  Offset end;
};

class StringSearcher {
 public:
  // The query outlives the searcher.
  explicit StringSearcher(const StringQuery& query);

  // Whether a match begins exactly at `position`.
  bool matches_at(Offset position, Match& match);

  // The first match that begins at a character start in [from, limit), in a
  // valid query. It may reach past `limit`, up to the end of the range.
  bool next_match(Offset from, Offset limit, Match& match);

  // Writes the next matches from `from` on as pairs of offsets, so far as they
  // are known already; all of them begin within less than kWindow bytes.
  // Returns how many longs: none says nothing.
  static constexpr Offset kWindow = HitList::kRoom;
  Offset write_known(Offset from, std::span<std::int32_t> pairs) {
    const bool knows = filter_.has_value() && filter_->has_decided(from);
    return knows ? filter_->write_decided(from, pairs) : 0;
  }

  // The last match that begins in [from, limit), continuation bytes included;
  // `limit` is never higher than in the call before.
  bool previous_match(Offset from, Offset limit, Match& match);

  const StringQuery& query() const { return query_; }

  // Whether the first element can only stand for itself: then its lead byte
  // says where to look, and stops are answered at the next such byte.
  bool has_first_byte() const { return has_first_byte_; }
  Byte first_byte() const { return byte_of(query_.pattern.elements[0], 0); }

 private:
  bool is_word(const Match& match);
  bool begins_match(Offset position, Match& match);
  Offset next_candidate(Offset from, Offset limit);
  Offset previous_candidate(Offset from, Offset limit);
  void note_first();
  void note_second();
  bool knows_first();
  template <class Use>
  void visit_near_sources(Offset index, Use use) const;
  void mark_window(Offset from);
  bool mark_ascii(Offset from, Offset end);
  void mark_any(Offset from, Offset end);
  Offset next_beginning(Offset from, Offset limit);
  bool filters_now();
  void prepare_filter();

  MaskTable& mask_table();

  const StringQuery& query_;
  std::optional<MaskTable> mask_table_;  // once something is to be mapped
  IndexedBreaks breaks_;
  bool has_first_byte_;

  // Short searches look in ASCII for three bytes of a match at once. In other
  // text they try the bytes that the first character can begin with, with one
  // behind it that it can go on with or, where it is a single byte, that
  // the second can begin with, or a stray: known at once without a mask, looked
  // up after a few tries with one. Once that has gone on for a while, a filter
  // pays.
  std::optional<Opening> opening_;
  Offset all_until_ = 0;  // up to here every byte is tried
  bool knows_first_ = false;
  ByteSet first_leads_;
  unsigned first_lengths_ = 0;  // a bit for each
  int tried_ = 0;
  Offset second_at_ = 0;  // from the first's lead; 0: it isn't looked at
  ByteSet second_bytes_;
  Marks<4> marks_;
  Offset patience_;
  std::optional<StringFilter> filter_;
};

}  // namespace quill
