// The interface that a command names.
#pragma once

#include "command/Options.h"
#include "state/DeviceState.h"

#include <string>
#include <vector>

namespace command {

/// The interfaces that the state names anywhere, in their natural order.
std::vector<std::string> interfaceNames(const state::DeviceState& device);

/// Raises SourceError, which offers a name that is close, for an interface that the state names
/// nowhere: not as an interface with a configuration or addresses, nor where a forwarding class, a
/// tunnel, a nexthop group, a neighbour or a configured route leads to.
void requireInterface(const state::DeviceState& device, const std::string& name,
                      const Options& options);

} // namespace command
