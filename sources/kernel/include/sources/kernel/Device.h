// A device's state out of the kernel's.
#pragma once

#include "sources/kernel/Gather.h"

namespace sources::kernel {

/// The device that the gathered state describes; takes it apart on the way. Raises `SourceError`
/// for a route with more vias than a FEC holds.
state::DeviceState makeDevice(KernelState kernel);

} // namespace sources::kernel
