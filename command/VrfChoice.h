// The VRFs that a command names.
#pragma once

#include "command/Options.h"
#include "state/DeviceState.h"

#include <string>
#include <vector>

namespace command {

/// The VRF of that name, or every VRF for "all". Raises SourceError, which lists the VRFs, when
/// there is none.
std::vector<const state::VrfState*> chosenVrfs(const state::DeviceState& device,
                                               const std::string& name, const Options& options);

/// The one VRF of that name; the same error.
const state::VrfState& chosenVrf(const state::DeviceState& device, const std::string& name,
                                 const Options& options);

} // namespace command
