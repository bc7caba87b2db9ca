// From the arguments of the program to a command that was understood.
#pragma once

#include "command/grammar/Parsed.h"

namespace command::grammar {

/// Raises UsageError for what cannot be understood, and for an option that the command has no use
/// for.
Parsed parse(const Grammar& grammar, const Arguments& arguments);

} // namespace command::grammar
