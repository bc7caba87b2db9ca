// How many routes of a VRF and family lose against another of their prefix, a row each.
#pragma once

#include "sources/RouteFacts.h"
#include "sources/database/ChangeLog.h"

namespace sources::database {

/// Raises `SqliteError` and `WrongColumn`.
HiddenRoutes readHidden(Connection& connection);

/// Makes the rows those.
void replaceHidden(Connection& connection, ChangeLog& log, const HiddenRoutes& hidden);

/// Makes one row that; none for 0.
void writeHidden(Connection& connection, ChangeLog& log, Vrf::VrfIdMap::VrfId vrf, int family,
                 std::uint64_t routes);

} // namespace sources::database
