// A copy of a text whose last byte lies against a page that can't be read, and
// whose first byte follows one, where the text fills its pages: one byte read
// too many faults.
#pragma once

#include <cstddef>
#include <string_view>

namespace quill::test {

class GuardedText {
 public:
  explicit GuardedText(std::string_view text);
  ~GuardedText();
  GuardedText(const GuardedText&) = delete;
  GuardedText& operator=(const GuardedText&) = delete;

  char* data() const { return data_; }
  std::string_view view() const { return {data_, size_}; }

 private:
  std::size_t page_count_;
  char* pages_;
  char* data_;
  std::size_t size_;
};

}  // namespace quill::test
