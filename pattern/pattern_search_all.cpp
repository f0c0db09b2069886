#include "pattern/pattern_search_all.h"

#include "blocks/block_lock.h"
#include "blocks/long_list.h"
#include "quillcore.h"

namespace quill {
namespace {

// Searches again and again, each time from where the last search leads, and
// hands the matches to `sink`, which may end the walk. Each search is a unit of
// work; the host hears where the next one begins. Returns that offset.
//
// The walk ends: a search that finds nothing leads to `to`, and one that finds
// an empty match leads past a character.
Offset walk_matches(PatternSearcher& searcher, Offset from, Offset to,
                    Host host, MatchSink& sink) {
  YieldMeter meter = host.meter();
  Offset position = from;
  while (position < to && meter.go_on()) {
    // The search that asks is made below.
    const auto taken =
        searcher.take_runs(position, to, meter.units_left() - 1, sink);
    meter.skip(taken.searches);
    position = taken.position;
    if (taken.refused || position >= to) break;
    std::int32_t start = 0;
    std::int32_t end = 0;
    std::int32_t next = 0;
    const bool found = searcher.find_first(position, to, {&start, &end, &next});
    position = found ? searcher.resume_after(start, end, to) : next;
    const std::int32_t match[] = {start, end};
    if (found && sink.take(match, 1) == 0) break;
    meter.tick(position);
  }
  return position;
}

PatternList hand_over(LongList& list, Offset stop, Offset to) {
  const Offset long_count = list.long_count();
  QuillBlock block = list.hand_over_or_none();
  if (block == nullptr && long_count > 0) return {nullptr, 0, to, false};
  return {block, long_count, stop, true};
}

std::int32_t report(const PatternList& found, QuillBlock* list,
                    std::int32_t* long_count, std::int32_t* stop) {
  *list = found.block;
  *long_count = to_long(found.long_count);
  *stop = to_long(found.stop);
  return found.made ? 1 : 0;
}

// Appends matches to a list.
class MatchList final : public MatchSink {
 public:
  explicit MatchList(LongList& list) : list_(list) {}

  Offset take(const std::int32_t* matches, Offset count) override {
    const auto longs = static_cast<std::size_t>(2 * count);
    return list_.append_pairs({matches, longs}) / 2;
  }

 private:
  LongList& list_;
};

// Counts matches.
class MatchCount final : public MatchSink {
 public:
  Offset take(const std::int32_t* /*matches*/, Offset count) override {
    count_ += count;
    return count;
  }
  Offset count() const { return count_; }

 private:
  Offset count_ = 0;
};

// Looks for the key in each match and appends a record of both.
class KeyList final : public MatchSink {
 public:
  KeyList(PatternSearcher& key, LongList& list) : key_(key), list_(list) {}

  Offset take(const std::int32_t* matches, Offset count) override {
    Offset taken = 0;
    while (taken < count &&
           append_key(matches[2 * taken], matches[2 * taken + 1])) {
      ++taken;
    }
    return taken;
  }

 private:
  bool append_key(std::int32_t outer_start, std::int32_t outer_end) {
    std::int32_t start = 0;
    std::int32_t end = 0;
    std::int32_t next = 0;
    return !key_.find_first(outer_start, outer_end, {&start, &end, &next}) ||
           list_.append_record(start, end, outer_start, outer_end);
  }

  PatternSearcher& key_;
  LongList& list_;
};

PatternList find_all_keys(PatternSearcher& outer, PatternSearcher& key,
                          Offset from, Offset to, Host host) {
  LongList list;
  if (!list.start()) return {nullptr, 0, to, false};
  KeyList keys(key, list);
  const Offset stop = walk_matches(outer, from, to, host, keys);
  return hand_over(list, stop, to);
}

}  // namespace

PatternList find_all_matches(const char* text, RangePattern pattern,
                             Offset from, Offset to, Host host) {
  PatternSearcher searcher(text, pattern, host, to - from);
  LongList list;
  if (!list.start()) return {nullptr, 0, to, false};
  MatchList matches(list);
  const Offset stop = walk_matches(searcher, from, to, host, matches);
  return hand_over(list, stop, to);
}

}  // namespace quill

using namespace quill;

std::int32_t utf8_CountPatternAll(const char* text, std::int32_t from,
                                  std::int32_t to,
                                  const QuillRangePart* const* parts,
                                  std::int32_t part_count, std::int32_t* number,
                                  std::int32_t* stop, std::int32_t reference,
                                  QuillYield yield) {
  const Host host{reference, yield};
  PatternSearcher searcher(text, {parts, part_count}, host, Offset{to} - from);
  MatchCount count;
  const Offset reached = walk_matches(searcher, from, to, host, count);
  *number = to_long(count.count());
  *stop = to_long(reached);
  return 1;
}

std::int32_t utf8_FindPatternAll(const char* text, std::int32_t from,
                                 std::int32_t to,
                                 const QuillRangePart* const* parts,
                                 std::int32_t part_count, QuillBlock* list,
                                 std::int32_t* long_count, std::int32_t* stop,
                                 std::int32_t reference, QuillYield yield) {
  const Host host{reference, yield};
  return report(find_all_matches(text, {parts, part_count}, from, to, host),
                list, long_count, stop);
}

std::int32_t utf8_FindKeyPatternAll(
    const char* text, std::int32_t from, std::int32_t to,
    const QuillRangePart* const* outer_parts, std::int32_t outer_part_count,
    const QuillRangePart* const* key_parts, std::int32_t key_part_count,
    QuillBlock* list, std::int32_t* long_count, std::int32_t* stop,
    std::int32_t reference, QuillYield yield) {
  const Host host{reference, yield};
  PatternSearcher outer(text, {outer_parts, outer_part_count}, host,
                        Offset{to} - from);
  PatternSearcher key(text, {key_parts, key_part_count}, host,
                      Offset{to} - from);
  return report(find_all_keys(outer, key, from, to, host), list, long_count,
                stop);
}

std::int32_t utf8_SortPattern(QuillBlock* text, std::int32_t from,
                              std::int32_t to,
                              const QuillRangePart* const* parts,
                              std::int32_t part_count, std::int32_t* stop,
                              std::int32_t reference, QuillYield yield) {
  if (text == nullptr || *text == nullptr || from < 0 || to < 0 || from >= to ||
      part_count == 0 || GetHandleSize(*text) < 1) {
    return 1;
  }
  const BlockLock lock(*text);
  // An end beyond the contents would have the search read past them.
  if (lock.contents() == nullptr || to > lock.size()) return 1;
  const Host host{reference, yield};
  const PatternList found =
      find_all_matches(lock.contents(), {parts, part_count}, from, to, host);
  DisposeHandle(found.block);  // the matches themselves are nobody's
  *stop = to_long(found.stop);
  return found.made ? 1 : 0;
}
