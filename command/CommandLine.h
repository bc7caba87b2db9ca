// A whole command line: its options, then its command, or the shell without one.
#pragma once

#include "command/Options.h"
#include "command/grammar/Arguments.h"

#include <span>

namespace command {

/// Runs what the arguments, the name of the program not among them, say. Raises UsageError where
/// they cannot be understood and other exceptions where the work fails.
ExitStatus runCommandLine(std::span<const char* const> arguments);

/// Runs what the arguments say by that table; raises the same.
ExitStatus runArguments(const grammar::Grammar& table, const grammar::Arguments& arguments);

} // namespace command
