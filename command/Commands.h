// The commands of the program.
#pragma once

#include "command/grammar/Grammar.h"

namespace command {

/// All that a command line may be, with the handlers of the commands.
const grammar::Grammar& commandGrammar();

} // namespace command
