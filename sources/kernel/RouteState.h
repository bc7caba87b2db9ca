// Routes of the kernel as a device's route tables.
#pragma once

#include "sources/kernel/ViaLists.h"

namespace sources::kernel {

/// Fills the route tables of all VRFs, the FECs with the tunnels that they lead to, the configured
/// routes and the marks of routes that the hardware lacks. Raises `SourceError` for a route with
/// more vias than a FEC holds. The via lists are those of the hop lists, with what the routes made
/// of them.
ViaLists fillRoutes(const KernelState& kernel, const Interfaces& interfaces, const Vrfs& vrfs,
                    FecNumbers& numbers, state::DeviceBuilder& builder);

} // namespace sources::kernel
