// The exported operations on single bits.
#include "blocks/bits.h"

#include "quillcore.h"

namespace {

quill::Byte* bytes_of(char* bits) {
  return reinterpret_cast<quill::Byte*>(bits);
}

}  // namespace

std::int32_t BitTest(char* bits, std::int32_t bit) {
  return quill::test_bit(bytes_of(bits), bit) ? 1 : 0;
}

void BitSet(char* bits, std::int32_t bit) {
  quill::Byte& byte = bytes_of(bits)[bit >> 3];
  byte = static_cast<quill::Byte>(byte | quill::bit_in_byte(bit));
}

void BitClear(char* bits, std::int32_t bit) {
  quill::Byte& byte = bytes_of(bits)[bit >> 3];
  byte = static_cast<quill::Byte>(byte & ~quill::bit_in_byte(bit));
}
