// A device's state out of the kernel's.
#pragma once

#include "sources/kernel/ViaLists.h"

namespace sources::kernel {

/// The device that the state describes. Raises `SourceError` for a route with more vias than a FEC
/// holds.
state::DeviceState makeDevice(const KernelState& kernel);
/// The same with FECs of those numbers.
state::DeviceState makeDevice(const KernelState& kernel, FecNumbers& numbers);

} // namespace sources::kernel
