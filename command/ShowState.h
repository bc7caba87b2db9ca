// show state.
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"

namespace command {

ExitStatus showState(const grammar::Parsed& parsed, const Options& options);

} // namespace command
