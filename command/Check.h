// check address, check next-hop, check rd.
#pragma once

#include "command/Options.h"
#include "command/Words.h"

namespace command {

ExitStatus checkAddress(Words& words, const Options& options);
ExitStatus checkNextHop(Words& words, const Options& options);
ExitStatus checkRouteDistinguisher(Words& words, const Options& options);

} // namespace command
