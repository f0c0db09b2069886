#include "host/staging.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <vector>

#include "host/errors.h"
#include "host/file_descriptor.h"
#include "host/interrupt.h"

namespace quill::tool {

namespace {

struct StagedFile {
  std::string temporary;
  std::string target;
  std::string name;  // as the user wrote it
};

// The mutex guards the other two against the thread that watches for
// interrupts, which removes the temporary files when it ends the run.
std::mutex mutex;
std::vector<StagedFile> staged;
bool committed = false;

[[noreturn]] void fail(const std::string& name) {
  throw FileError(std::strerror(errno), name);
}

void write_all(int output, std::string_view contents, const std::string& name) {
  constexpr std::size_t kWriteSize = std::size_t{1} << 22;
  while (!contents.empty()) {
    throw_if_stopped();
    const ssize_t count =
        write(output, contents.data(), std::min(contents.size(), kWriteSize));
    if (count < 0) fail(name);
    contents.remove_prefix(static_cast<std::size_t>(count));
  }
}

// Follows links, so that it is the file that is replaced and not a link to it.
std::string real_path(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(
      realpath(path.c_str(), nullptr), &std::free);
  if (real == nullptr) fail(path);
  return real.get();
}

mode_t default_mode() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

// Gives `file` the owner of `old` and answers the mode that it is to have: one
// without set-id bits when the owner can't be kept.
mode_t keep_owner(int file, const struct stat& old) {
  if (fchown(file, old.st_uid, old.st_gid) == 0) return old.st_mode & 07777;
  return old.st_mode & 0777;
}

// Creates the temporary file and notes it for removal in one step.
int create_beside(const std::string& target, const std::string& name) {
  std::string temporary =
      target.substr(0, target.rfind('/') + 1) + ".quill-XXXXXX";
  const std::lock_guard lock(mutex);
  const int descriptor = mkostemp(temporary.data(), O_CLOEXEC);
  if (descriptor < 0) fail(name);
  staged.push_back({std::move(temporary), target, name});
  return descriptor;
}

void give_up_last() {
  const std::lock_guard lock(mutex);
  if (staged.empty()) return;  // discarded after an interrupt
  unlink(staged.back().temporary.c_str());
  staged.pop_back();
}

}  // namespace

void write_to_standard_output(std::string_view contents) {
  write_all(STDOUT_FILENO, contents, "(standard output)");
}

void stage_file(const std::string& path, std::string_view contents) {
  struct stat old {};
  const bool exists = stat(path.c_str(), &old) == 0;
  if (!exists && errno != ENOENT) fail(path);
  if (exists && !S_ISREG(old.st_mode)) {
    const FileDescriptor device(open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (!device.is_open()) fail(path);
    write_all(device.get(), contents, path);
    return;
  }
  // A file that may not be written is not to be replaced either.
  if (exists && faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0)
    fail(path);

  const FileDescriptor file(
      create_beside(exists ? real_path(path) : path, path));
  try {
    write_all(file.get(), contents, path);
    const mode_t mode = exists ? keep_owner(file.get(), old) : default_mode();
    if (fchmod(file.get(), mode) != 0 || fsync(file.get()) != 0) fail(path);
  } catch (...) {
    give_up_last();
    throw;
  }
}

bool commit_staged() {
  const std::lock_guard lock(mutex);
  committed = true;
  bool all_done = true;
  for (const StagedFile& file : staged) {
    if (rename(file.temporary.c_str(), file.target.c_str()) == 0) continue;
    std::fprintf(stderr, "quill: %s: %s\n", file.name.c_str(),
                 std::strerror(errno));
    unlink(file.temporary.c_str());
    all_done = false;
  }
  staged.clear();
  return all_done;
}

bool discard_staged() noexcept {
  const std::lock_guard lock(mutex);
  if (committed) return false;
  for (const StagedFile& file : staged) unlink(file.temporary.c_str());
  staged.clear();
  return true;
}

}  // namespace quill::tool
