// What stands in the database as text: VRFs, names of interfaces, and the sections of a snapshot
// that are no shared tables, with the configured routes of each VRF in rows of their own.
#pragma once

#include "sources/State.h"
#include "sources/database/TableWriter.h"

namespace sources::database {

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
