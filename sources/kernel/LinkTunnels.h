// Tunnels of the devices that are configured tunnel interfaces.
#pragma once

#include "sources/kernel/Links.h"
#include "state/DeviceBuilder.h"

#include <span>

namespace sources::kernel {

/// Enters the tunnel of each GRE or VTI device that has the name of a configured tunnel interface:
/// "Tunnel" and a number of at most 65535, which is the number of its tunnel. Encapsulations are
/// numbered from 1 by content, per kind.
void fillLinkTunnels(const std::vector<Link>& links, state::DeviceBuilder& builder);

} // namespace sources::kernel
