// Runs a test body once with every set of vector kernels that the machine has.
#pragma once

#include <gtest/gtest.h>

#include "blocks/byte_kernels.h"

namespace quill::test {

template <class Body>
void with_each_kernel(Body body) {
  for (const ByteKernels* kernels : available_kernels()) {
    SCOPED_TRACE(kernels->name);
    force_kernels(kernels);
    body();
    force_kernels(nullptr);
  }
}

}  // namespace quill::test
