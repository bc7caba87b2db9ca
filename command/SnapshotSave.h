// snapshot save FILE.
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"

namespace command {

ExitStatus saveSnapshot(const grammar::Parsed& parsed, const Options& options);

} // namespace command
