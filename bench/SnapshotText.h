// A device's routes and FECs as a state file, to give to the `rova` command.
#pragma once

#include "state/DeviceState.h"

#include <ostream>

namespace bench {

/// Writes the default VRF's routes of both families and the FECs. Nothing else of the device.
void writeSnapshot(const state::DeviceState& device, std::ostream& out);

} // namespace bench
