#include "blocks/yield_meter.h"

#include <bit>

std::int32_t YieldMax = 10000;

namespace quill {
namespace {

// A host in another language may return any byte, and only 1 is true; as a
// `bool` any byte but 0 would be. The callback is therefore called through a
// type that returns the byte, which is returned in the same register.
using YieldByte = unsigned char (*)(std::int32_t, std::int32_t);

}  // namespace

#if defined(__clang__)
__attribute__((no_sanitize("function")))
#endif
bool ask_host(QuillYield yield, std::int32_t reference, Offset progress) {
  return std::bit_cast<YieldByte>(yield)(reference, to_long(progress)) == 1;
}

void YieldMeter::ask(Offset progress) {
  go_on_ = ask_host(yield_, reference_, progress);
  count_ = 0;
}

}  // namespace quill
