// Where the state comes from and how the output looks: what the options of a command line say.
#pragma once

#include "command/grammar/ExitStatus.h"

#include <string>

namespace command {

/// The output formats by the numbers that the library gives them.
enum OutputFormat : unsigned { text = 1, json = 2 };

struct Options {
  std::string state = "kernel";
  std::string stateReason; ///< why it is that one
  OutputFormat format = text;
  bool timing = false;
  bool olderNexthopGroups = false;
  bool counters = false;
  std::string into; ///< where a changed snapshot goes; empty for its own file
  bool dryRun = false;
  std::string ignored; ///< names of fields that a comparison leaves out, with commas between them
  bool counts = false; ///< a comparison shows how many routes differ, and none of them
  std::string from; ///< from where on to watch: "now", the number of a change, empty for a listing
  /// Seconds of the framework's clock at which the program began to work on the command.
  double startTime = 0;
};

} // namespace command
