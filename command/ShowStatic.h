// show running-config static, show static.
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"

namespace command {

ExitStatus showStaticConfig(const grammar::Parsed& parsed, const Options& options);
ExitStatus showStatic(const grammar::Parsed& parsed, const Options& options);

} // namespace command
