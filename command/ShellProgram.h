// The rova program as its shell sees it.
#pragma once

#include "command/Options.h"
#include "command/grammar/Arguments.h"

namespace command {

/// Runs the shell with the options of the arguments. Raises UsageError where they want to read
/// state from standard input, which the shell reads its commands from.
ExitStatus runShell(const grammar::Arguments& arguments);

} // namespace command
