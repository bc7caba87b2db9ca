// show ip route, show ipv6 route.
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"

namespace command {

ExitStatus showIpRoute(const grammar::Parsed& parsed, const Options& options);
ExitStatus showIpv6Route(const grammar::Parsed& parsed, const Options& options);

} // namespace command
