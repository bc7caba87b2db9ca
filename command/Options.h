// Where the state comes from and how the output looks: the words of the command line that begin
// with
// "-", ahead of the command or behind it.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace command {

/// Exit statuses of the program.
enum ExitStatus { success = 0, failure = 1, usage = 2, interrupted = 130 };

/// The output formats by the numbers that the library gives them.
enum OutputFormat : unsigned { text = 1, json = 2 };

struct Options {
  std::string state = "kernel";
  OutputFormat format = text;
  bool timing = false;
  bool olderNexthopGroups = false;
  bool counters = false;
  std::string into; ///< where a changed snapshot goes; empty for its own file
  bool dryRun = false;
  bool help = false;
  bool version = false;
  /// Seconds of the framework's clock at which the program began to work on the command.
  double startTime = 0;
};

/// Reads the options among the arguments; those that are none, and everything behind "--", are
/// appended to `rest`. Raises UsageError for an option that does not exist or lacks its value.
Options parseOptions(std::span<const char* const> arguments, std::vector<const char*>& rest);

} // namespace command
