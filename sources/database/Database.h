// State databases: a device's state in one file that a writer keeps and any number of processes
// read at once.
//
//   const sources::State state = sources::database::load("/run/rova/state.db");
//
// docs/database.md describes the file.
#pragma once

#include "sources/State.h"
#include "sources/database/ChangeLog.h"
#include "sources/database/Facts.h"

#include <string>

namespace sources::database {

/// Where the agent of this machine keeps its state unless told otherwise.
inline constexpr const char* defaultPath = "/run/rova/state.db";

/// Whether the file's first bytes are those of a database; false for one that cannot be read.
bool isDatabase(const std::string& path);

/// What that file says of itself. Raises `SourceError`.
Facts factsOf(const std::string& path);

/// How many rows a table has, and the bytes of the file that they take.
struct TableSize {
  std::string table;
  std::int64_t rows;
  std::int64_t bytes;
};
/// All tables of that file by name. Raises `SourceError`.
std::vector<TableSize> tableSizes(const std::string& path);

/// The state in that file: entities by now, and views of its tables, which read it as it is when
/// they are read. Raises `SourceError` for a file that is no state database or is damaged where its
/// opening reads it. Damage elsewhere shows where a table is read, as a
/// `Tembra::CorruptionDetectedException`.
State load(const std::string& path, const Needs& needs = {});

/// The state with the log of its changes. What is read of both while the state is held is of one
/// transaction.
struct LoggedState {
  State state;
  LogReader log;
  bool isFixed; ///< read as the file stands: what is written later shows where it is loaded again
};
/// Raises the same.
LoggedState loadWithLog(const std::string& path, const Needs& needs = {});

/// Makes a database hold that state alone, which came from `source`; makes the file where there is
/// none. Raises `SourceError` when somebody writes it.
void save(const state::DeviceState& device, const std::string& source, const std::string& path);

} // namespace sources::database
