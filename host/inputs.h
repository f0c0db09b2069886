// What the subcommands share: working through the inputs one by one, and the
// exit status, which is that of grep.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "host/block.h"

namespace CLI {
class App;
}

namespace quill::tool {

enum ExitStatus : int { kMatched = 0, kNotMatched = 1, kTrouble = 2 };

struct Input {
  std::string path;
  std::string name;  // for messages and listings
  Block text;
};

using Paths = std::vector<std::string>;

// Declares the positional FILE... of a subcommand.
void add_files(CLI::App& command, Paths& paths);

// Reads each input (standard input when there is none) and has `work` deal
// with it; it answers whether anything matched. An input that makes trouble
// is named on standard error with the reason, and the others still run.
ExitStatus for_each_input(const Paths& paths,
                          const std::function<bool(Input&)>& work);

// Says "quill: NAME: REASON" on standard error.
void complain(std::string_view name, std::string_view reason) noexcept;

}  // namespace quill::tool
