#include "search/anchor_plan.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace quill {
namespace {

constexpr auto kContinuations = [] {
  ByteSet set;
  set.add_range(0x80, 0xBF);
  return set;
}();

// The bytes of a text's sample that are read at each place: no more than a
// word has bits.
constexpr Offset kSampleStretch = 40;

// Differences of so few hits in a sample mean nothing.
constexpr int kChance = 3;

constexpr std::uint64_t kEverywhere = ~std::uint64_t{0};

}  // namespace

// Calls `visit` with stretches of up to kSampleStretch bytes spread over the
// text, of about a thousand bytes in all; of more in a text so long that it
// costs little there.
template <class Visit>
void ByteShares::visit_sample(Visit visit) const {
  const Offset places = std::clamp<Offset>((end_ - start_) >> 19, 32, 128);
  const Offset step = std::max<Offset>((end_ - start_) / places, 1);
  for (Offset place = start_; place < end_; place += step) {
    visit(place, std::min(place + std::min(step, kSampleStretch), end_));
  }
}

ByteShares::ByteShares(const Byte* text, Offset start, Offset end)
    : text_(text), start_(start), end_(end) {
  std::array<std::uint16_t, 256> seen{};
  Offset total = 0;
  visit_sample([&](Offset from, Offset limit) {
    for (Offset i = from; i < limit; ++i) ++seen[text[i]];
    total += limit - from;
  });
  // What was not seen is rare, not absent.
  const float unit = 1.0F / (static_cast<float>(total) + 64);
  for (std::size_t i = 0; i < seen.size(); ++i) {
    shares_[i] = (static_cast<float>(seen[i]) + 0.25F) * unit;
  }
}

[[gnu::cold]] void ByteShares::judge(AnchorPlan& plan) const {
  if (plan.anchor_count == 0) return;
  int total = 1;
  int all = 0;
  std::array<int, kMostAnchors> others{};  // where all but this one hold
  visit_sample([&](Offset from, Offset limit) {
    limit = std::min(limit, end_ - plan.reach + 1);
    if (from >= limit) return;
    std::uint64_t hold[] = {kEverywhere, kEverywhere, kEverywhere};
    std::uint64_t* to = hold;
    for (const Anchor& anchor : plan.used()) {
      mark_members(text_ + from + anchor.offset, text_ + limit + anchor.offset,
                   anchor.set, to++);
    }
    total += static_cast<int>(limit - from);
    all += std::popcount(hold[0] & hold[1] & hold[2]);
    for (std::size_t i = 0; i < others.size(); ++i) {
      others[i] += std::popcount(hold[(i + 1) % 3] & hold[(i + 2) % 3]);
    }
  });
  plan.share = std::max(plan.share, static_cast<double>(all) / total);
  if (plan.anchor_count < kMostAnchors) return;
  const std::size_t last = others[0] < others[1] ? 0 : 1;
  if (others[last] + kChance < others[2]) {
    std::swap(plan.anchors[last], plan.anchors[2]);
  }
}

double ByteShares::of(const ByteSet& set) const {
  double sum = 0;
  set.visit_members([&](Byte byte) { sum += shares_[byte]; });
  return std::min(sum, 1.0);
}

int ByteSpread::known() const {
  return starts_ == 0 ? 0 : std::countr_zero(starts_);
}

void ByteSpread::add_character(const ByteSet* bytes, int length) {
  for (std::uint64_t left = starts_; left != 0; left &= left - 1) {
    const int start = std::countr_zero(left);
    for (int i = 0; i < length && start + i < kWindow; ++i) {
      at_[static_cast<std::size_t>(start) + static_cast<std::size_t>(i)]
          .add_all(bytes[i]);
    }
  }
}

void ByteSpread::add(const CharShapes& shapes) {
  if (is_full()) return;
  constexpr std::uint64_t kInside = (std::uint64_t{1} << kWindow) - 1;
  if (order_ == Order::kAnywhere && starts_ != 1) {
    // Any number of strays may come first.
    starts_ |= kInside & ~((starts_ & -starts_) - 1);
    add_character(&kContinuations, 1);
  }
  const CharShape& shape =
      order_ == Order::kAnywhere ? shapes.anywhere : shapes.in_order;
  std::uint64_t next = 0;
  for (int length = 1; length <= (order_ == Order::kAscii ? 1 : 4); ++length) {
    const auto l = static_cast<std::size_t>(length);
    if (!shape.has_length[l]) continue;
    add_character(shape.bytes[l].data(), length);
    next |= starts_ << length;
  }
  if (next == 0) dead_end_ = static_cast<int>(std::bit_width(starts_)) + 3;
  starts_ = next;
}

[[gnu::cold]] AnchorPlan ByteSpread::plan(const ByteShares& shares) const {
  AnchorPlan plan;
  plan.order = order_;
  plan.pivot = pivot_;
  if (starts_ == 0) {
    plan.impossible = true;
    plan.share = 0;
    plan.reach = dead_end_;
    return plan;
  }
  std::array<double, kWindow> share{};
  const int limit = std::min(known(), kWindow);
  for (int i = 0; i < limit; ++i) {
    const auto at = static_cast<std::size_t>(i);
    share[at] = shares.of(at_[at]);
  }
  // More anchors cost time everywhere: they must make up for it.
  constexpr double kRareEnough = 0.000001;
  constexpr double kUseful = 0.7;
  while (plan.anchor_count < kMostAnchors && plan.share > kRareEnough) {
    const auto* const best =
        std::min_element(share.begin(), share.begin() + limit);
    if (best == share.begin() + limit || *best > kUseful) break;
    const auto at = static_cast<std::size_t>(best - share.begin());
    plan.anchors[static_cast<std::size_t>(plan.anchor_count++)] =
        Anchor(at_[at], best - share.begin());
    plan.reach = std::max<Offset>(plan.reach, best - share.begin() + 1);
    plan.share *= share[at];
    share[at] = 1;
  }
  return plan;
}

}  // namespace quill
