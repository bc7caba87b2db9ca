// show ip route, show ipv6 route.
#pragma once

#include "command/Options.h"
#include "command/Words.h"

namespace command {

ExitStatus showIpRoute(Words& words, const Options& options);
ExitStatus showIpv6Route(Words& words, const Options& options);

} // namespace command
