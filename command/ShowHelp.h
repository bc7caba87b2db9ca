// help [COMMAND...].
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"

#include <string>

namespace command {

ExitStatus showHelp(const grammar::Parsed& parsed, const Options& options);

/// Writes what the program says of itself; a refused write is an error as it is for a listing.
ExitStatus printOwnWords(const std::string& words);

} // namespace command
