// diff: the routes that two states show differently.
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"

namespace command {

ExitStatus diffRoutes(const grammar::Parsed& parsed, const Options& options);

} // namespace command
