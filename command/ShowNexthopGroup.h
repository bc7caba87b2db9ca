// show nexthop-group.
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"

namespace command {

ExitStatus showNexthopGroup(const grammar::Parsed& parsed, const Options& options);

} // namespace command
