// Interfaces, addresses and neighbours of the kernel as a device's state.
#pragma once

#include "sources/kernel/Vrfs.h"

namespace sources::kernel {

/// Fills descriptions, addresses and neighbours.
void fillInterfaces(const KernelState& kernel, const Interfaces& interfaces, const Vrfs& vrfs,
                    state::DeviceBuilder& builder);

} // namespace sources::kernel
