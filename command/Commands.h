// The commands of the program, one row each.
#pragma once

#include "command/Options.h"
#include "command/Words.h"

#include <string_view>

namespace command {

struct Command {
  std::string_view path;      ///< the words that name it, each of which may be abbreviated
  std::string_view arguments; ///< as the help shows them
  std::string_view help;
  ExitStatus (*run)(Words& words, const Options& options);
};

/// Finds the command that the words begin with and runs it on the rest.
ExitStatus runCommand(Words& words, const Options& options);

/// The text of `rova --help`.
std::string helpText();

} // namespace command
