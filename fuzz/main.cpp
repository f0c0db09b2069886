// The whole of every fuzz target: the check that the build names, on the
// fuzzer's bytes.
#include <cstdio>

#include "tests/checks/calls.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data,
                                      std::size_t size) {
  quill::test::Input in({data, size});
  const std::string difference = quill::test::QUILL_CHECK(in);
  if (difference.empty()) return 0;
  std::fputs(difference.c_str(), stderr);
  __builtin_trap();
}
