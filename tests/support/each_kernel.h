// Runs a test body once with every set of vector kernels that the machine has,
// and once at every lower level of instructions.
#pragma once

#include <gtest/gtest.h>

#include "blocks/byte_kernels.h"
#include "blocks/instructions.h"

namespace quill::test {

template <class Body>
void with_each_kernel(Body body) {
  for (const ByteKernels* kernels : available_kernels()) {
    SCOPED_TRACE(kernels->name);
    force_kernels(kernels);
    body();
    force_kernels(nullptr);
  }
  for (const Instructions level : available_instructions()) {
    SCOPED_TRACE(testing::Message() << "level " << static_cast<int>(level));
    force_instructions(level);
    if (level != available_instructions().back()) body();
  }
}

}  // namespace quill::test
