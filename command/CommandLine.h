// A whole command line: its options, then its command.
#pragma once

#include "command/Options.h"

#include <span>

namespace command {

/// Runs what the arguments, the name of the program not among them, say. Raises UsageError where
/// they cannot be understood and other exceptions where the work fails.
ExitStatus runCommandLine(std::span<const char* const> arguments);

} // namespace command
