// Reading a whole input into a Block: a file, or standard input for "-".
//
// The library takes UTF-8 text of at most 2,147,483,647 bytes; whatever is not
// that is refused here, with a reason fit for the user.
#pragma once

#include <string>

#include "host/block.h"

namespace quill::tool {

// What an input is called in messages.
std::string display_name(const std::string& path);

// Throws FileError.
Block read_text(const std::string& path);

// Throws UsageError when an argument of the command line is not UTF-8.
void require_utf8_argument(const char* name, std::string_view argument);

}  // namespace quill::tool
