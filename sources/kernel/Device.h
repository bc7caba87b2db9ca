// A device's state out of the kernel's.
#pragma once

#include "sources/kernel/KernelState.h"

namespace sources::kernel {

/// The device that the state describes. Raises `SourceError` for a route with more vias than a FEC
/// holds.
state::DeviceState makeDevice(const KernelState& kernel);

} // namespace sources::kernel
