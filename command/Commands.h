// The commands of the program.
#pragma once

#include "command/grammar/Grammar.h"

namespace command {

/// All that a command line may be, with the handlers of the commands.
const grammar::Grammar& commandGrammar();

/// The same in the shell, which has commands and filters of its own.
const grammar::Grammar& shellGrammar();

} // namespace command
