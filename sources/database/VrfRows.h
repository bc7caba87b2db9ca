// VRFs, by their place among the others.
#pragma once

#include "sources/RouteFacts.h"
#include "sources/database/ChangeLog.h"

#include <vector>

namespace sources::database {

struct VrfRow {
  std::int64_t id;
  std::string name;
  bool plain; ///< nothing but a table with routes: see `RouteFacts`
  friend bool operator==(const VrfRow&, const VrfRow&) = default;
};

std::vector<VrfRow> readVrfs(Connection& connection);

/// Makes the rows those of the device.
void replaceVrfs(Connection& connection, ChangeLog& log, const state::DeviceState& device,
                 const RouteFacts& facts);

/// Whether a VRF has a route of that family (4 or 6), listed or hidden.
bool hasRoutes(Connection& connection, std::int64_t vrf, int family);

/// Takes away the routes of VRFs that the device has no more, while these still stand there.
void removeOtherVrfs(Connection& connection, const state::DeviceState& device);

} // namespace sources::database
