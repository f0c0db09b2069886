// The choice depends on the machine alone, so threads that choose at the same
// time choose the same.
#include "blocks/instructions.h"

#include <atomic>

namespace quill {
namespace {

constexpr Instructions kLevels[] = {Instructions::kPlain, Instructions::kAvx2,
                                    Instructions::kAvx512};

#if defined(__x86_64__)

Instructions find_best() {
  if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("bmi2")) {
    return Instructions::kPlain;
  }
  return __builtin_cpu_supports("avx512bw") &&
                 __builtin_cpu_supports("avx512vl") &&
                 __builtin_cpu_supports("avx512vbmi")
             ? Instructions::kAvx512
             : Instructions::kAvx2;
}

#else

Instructions find_best() { return Instructions::kPlain; }

#endif

constexpr int kUnknown = -1;
constinit std::atomic<int> g_level = kUnknown;

}  // namespace

Instructions instructions() {
  int level = g_level.load(std::memory_order_relaxed);
  if (level == kUnknown) {
    level = static_cast<int>(find_best());
    g_level.store(level, std::memory_order_relaxed);
  }
  return static_cast<Instructions>(level);
}

std::span<const Instructions> available_instructions() {
  return {kLevels, static_cast<std::size_t>(find_best()) + 1};
}

void force_instructions(Instructions level) {
  g_level.store(static_cast<int>(level), std::memory_order_relaxed);
}

}  // namespace quill
