// Nexthop objects of the kernel as nexthop groups.
#pragma once

#include "sources/kernel/Vrfs.h"

namespace sources::kernel {

/// Enters each nexthop object as the nexthop group "nexthop-N" with its number N: a group with an
/// entry for each member, a single next hop, member of a group or not, with one. Those of a
/// bridge's forwarding table are left out.
///
/// Nexthop objects belong to the namespace and not to a VRF: all of them are programmed in the
/// default VRF, and in those that interfaces of their members are in.
void fillNexthopGroups(const KernelState& kernel, const Interfaces& interfaces, const Vrfs& vrfs,
                       state::DeviceBuilder& builder);

} // namespace sources::kernel
