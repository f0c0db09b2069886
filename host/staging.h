// Putting new contents in place of files, all or nothing.
//
// A staged file is complete, on the disk, under a temporary name beside its
// target, with the target's permissions and, where possible, its owner. The
// targets are replaced by renaming, at the end of the run, so a run that is
// interrupted or fails leaves every file as it was.
#pragma once

#include <string>
#include <string_view>

namespace quill::tool {

// Stages `contents` to become the file at `path`, which is created if it does
// not exist; where `path` is a link, the file it leads to. What is no regular
// file, as a device, can't be replaced and is written at once. Throws
// FileError.
void stage_file(const std::string& path, std::string_view contents);

// Renames what is staged into place. Says so on standard error and returns
// false when some file could not be replaced.
bool commit_staged();

// Removes what is staged. False, and nothing is done, once the renaming has
// begun. Waits for renaming under way in another thread.
bool discard_staged() noexcept;

// Writes all of `contents`. Throws FileError.
void write_to_standard_output(std::string_view contents);

}  // namespace quill::tool
