// watch ip route, watch ipv6 route.
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"

namespace command {

ExitStatus watchIpRoute(const grammar::Parsed& parsed, const Options& options);
ExitStatus watchIpv6Route(const grammar::Parsed& parsed, const Options& options);

} // namespace command
