// What a database holds beside the shared tables, as a snapshot.
#pragma once

#include "sources/State.h"
#include "sources/database/Sqlite.h"

namespace sources::database {

/// The text of a snapshot with the VRFs, and with the static routes and sections that are needed.
std::string snapshotText(Connection& connection, const Needs& needs);

} // namespace sources::database
