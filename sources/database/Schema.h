// What stands in a database, and how its readers know it.
#pragma once

#include "sources/database/Sqlite.h"

namespace sources::database {

/// The version of the tables; grows with each change of them.
inline constexpr std::int64_t schemaVersion = 3;

/// Makes the tables and views in an empty file.
void makeSchema(Connection& connection);

/// Raises `SourceError` for a file that is no state database, is one of another version, or has
/// other tables than its version says.
void requireSchema(Connection& connection);

/// Raises `SourceError` for a file that is no state database.
void requireOwn(Connection& connection);

/// Whether the file has this version's tables.
bool hasSchema(Connection& connection);

} // namespace sources::database
