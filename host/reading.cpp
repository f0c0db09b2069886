#include "host/reading.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

#include "host/errors.h"
#include "host/file_descriptor.h"
#include "host/interrupt.h"

namespace quill::tool {

namespace {

constexpr std::int64_t kMaxSize = std::numeric_limits<std::int32_t>::max();
constexpr std::int64_t kReadSize = std::int64_t{1} << 22;

FileDescriptor open_input(const std::string& path) {
  return FileDescriptor(path == "-" ? STDIN_FILENO
                                    : open(path.c_str(), O_RDONLY | O_CLOEXEC));
}

// Reads to the end of the input. `expected` is a guess of its size.
Block read_all(int input, std::int64_t expected) {
  // One byte more than expected, to meet the end without growing.
  Block text(static_cast<std::int32_t>(std::min(expected + 1, kMaxSize)));
  std::int64_t used = 0;
  for (;;) {
    throw_if_stopped();
    char beyond;  // tells a text of exactly the greatest size from a larger one
    const std::int64_t room = text.size() - used;
    const bool full = room == 0 && used == kMaxSize;
    if (room == 0 && !full) {
      text.resize(static_cast<std::int32_t>(std::min(2 * used, kMaxSize)));
      continue;
    }
    const ssize_t count =
        full ? read(input, &beyond, 1)
             : read(input, text.data() + used,
                    static_cast<std::size_t>(std::min(room, kReadSize)));
    if (count < 0) throw FileError(std::strerror(errno));
    if (count == 0) break;
    if (full) throw FileError("larger than 2,147,483,647 bytes");
    used += count;
  }
  text.resize(static_cast<std::int32_t>(used));
  return text;
}

// The offset of the first byte that is not part of a UTF-8 character, or -1.
std::int64_t find_invalid_byte(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  const auto size = static_cast<std::int64_t>(text.size());
  std::int64_t position = 0;
  while (position < size) {
    std::uint64_t word = kHighBits;
    if (size - position >= 8) std::memcpy(&word, bytes + position, 8);
    if ((word & kHighBits) == 0) {
      position += 8;
      continue;
    }
    const std::int64_t start = position;
    UChar32 code_point;
    U8_NEXT(bytes, position, size, code_point);
    if (code_point < 0) return start;
  }
  return -1;
}

}  // namespace

std::string display_name(const std::string& path) {
  return path == "-" ? "(standard input)" : path;
}

Block read_text(const std::string& path) {
  const FileDescriptor input = open_input(path);
  struct stat status {};
  if (!input.is_open() || fstat(input.get(), &status) != 0)
    throw FileError(std::strerror(errno));
  if (S_ISDIR(status.st_mode)) throw FileError("is a directory");
  const bool regular = S_ISREG(status.st_mode);
  if (regular && status.st_size > kMaxSize)
    throw FileError("larger than 2,147,483,647 bytes");

  Block text = read_all(input.get(), regular ? status.st_size : kReadSize);
  const std::int64_t invalid = find_invalid_byte(text.text());
  if (invalid >= 0)
    throw FileError("not UTF-8 (at byte " + std::to_string(invalid) + ")");
  return text;
}

void require_utf8_argument(const char* name, std::string_view argument) {
  if (find_invalid_byte(argument) >= 0)
    throw UsageError(std::string(name) + " is not UTF-8");
}

}  // namespace quill::tool
