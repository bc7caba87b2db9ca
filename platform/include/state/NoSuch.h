// What a user is told of a name that does not exist, and may have meant by it.
#pragma once

#include "state/DeviceState.h"

#include <string>
#include <string_view>
#include <vector>

namespace state {

/// `there is no interface "Ethrnet1"; did you mean "Ethernet1"?`, without the question when no
/// known name is near: `kind` says what the names are of. A name is near when at most two letters
/// are missing, superfluous, wrong or swapped with their neighbour, and at most a third of the
/// name. Capitals count as small letters.
LUMO_EXPORT std::string noSuch(std::string_view kind, std::string_view name,
                               const std::vector<std::string>& known);

/// The same of a VRF, and all that there are: `there is no VRF "blue"; the VRFs are default, red`.
LUMO_EXPORT std::string noSuchVrf(const DeviceState& device, std::string_view name);

} // namespace state
