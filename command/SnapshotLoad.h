// snapshot load.
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"

namespace command {

ExitStatus loadSnapshot(const grammar::Parsed& parsed, const Options& options);

} // namespace command
