#include "tests/support/guarded_text.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace quill::test {

GuardedText::GuardedText(std::string_view text) : size_(text.size()) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t filled = (size_ + page - 1) / page * page;
  mapped_ = filled + 2 * page;
  pages_ =
      mmap(nullptr, mapped_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages_ == MAP_FAILED) std::abort();
  char* first = static_cast<char*>(pages_) + page;
  if (filled != 0 && mprotect(first, filled, PROT_READ | PROT_WRITE) != 0) {
    std::abort();
  }
  data_ = first + filled - size_;
  if (size_ != 0) std::memcpy(data_, text.data(), size_);
}

GuardedText::~GuardedText() { munmap(pages_, mapped_); }

}  // namespace quill::test
