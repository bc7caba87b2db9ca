// Writes a device's state into a database.
#pragma once

#include "sources/database/Facts.h"
#include "sources/database/Session.h"
#include "state/DeviceState.h"

namespace sources::database {

/// How many rows a change of the state changed.
struct Changes {
  std::uint64_t entered = 0; ///< or changed
  std::uint64_t removed = 0;
};

/// What becomes of a database's log when its writer ends.
enum class Log {
  joined, ///< its content moves into the file, which then stands alone
  kept    ///< stays, so that readers that may not write find all that they need
};

/// The writer's side of a database. There is one at a time: see `WriterLock`.
class Writer {
 public:
  /// Opens the database, or makes one; one of another version is started anew. Raises
  /// `SourceError`.
  Writer(const std::string& path, Log log);

  /// Makes the database hold that state and nothing else, with those facts on it, in one transaction. Rows that are the same
  /// already are left alone, so that their routes keep the time since when they are as they are.
  /// Raises `SourceError`, for a state too whose listing would end in a fatal error, and whatever
  /// reading the state raises; then nothing is changed.
  Changes replace(const state::DeviceState& device, const Facts& facts);

  Connection& connection() { return session_->connection(); }

 private:
  std::shared_ptr<Session> session_;
};

} // namespace sources::database
