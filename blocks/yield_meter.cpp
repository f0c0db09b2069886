#include "blocks/yield_meter.h"

#include <bit>

std::int32_t YieldMax = 10000;

namespace quill {
namespace {

// A host in another language may return any byte, and only 1 is true; as a
// `bool` any byte but 0 would be. The callback is therefore called through a
// type that returns the byte, which is returned in the same register.
using YieldByte = unsigned char (*)(std::int32_t, std::int32_t);

#if defined(__clang__)
__attribute__((no_sanitize("function")))
#endif
bool answers_true(QuillYield yield, std::int32_t reference,
                  std::int32_t progress) {
  return std::bit_cast<YieldByte>(yield)(reference, progress) == 1;
}

}  // namespace

void YieldMeter::ask(Offset progress) {
  go_on_ = answers_true(yield_, reference_, to_long(progress));
  count_ = 0;
}

}  // namespace quill
