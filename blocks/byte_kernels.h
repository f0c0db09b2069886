// The sets of kernels behind byte_scan.h, one for each instruction set.
#pragma once

#include <span>

#include "blocks/byte_scan.h"
#include "blocks/instructions.h"

namespace quill {

struct ByteKernels {
  const char* name;
  Instructions level;  // of the kernels elsewhere that go with these
  decltype(&quill::find_byte) find_byte;
  decltype(&quill::find_byte_backward) find_byte_backward;
  decltype(&quill::find_pair) find_pair;
  decltype(&quill::find_member) find_member;
  decltype(&quill::find_member_backward) find_member_backward;
  decltype(&quill::find_value) find_value;
  decltype(&quill::survey_pairs) survey_pairs;
  decltype(&quill::find_non_ascii) find_non_ascii;
  decltype(&quill::find_anchored) find_anchored;
  decltype(&quill::find_anchored_backward) find_anchored_backward;
  decltype(&quill::mark_members) mark_members;
  decltype(&quill::mark_anchored) mark_anchored;
  decltype(&quill::mark_opening) mark_opening;  // null: the others will do
  decltype(&quill::list_marks) list_marks;
  decltype(&quill::mark_leads) mark_leads;
  decltype(&quill::count_leads) count_leads;
  decltype(&quill::nth_lead) nth_lead;
  decltype(&quill::walk_characters) walk_characters;
};

extern const ByteKernels kPortableKernels;
#if defined(__x86_64__)
extern const ByteKernels kSse2Kernels;
extern const ByteKernels kAvx2Kernels;
extern const ByteKernels kAvx512Kernels;
#elif defined(__aarch64__)
extern const ByteKernels kNeonKernels;
#endif

// Every set that this machine can run, the portable one first and the one that
// is chosen by itself last.
std::span<const ByteKernels* const> available_kernels();

// For tests: uses `kernels` from now on, or again the set that is chosen by
// itself when null. Not while another thread is in the library.
void force_kernels(const ByteKernels* kernels);

}  // namespace quill
