// What the command line of rova-agent says.
#pragma once

#include <optional>
#include <span>
#include <stdexcept>
#include <string>

namespace agent {

/// The command line is wrong.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Options {
  std::string netns; ///< the name of the network namespace to follow; empty for the own one
  std::string state; ///< the file of the database
  std::string group; ///< whose members alone may read it; empty for everybody
  bool once = false; ///< end as soon as the state is written
};

inline constexpr const char* helpText =
    "usage: rova-agent [--netns NAME] [--state FILE] [--group NAME] [--once]\n"
    "Keeps a state database of this machine's kernel current.\n"
    "\n"
    "  --netns NAME  follow the network namespace /run/netns/NAME\n"
    "  --state FILE  the database, /run/rova/state.db unless given\n"
    "  --group NAME  let the members of that group alone read it, instead of everybody\n"
    "  --once        write the state as it is now, and end\n"
    "  --help        print this\n"
    "  --version     print the version\n"
    "\n"
    "SIGHUP reads everything anew, SIGTERM and SIGINT end it.\n";

/// What to print and end with, where that was asked for.
std::optional<std::string> printedOnly(std::span<const char* const> words);

/// Raises `UsageError`.
Options readOptions(std::span<const char* const> words);

} // namespace agent
