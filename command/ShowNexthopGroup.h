// show nexthop-group.
#pragma once

#include "command/Options.h"
#include "command/Words.h"

namespace command {

ExitStatus showNexthopGroup(Words& words, const Options& options);

} // namespace command
