// Which vector instructions are in use, for kernels that stand beside those of
// byte_scan.h because they know more than bytes. They follow the choice that is
// made there.
#pragma once

namespace quill {

// Each level includes the ones before it. The plain code, always there, defines
// what the kernels of every level answer.
enum class Instructions {
  kPlain,   // what every machine of the architecture has
  kAvx2,    // and BMI2
  kAvx512,  // byte-wise (BW, VL), with permutations (VBMI) and compression
};

Instructions instructions();

}  // namespace quill
