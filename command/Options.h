// What stands ahead of the command: where the state comes from and how the output looks.
#pragma once

#include <string>

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
  bool help = false;
  bool version = false;
  /// Seconds of the framework's clock at which the program began to work on the command.
  double startTime = 0;
};

/// Reads the options ahead of the command words and moves `argument` to the first of those, or to
/// `end`. Raises UsageError for an option that does not exist or lacks its value.
Options parseOptions(const char* const*& argument, const char* const* end);

} // namespace command
