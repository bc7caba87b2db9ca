// Writes a device's state into a database.
#pragma once

#include "sources/RouteFacts.h"
#include "sources/database/Facts.h"
#include "sources/database/Session.h"

#include <functional>
#include <memory>

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

  /// Makes the database hold that state and nothing else, with those facts on it and on its routes,
  /// in one transaction. Rows that are the same already are left alone, so that their routes keep
  /// the time since when they are as they are. Raises `SourceError`, for a state too whose listing
  /// would end in a fatal error, and whatever reading the state raises; then nothing is changed.
  Changes replace(const state::DeviceState& device, const Facts& facts,
                  const RouteFacts& routeFacts = {});

  /// Changes the facts alone.
  void tell(const Facts& facts);

  /// Leaves it to the caller when the log's content moves into the file: see `checkpoint`.
  void checkpointByHand();
  /// Moves the log's content into the file once it has outgrown 16 MiB, so that the log begins anew
  /// with the next transaction that meets no reader. A log of 32 MiB begins anew in any case: this
  /// waits for readers of older states, for at most 1.5 s, and is false when they did not end.
  /// Raises `SqliteError`.
  bool checkpoint();

  /// Calls `visit` with the FECs that stand there.
  void visitFecs(const std::function<void(const Vanta::Fib::Fec&)>& visit,
                 const std::function<void(const Vanta::Fib6::Fec&)>& visit6);

  Connection& connection() { return session_->connection(); }

 private:
  std::unique_ptr<int> logPages_; ///< in the log by the last commit; null unless somebody asks
  std::shared_ptr<Session> session_;
};

/// Removes the database's files, so that the next writer makes new ones. Who reads the old ones
/// goes on reading them.
void removeFiles(const std::string& path);

} // namespace sources::database
