// From what changes of a kernel's device to rows of the database.
#pragma once

#include "sources/database/Batch.h"
#include "sources/kernel/LiveDevice.h"

namespace agent {

/// Raises `SqliteError`.
void writeChanges(const sources::kernel::DeviceChanges& changes, sources::database::Batch& batch);

} // namespace agent
