// Tunnels for hops that wrap their packets: label stacks, SRv6, VXLAN.
#pragma once

#include "sources/kernel/ViaLists.h"

namespace sources::kernel {

/// Names a tunnel in each via that forwards through one, and enters these tunnels. They are
/// numbered from 1 by content, per kind, so that equal kernel state has equal numbers.
///
/// A listing shows all vias of a FEC in the way of the first. So where one via of a list is a
/// tunnel of labels, all of them become such, with as many labels as they push; likewise where some
/// vias of a list are SRv6 tunnels and others are not.
void enterHopTunnels(std::span<ViaList* const> lists, const KernelState& kernel,
                     const Interfaces& interfaces, state::DeviceBuilder& builder);

} // namespace sources::kernel
