// show ip route, show ipv6 route.
#pragma once

#include "command/Options.h"
#include "command/Words.h"

#include <string>

namespace command {

ExitStatus showIpRoute(Words& words, const Options& options);
ExitStatus showIpv6Route(Words& words, const Options& options);

/// The words that select routes by protocol, for the help.
std::string protocolWords();

} // namespace command
