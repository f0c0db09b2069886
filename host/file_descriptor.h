// An open file, closed with its owner.
#pragma once

#include <unistd.h>

namespace quill::tool {

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  ~FileDescriptor() {
    if (descriptor_ > STDERR_FILENO) close(descriptor_);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  int get() const { return descriptor_; }
  bool is_open() const { return descriptor_ >= 0; }

 private:
  int descriptor_;
};

}  // namespace quill::tool
