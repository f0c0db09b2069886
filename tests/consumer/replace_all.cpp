// A host in C++17: replaces through the byte search, which needs no mask, and
// looks at what only C++ hosts see.
#include <quillcore.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace {

bool go_on(std::int32_t, std::int32_t) { return true; }

// The same sentence as the host in C, with the word found where bytes match.
constexpr std::string_view kText = "A cat, the cat's hat, and a bobCat.";

}  // namespace

int main() {
  if (YieldMax != 10000) return 1;
  const auto size = static_cast<std::int32_t>(kText.size());
  QuillBlock block = NewBlock(size);
  if (block == nullptr) return 1;
  std::memcpy(*block, kText.data(), kText.size());

  std::int32_t end = size;
  std::int32_t caret = 0;
  if (ReplaceStrAll(block, 0, &end, "cat", 3, 0, "dog", 3, nullptr, 0, 0, 0, 0,
                    &caret, 0, go_on) != 1) {
    return 1;
  }
  // One of the functions with C++ linkage.
  const std::int32_t capital = FindByte(*block, 0, end, 'C', 0, go_on);
  if (capital < 0) return 1;
  (*block)[capital] = 'c';
  std::fwrite(*block, 1, static_cast<std::size_t>(end), stdout);
  std::puts("");
  DisposeBlock(block);
  return 0;
}
