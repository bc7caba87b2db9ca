// VRFs, by their place among the others.
#pragma once

#include "sources/database/Sqlite.h"

#include "state/DeviceState.h"

#include <vector>

namespace sources::database {

struct VrfRow {
  std::int64_t id;
  std::string name;
  friend bool operator==(const VrfRow&, const VrfRow&) = default;
};

std::vector<VrfRow> readVrfs(Connection& connection);

/// Makes the rows those of the device.
void replaceVrfs(Connection& connection, const state::DeviceState& device);

/// Takes away the routes of VRFs that the device has no more, while these still stand there.
void removeOtherVrfs(Connection& connection, const state::DeviceState& device);

} // namespace sources::database
