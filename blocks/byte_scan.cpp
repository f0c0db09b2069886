// Chooses the kernels when the library is loaded and passes every scan on to
// them.
#include "blocks/byte_scan.h"

#include <bit>

#include "blocks/byte_kernels.h"

namespace quill {
namespace {

#if defined(__x86_64__)

constexpr const ByteKernels* kKnown[] = {&kPortableKernels, &kSse2Kernels,
                                         &kAvx2Kernels, &kAvx512Kernels};

// The builtin also asks whether the system saves the wide registers.
std::span<const ByteKernels* const> find_available() {
  __builtin_cpu_init();
  const bool has_avx2 =
      __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi2");
  if (!has_avx2) return {kKnown, 2};
  const bool has_avx512 = __builtin_cpu_supports("avx512bw") &&
                          __builtin_cpu_supports("avx512vl") &&
                          __builtin_cpu_supports("avx512vbmi") &&
                          __builtin_cpu_supports("avx512vbmi2");
  return {kKnown, has_avx512 ? 4u : 3u};
}

#else

constexpr const ByteKernels* kKnown[] = {
    &kPortableKernels,
#if defined(__aarch64__)
    &kNeonKernels,
#endif
};

std::span<const ByteKernels* const> find_available() { return kKnown; }

#endif

// The portable set until the library is loaded: constructors elsewhere in a
// program that is linked with it may run before.
constinit const ByteKernels* g_kernels = &kPortableKernels;

[[gnu::constructor]] void choose() { g_kernels = find_available().back(); }

inline const ByteKernels& kernels() { return *g_kernels; }

}  // namespace

std::span<const ByteKernels* const> available_kernels() {
  return find_available();
}

void force_kernels(const ByteKernels* kernels) {
  g_kernels = kernels != nullptr ? kernels : find_available().back();
}

Instructions instructions() { return kernels().level; }

Anchor::Anchor(Byte wanted, Offset from_position)
    : set(ByteSet::of(wanted)),
      offset(from_position),
      is_plain(true),
      value(wanted) {}

Anchor::Anchor(const ByteSet& wanted, Offset from_position)
    : set(wanted), offset(from_position) {
  unsigned count = 0;
  unsigned common = 0xFF;  // bits of all members
  unsigned any = 0;
  set.visit_members([&](Byte member) {
    ++count;
    common &= member;
    any |= member;
  });
  const unsigned varying = any & ~common;
  if (count != 1U << std::popcount(varying)) return;
  is_plain = true;
  ignored = static_cast<Byte>(varying);
  value = static_cast<Byte>(any);
}

const Byte* find_byte(const Byte* first, const Byte* last, Byte wanted) {
  return kernels().find_byte(first, last, wanted);
}

const Byte* find_byte_backward(const Byte* first, const Byte* last,
                               Byte wanted) {
  return kernels().find_byte_backward(first, last, wanted);
}

const Byte* find_pair(const Byte* first, const Byte* last, Byte near, Byte far,
                      Offset distance) {
  return kernels().find_pair(first, last, near, far, distance);
}

const Byte* find_member(const Byte* first, const Byte* last,
                        const ByteSet& set) {
  return kernels().find_member(first, last, set);
}

const Byte* find_member_backward(const Byte* first, const Byte* last,
                                 const ByteSet& set) {
  return kernels().find_member_backward(first, last, set);
}

const std::int32_t* find_value(const std::int32_t* first,
                               const std::int32_t* last, std::int32_t wanted) {
  return kernels().find_value(first, last, wanted);
}

PairSurvey survey_pairs(const std::int32_t* first, const std::int32_t* last,
                        std::int32_t limit) {
  constexpr Offset kFew = 16;  // not worth the wide registers
  const ByteKernels& by = last - first > kFew ? kernels() : kPortableKernels;
  return by.survey_pairs(first, last, limit);
}

const Byte* find_non_ascii(const Byte* first, const Byte* last) {
  return kernels().find_non_ascii(first, last);
}

const Byte* find_anchored(const Byte* first, const Byte* last,
                          std::span<const Anchor> anchors) {
  return kernels().find_anchored(first, last, anchors);
}

const Byte* find_anchored_backward(const Byte* first, const Byte* last,
                                   std::span<const Anchor> anchors) {
  return kernels().find_anchored_backward(first, last, anchors);
}

void mark_members(const Byte* first, const Byte* last, const ByteSet& set,
                  std::uint64_t* words) {
  kernels().mark_members(first, last, set, words);
}

void mark_anchored(const Byte* first, const Byte* last,
                   std::span<const Anchor> anchors, std::uint64_t* words) {
  kernels().mark_anchored(first, last, anchors, words);
}

bool mark_opening(const Byte* first, const Byte* last, const Opening& opening,
                  std::uint64_t* words) {
  if (kernels().mark_opening != nullptr) {
    return kernels().mark_opening(first, last, opening, words);
  }
  // The portable tests look into the sets, which would have to be filled in.
  if (&kernels() == &kPortableKernels) return false;
  const auto anchor = [&opening](int place, Offset offset) {
    Anchor plain;
    plain.is_plain = true;
    plain.ignored = static_cast<Byte>(opening.ignored >> (8 * place));
    plain.value = static_cast<Byte>(opening.value >> (8 * place));
    plain.offset = offset;
    return plain;
  };
  const Anchor anchors[] = {anchor(0, 0), anchor(1, opening.second()),
                            anchor(2, opening.last)};
  kernels().mark_anchored(first, last - opening.last, {anchors, 3}, words);
  return true;
}

Offset list_marks(const std::uint64_t* words, Offset word_count,
                  std::uint16_t* numbers) {
  return kernels().list_marks(words, word_count, numbers);
}

void mark_leads(const Byte* first, const Byte* last, std::uint64_t* words) {
  kernels().mark_leads(first, last, words);
}

Offset count_leads(const Byte* first, const Byte* last) {
  return kernels().count_leads(first, last);
}

const Byte* nth_lead(const Byte* first, const Byte* last, Offset index) {
  return kernels().nth_lead(first, last, index);
}

Walk walk_characters(const Byte* first, const Byte* last, Offset most) {
  return kernels().walk_characters(first, last, most);
}

}  // namespace quill
