#include "selection/text_ranks.h"

#include <algorithm>
#include <cstring>

namespace quill {

std::uint64_t load_key(const Byte* bytes, Offset count) {
  std::uint64_t key = 0;
  if (count >= 8) {
    std::memcpy(&key, bytes, 8);
    return __builtin_bswap64(key);
  }
  for (Offset i = 0; i < 8; ++i) key = key << 8 | (i < count ? bytes[i] : 0u);
  return key;
}

namespace {

using Items = std::span<RankedText>;

constexpr Offset kKeyBytes = 8;
constexpr std::size_t kAhead = 16;  // items whose text is fetched early

// From here on a group is sorted by comparing texts: a stack of calls that is
// deeper than this belongs to texts made for it.
constexpr int kMostSplits = 64;

class Ranker {
 public:
  explicit Ranker(const Byte* text) : text_(text) {}

  // Sorts items whose texts agree before `depth`, and ranks them; their keys
  // hold the bytes from there. Ranks are given from left to right.
  void sort(Items items, Offset depth, int splits_left);

  Ranks ranks() const {
    return {next_rank_, static_cast<std::uint32_t>(most_equal_)};
  }

 private:
  // Whether the text has no bytes behind its key.
  static bool ends(const RankedText& item, Offset depth) {
    return item.length <= depth + kKeyBytes;
  }

  void give_rank(Items equal);
  void rank_ended(Items items);
  void rank_groups(Items items, Offset depth, int splits_left);
  void sort_by_text(Items items, Offset depth);
  void load_keys(Items items, Offset depth) const;
  Items after_ended(Items equal_keys, Offset depth);

  const Byte* text_;
  std::uint32_t next_rank_ = 0;
  std::size_t most_equal_ = 0;
};

bool by_key(const RankedText& a, const RankedText& b) { return a.key < b.key; }

void Ranker::give_rank(Items equal) {
  for (RankedText& item : equal) item.key = next_rank_;
  ++next_rank_;
  most_equal_ = std::max(most_equal_, equal.size());
}

void Ranker::load_keys(Items items, Offset depth) const {
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (i + kAhead < items.size()) {
      __builtin_prefetch(text_ + items[i + kAhead].start + depth);
    }
    RankedText& item = items[i];
    item.key = load_key(text_ + item.start + depth, item.length - depth);
  }
}

// Of texts that end within equal keys, those of equal length are equal: one
// that is longer goes on with zero bytes.
void Ranker::rank_ended(Items items) {
  std::sort(items.begin(), items.end(),
            [](const RankedText& a, const RankedText& b) {
              return a.length < b.length;
            });
  for (std::size_t i = 0; i < items.size();) {
    std::size_t past = i + 1;
    while (past < items.size() && items[past].length == items[i].length) ++past;
    give_rank(items.subspan(i, past - i));
    i = past;
  }
}

// Ranks those that end, which come first, and returns the others.
Items Ranker::after_ended(Items equal_keys, Offset depth) {
  const auto others = std::partition(
      equal_keys.begin(), equal_keys.end(),
      [depth](const RankedText& item) { return ends(item, depth); });
  const auto ended = static_cast<std::size_t>(others - equal_keys.begin());
  rank_ended(equal_keys.first(ended));
  return equal_keys.subspan(ended);
}

void Ranker::sort_by_text(Items items, Offset depth) {
  const auto compare = [this, depth](const RankedText& a, const RankedText& b) {
    const auto common =
        static_cast<std::size_t>(std::min(a.length, b.length) - depth);
    const int order =
        std::memcmp(text_ + a.start + depth, text_ + b.start + depth, common);
    if (order != 0) return order;
    return a.length < b.length ? -1 : static_cast<int>(a.length > b.length);
  };
  std::sort(items.begin(), items.end(),
            [&](const auto& a, const auto& b) { return compare(a, b) < 0; });
  for (std::size_t i = 0; i < items.size();) {
    std::size_t past = i + 1;
    while (past < items.size() && compare(items[i], items[past]) == 0) ++past;
    give_rank(items.subspan(i, past - i));
    i = past;
  }
}

void Ranker::rank_groups(Items items, Offset depth, int splits_left) {
  for (std::size_t i = 0; i < items.size();) {
    const std::uint64_t key = items[i].key;
    std::size_t past = i + 1;
    while (past < items.size() && items[past].key == key) ++past;
    if (past + kAhead < items.size()) {
      __builtin_prefetch(text_ + items[past + kAhead].start + depth);
    }
    if (past - i == 1) {
      give_rank(items.subspan(i, 1));
    } else {
      const Items rest = after_ended(items.subspan(i, past - i), depth);
      load_keys(rest, depth + kKeyBytes);
      sort(rest, depth + kKeyBytes, splits_left - 1);
    }
    i = past;
  }
}

void Ranker::sort(Items items, Offset depth, int splits_left) {
  if (splits_left == 0) return sort_by_text(items, depth);
  while (!items.empty()) {
    std::sort(items.begin(), items.end(), by_key);
    if (items.front().key != items.back().key) {
      return rank_groups(items, depth, splits_left);
    }
    // All agree: no call deeper, however long that is so.
    items = after_ended(items, depth);
    depth += kKeyBytes;
    load_keys(items, depth);
  }
}

}  // namespace

Ranks rank_texts(const Byte* text, std::span<RankedText> items) {
  Ranker ranker(text);
  ranker.sort(items, 0, kMostSplits);
  return ranker.ranks();
}

}  // namespace quill
