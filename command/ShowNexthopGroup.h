// show nexthop-group.
#pragma once

#include "command/Options.h"
#include "command/grammar/Parsed.h"
#include "state/DeviceState.h"

#include <set>
#include <string>

namespace command {

ExitStatus showNexthopGroup(const grammar::Parsed& parsed, const Options& options);

/// The groups that are configured or have an identifier.
std::set<std::string> nexthopGroupNames(const state::DeviceState& device);

} // namespace command
