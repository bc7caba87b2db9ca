// check address, check next-hop, check rd.
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"

namespace command {

ExitStatus checkAddress(const grammar::Parsed& parsed, const Options& options);
ExitStatus checkNextHop(const grammar::Parsed& parsed, const Options& options);
ExitStatus checkRouteDistinguisher(const grammar::Parsed& parsed, const Options& options);

} // namespace command
