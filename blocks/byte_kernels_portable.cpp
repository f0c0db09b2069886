// The kernels in plain code: they define what every other set must answer.
#include <algorithm>
#include <bit>

#include "blocks/byte_kernels.h"

namespace quill {
namespace {

bool is_lead(Byte byte) { return (byte & 0xC0) != 0x80; }

template <class Test>
const Byte* find_if(const Byte* first, const Byte* last, Test holds) {
  const Byte* position = first;
  while (position < last && !holds(position)) ++position;
  return position;
}

template <class Test>
const Byte* find_if_backward(const Byte* first, const Byte* last, Test holds) {
  for (const Byte* position = last; position > first;) {
    if (holds(--position)) return position;
  }
  return last;
}

template <class Test>
void mark_if(const Byte* first, const Byte* last, std::uint64_t* words,
             Test holds) {
  for (const Byte* position = first; position < last; position += 64) {
    const Offset count = std::min<Offset>(64, last - position);
    std::uint64_t word = 0;
    for (Offset i = 0; i < count; ++i) {
      word |= std::uint64_t{holds(position + i)} << i;
    }
    *words++ = word;
  }
}

auto equals(Byte wanted) {
  return [wanted](const Byte* position) { return *position == wanted; };
}

auto belongs_to(const ByteSet& set) {
  return [&set](const Byte* position) { return set.contains(*position); };
}

auto fits(std::span<const Anchor> anchors) {
  return [anchors](const Byte* position) {
    return std::all_of(anchors.begin(), anchors.end(),
                       [position](const Anchor& anchor) {
                         return anchor.set.contains(position[anchor.offset]);
                       });
  };
}

const Byte* find_byte_portable(const Byte* first, const Byte* last,
                               Byte wanted) {
  return find_if(first, last, equals(wanted));
}

const Byte* find_byte_backward_portable(const Byte* first, const Byte* last,
                                        Byte wanted) {
  return find_if_backward(first, last, equals(wanted));
}

const Byte* find_pair_portable(const Byte* first, const Byte* last, Byte near,
                               Byte far, Offset distance) {
  return find_if(first, last, [=](const Byte* position) {
    return *position == near && position[distance] == far;
  });
}

const Byte* find_member_portable(const Byte* first, const Byte* last,
                                 const ByteSet& set) {
  return find_if(first, last, belongs_to(set));
}

const Byte* find_member_backward_portable(const Byte* first, const Byte* last,
                                          const ByteSet& set) {
  return find_if_backward(first, last, belongs_to(set));
}

const std::int32_t* find_value_portable(const std::int32_t* first,
                                        const std::int32_t* last,
                                        std::int32_t wanted) {
  return std::find(first, last, wanted);
}

PairSurvey survey_pairs_portable(const std::int32_t* first,
                                 const std::int32_t* last, std::int32_t limit) {
  PairSurvey found{true, false, 0};
  for (bool is_pair = true; last - first > 1; ++first, is_pair = !is_pair) {
    const std::uint32_t above = static_cast<std::uint32_t>(first[1]) -
                                static_cast<std::uint32_t>(first[0]);
    found.ascends &= first[0] <= first[1];
    if (!is_pair) continue;
    found.exceeds |= static_cast<std::int32_t>(above) > limit;
    found.total += above;
  }
  return found;
}

const Byte* find_non_ascii_portable(const Byte* first, const Byte* last) {
  return find_if(first, last, [](const Byte* p) { return *p >= 0x80; });
}

const Byte* find_anchored_portable(const Byte* first, const Byte* last,
                                   std::span<const Anchor> anchors) {
  return find_if(first, last, fits(anchors));
}

const Byte* find_anchored_backward_portable(const Byte* first, const Byte* last,
                                            std::span<const Anchor> anchors) {
  return find_if_backward(first, last, fits(anchors));
}

void mark_members_portable(const Byte* first, const Byte* last,
                           const ByteSet& set, std::uint64_t* words) {
  mark_if(first, last, words, belongs_to(set));
}

void mark_anchored_portable(const Byte* first, const Byte* last,
                            std::span<const Anchor> anchors,
                            std::uint64_t* words) {
  mark_if(first, last, words, fits(anchors));
}

Offset list_marks_portable(const std::uint64_t* words, Offset word_count,
                           std::uint16_t* numbers) {
  Offset count = 0;
  for (Offset i = 0; i < word_count; ++i) {
    for (std::uint64_t word = words[i]; word != 0; word &= word - 1) {
      numbers[count++] =
          static_cast<std::uint16_t>(i * 64 + std::countr_zero(word));
    }
  }
  return count;
}

void mark_leads_portable(const Byte* first, const Byte* last,
                         std::uint64_t* words) {
  mark_if(first, last, words, [](const Byte* p) { return is_lead(*p); });
}

Offset count_leads_portable(const Byte* first, const Byte* last) {
  return std::count_if(first, last, is_lead);
}

const Byte* nth_lead_portable(const Byte* first, const Byte* last,
                              Offset index) {
  return find_if(first, last, [&index](const Byte* position) {
    return is_lead(*position) && index-- == 0;
  });
}

Offset announced_length(Byte lead) {
  return lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

bool is_in_order_at(const Byte* position, const Byte* last) {
  if (!is_lead(*position)) return false;
  const Offset length = announced_length(*position);
  return length <= last - position &&
         std::none_of(position + 1, position + length, is_lead);
}

Walk walk_characters_portable(const Byte* first, const Byte* last,
                              Offset most) {
  Walk walk{first, 0};
  while (walk.characters < most && walk.next < last &&
         is_in_order_at(walk.next, last)) {
    walk.next += announced_length(*walk.next);
    ++walk.characters;
  }
  return walk;
}

}  // namespace

const ByteKernels kPortableKernels = {
    .name = "portable",
    .level = Instructions::kPlain,
    .find_byte = find_byte_portable,
    .find_byte_backward = find_byte_backward_portable,
    .find_pair = find_pair_portable,
    .find_member = find_member_portable,
    .find_member_backward = find_member_backward_portable,
    .find_value = find_value_portable,
    .survey_pairs = survey_pairs_portable,
    .find_non_ascii = find_non_ascii_portable,
    .find_anchored = find_anchored_portable,
    .find_anchored_backward = find_anchored_backward_portable,
    .mark_members = mark_members_portable,
    .mark_anchored = mark_anchored_portable,
    .mark_opening = nullptr,
    .list_marks = list_marks_portable,
    .mark_leads = mark_leads_portable,
    .count_leads = count_leads_portable,
    .nth_lead = nth_lead_portable,
    .walk_characters = walk_characters_portable,
};

}  // namespace quill
