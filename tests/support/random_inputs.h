// What libFuzzer does for a fuzz target, in a test: runs a family's check on
// one input after another, here on seeded bytes.
#pragma once

#include <gtest/gtest.h>

#include <random>

#include "tests/support/input.h"

namespace quill::test {

// Until a check has something to report.
template <class Check>
void for_random_inputs(std::uint32_t seed, int rounds, Check check) {
  std::mt19937 generator(seed);
  std::vector<std::uint8_t> bytes(4096);
  for (int round = 0; round < rounds; ++round) {
    for (std::uint8_t& byte : bytes) {
      byte = static_cast<std::uint8_t>(generator());
    }
    Input in(bytes);
    const std::string difference = check(in);
    ASSERT_TRUE(difference.empty()) << "round " << round << difference;
  }
}

}  // namespace quill::test
