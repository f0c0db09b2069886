// Which vector instructions the machine has, for kernels that stand beside
// those of byte_scan.h because they know more than bytes.
//
// Each level includes the ones before it. The plain code, always there,
// defines what the kernels of every level answer.
#pragma once

#include <span>

namespace quill {

enum class Instructions {
  kPlain,   // what every machine of the architecture has
  kAvx2,    // and BMI2
  kAvx512,  // with byte-wise permutations (VBMI), and BMI2
};

// The level in use: the machine's best, found once.
Instructions instructions();

// Every level that this machine has, the plain one first.
std::span<const Instructions> available_instructions();

// For tests: uses another level from now on. Not while another thread is in
// the library.
void force_instructions(Instructions level);

}  // namespace quill
