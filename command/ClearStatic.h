// clear static interface NAME.
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"

namespace command {

ExitStatus clearStatic(const grammar::Parsed& parsed, const Options& options);

} // namespace command
