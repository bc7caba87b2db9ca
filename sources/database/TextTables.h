// What stands in the database as text: VRFs, names of interfaces, and the sections of a snapshot
// that are no shared tables, with the configured routes of each VRF in rows of their own.
#pragma once

#include "sources/State.h"
#include "sources/database/TableWriter.h"

namespace sources::database {

/// Writes rows of configured static routes: those of a VRF and family (4 or 6), and of the agent
/// that hands them to routing, or none.
class StaticRouteWriter {
 public:
  explicit StaticRouteWriter(Connection& connection);

  void enter(std::int64_t vrf, std::int64_t family, const Routing::Route& route);
  void remove(std::int64_t vrf, std::int64_t family, const Routing::RouteKey& key);

 private:
  Statement list_, insert_, remove_;
};

/// Makes the text of a section that of the device.
void replaceSection(Connection& connection, const state::DeviceState& device, const char* name);

class TextTables {
 public:
  explicit TextTables(Connection& connection) : connection_(connection) {}

  /// Takes away the rows of VRFs that the device has no more.
  void removeOtherVrfs(const state::DeviceState& device);
  /// Makes the texts those of the device, and the names those of the interfaces.
  void replace(const state::DeviceState& device, const InterfaceSet& interfaces);

  /// The texts that are needed, as a snapshot of the device without its shared tables.
  std::string snapshotText(const Needs& needs);

 private:
  Connection& connection_;
};

} // namespace sources::database
