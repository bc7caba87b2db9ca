// The lock of a database's writer: a file beside the database, which tells who writes, and that the
// writer still lives.
#pragma once

#include "sources/snapshot/Descriptor.h"

#include <chrono>
#include <optional>
#include <string>
#include <sys/types.h>

namespace sources::database {

/// A writer that lives.
struct LiveWriter {
  pid_t process; ///< 0 for one that this namespace of processes does not know
  /// Since it last told that it lives.
  std::chrono::milliseconds silence;
};

/// The writer of the database at `path`; nothing when there is none.
std::optional<LiveWriter> liveWriter(const std::string& path);

/// The file of the lock.
std::string lockPath(const std::string& path);

/// When a writer told for the last time that it lives, in milliseconds since 1970; 0 for never.
std::int64_t lastBeat(const std::string& path);

/// Keeps other writers out for the life of the object. The system ends it with the process, however
/// that ends.
class WriterLock {
 public:
  /// Raises `SourceError` that tells who has it.
  explicit WriterLock(const std::string& path);

  /// Tells that the writer lives, and wakes who waits for commits: see `CommitWait`.
  void beat();

  /// Whether `marksOwn` was called for that database, by this writer or one before it: whatever
  /// stands there now is a writer's, and not a file that only has the name.
  bool isOwn() const;
  void marksOwn();

 private:
  snapshot::Descriptor file_;
};

} // namespace sources::database
