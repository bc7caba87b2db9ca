// The sections of a snapshot that are no shared tables, each a text.
#pragma once

#include "sources/State.h"
#include "sources/database/ChangeLog.h"

namespace sources::database {

/// Makes the texts those of the device.
void replaceSections(Connection& connection, ChangeLog& log, const state::DeviceState& device);

/// The same for one of them.
void replaceSection(Connection& connection, ChangeLog& log, const state::DeviceState& device,
                    const char* name);

/// The members of a snapshot that the needed sections are, each with a comma ahead of it.
std::string sectionMembers(Connection& connection, const Needs& needs);

} // namespace sources::database
