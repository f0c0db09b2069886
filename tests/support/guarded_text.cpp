#include "tests/support/guarded_text.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <vector>

namespace quill::test {
namespace {

std::size_t page_size() {
  static const auto size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return size;
}

// Mappings not in use, by their number of pages: to map anew would take most of
// the time of a test of short texts.
std::map<std::size_t, std::vector<char*>>& spare_pages() {
  static std::map<std::size_t, std::vector<char*>> spare;
  return spare;
}

char* map_pages(std::size_t page_count) {
  const std::size_t filled = page_count * page_size();
  void* const pages = mmap(nullptr, filled + 2 * page_size(), PROT_NONE,
                           MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED) std::abort();
  char* const first = static_cast<char*>(pages) + page_size();
  if (filled != 0 && mprotect(first, filled, PROT_READ | PROT_WRITE) != 0) {
    std::abort();
  }
  return first;
}

}  // namespace

GuardedText::GuardedText(std::string_view text)
    : page_count_((text.size() + page_size() - 1) / page_size()),
      size_(text.size()) {
  std::vector<char*>& spare = spare_pages()[page_count_];
  if (spare.empty()) spare.push_back(map_pages(page_count_));
  pages_ = spare.back();
  spare.pop_back();
  data_ = pages_ + page_count_ * page_size() - size_;
  if (size_ != 0) std::memcpy(data_, text.data(), size_);
}

GuardedText::~GuardedText() { spare_pages()[page_count_].push_back(pages_); }

}  // namespace quill::test
