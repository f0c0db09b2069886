// With AVX-512 the check that characters are in order gives their first bytes
// along with it: no byte is looked at twice.
#include "search/cut_every.h"

#if defined(__x86_64__)

#include "blocks/avx512_block.h"

namespace quill {
namespace {

// Where characters begin in consecutive whole blocks, as long as all are in
// order. What a block's last characters expect of the next one is carried over,
// so that no load waits for the block before.
class Starts {
 public:
  // False when the block is not in order.
  bool take(const Byte* block) {
    const __m512i bytes = load(block);
    const Bits wide = _mm512_movepi8_mask(bytes);
    const Bits two = at_least(bytes, 0xC0);
    const Bits three = at_least(bytes, 0xE0);
    const Bits four = at_least(bytes, 0xF0);
    const Bits expected = two << 1 | three << 2 | four << 3 | carried_;
    if (expected != (wide & ~two)) return false;
    carried_ = two >> 63 | three >> 62 | four >> 61;
    bits_ = ~expected;
    return true;
  }

  Bits bits() const { return bits_; }
  bool ends_whole() const { return carried_ == 0; }

 private:
  Bits carried_ = 0;
  Bits bits_ = 0;
};

}  // namespace

// A cut is known when the character behind it begins. Stays within whole
// blocks; the rest is the caller's.
Cuts cut_every(const Byte* text, Offset position, Offset end, Offset every,
               Offset most, std::int32_t* pairs) {
  Starts starts;
  Offset cuts = 0;
  Offset missing = every;  // characters until the next cut
  for (; cuts < most && end - position >= kBlock; position += kBlock) {
    if (!starts.take(text + position)) break;
    const Offset count = count_of(starts.bits());
    if (every >= kBlock) {
      // At most one: stored in any case and counted if it is there.
      const Offset at = position + nth(starts.bits(), missing & 63);
      pairs[2 * cuts] = pairs[2 * cuts + 1] = to_long(at);
      const bool is_here = missing < count;
      cuts += is_here ? 1 : 0;
      missing += is_here ? every : 0;
    } else {
      for (; missing < count && cuts < most; missing += every, ++cuts) {
        const Offset at = position + nth(starts.bits(), missing);
        pairs[2 * cuts] = pairs[2 * cuts + 1] = to_long(at);
      }
    }
    missing -= count;
  }
  if (cuts == most && most > 0) return {pairs[2 * cuts - 1], 0, cuts};
  if (!starts.ends_whole()) {
    // The last character is left to the caller as well.
    do {
      --position;
    } while ((text[position] & 0xC0) == 0x80);
    ++missing;
  }
  return {position, every - missing, cuts};
}

}  // namespace quill

#include "blocks/avx512_end.h"

#else

namespace quill {

Cuts cut_every(const Byte*, Offset position, Offset, Offset, Offset,
               std::int32_t*) {
  return {position, 0, 0};
}

}  // namespace quill

#endif  // __x86_64__
