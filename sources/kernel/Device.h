// A device's state out of the kernel's.
#pragma once

#include "sources/kernel/ViaLists.h"

namespace sources::kernel {

/// The device that the state describes. Raises `SourceError` for a route with more vias than a FEC
/// holds.
state::DeviceState makeDevice(const KernelState& kernel);

/// The nexthop groups alone.
state::DeviceState makeNexthopGroups(const KernelState& kernel);

/// A device with what it was made by.
struct MadeDevice {
  state::DeviceState device;
  Interfaces interfaces;
  ViaLists lists;
};
/// The same with FECs of those numbers.
MadeDevice makeDevice(const KernelState& kernel, FecNumbers& numbers);

} // namespace sources::kernel
