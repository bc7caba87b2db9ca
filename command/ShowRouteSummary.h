// show ip route summary, show ipv6 route summary.
#pragma once

#include "sources/State.h"

#include <vector>

namespace command {

/// Prints the route summary of each of those VRFs on standard output, in format 1 (text) or
/// 2 (model). Raises the printer's errors.
template <class Family>
void showRouteSummary(const state::DeviceState& device,
                      const std::vector<const state::VrfState*>& vrfs, const sources::Notes& notes,
                      unsigned format);

} // namespace command
