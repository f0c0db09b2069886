#include "tests/support/show.h"

namespace quill::test {
namespace {

constexpr std::size_t kMostShown = 1000;

template <class Number>
std::string show_all(const std::vector<Number>& numbers) {
  std::string shown = "{";
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (i == kMostShown) return shown + "...}";
    shown += (i == 0 ? "" : ", ") + std::to_string(numbers[i]);
  }
  return shown + '}';
}

}  // namespace

std::string show(const std::string& bytes) {
  static const char* const digits = "0123456789ABCDEF";
  std::string shown = "\"";
  for (const char byte : bytes.substr(0, kMostShown)) {
    const auto value = static_cast<unsigned char>(byte);
    if (value >= 0x20 && value < 0x7F) {
      shown += byte;
    } else {
      shown += {'\\', 'x', digits[value >> 4], digits[value & 15]};
    }
  }
  shown += bytes.size() > kMostShown ? "\"..." : "\"";
  return shown + " (" + std::to_string(bytes.size()) + ')';
}

std::string show(const Longs& longs) { return show_all(longs); }

std::string show(const std::vector<unsigned char>& flags) {
  return show_all(flags);
}

std::string show(const BlockState& block) {
  static const char* const names[] = {"untouched", "null", "unlocked",
                                      "locked"};
  std::string shown = names[static_cast<int>(block.kind)];
  if (!block.bytes.empty()) shown += ' ' + show(block.bytes);
  return shown;
}

}  // namespace quill::test
