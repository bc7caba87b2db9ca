// Waiting for the commits of a database's writer, who touches the file of its lock behind each.
#pragma once

#include "sources/snapshot/Descriptor.h"

#include <string>

namespace sources::database {

/// Something to wait for beside others. A commit from its making on is not missed while the file of
/// the lock keeps its name; who waits a second at most meets the rest too.
class CommitWait {
 public:
  /// Raises `SourceError` where the system has no more such objects for the user.
  explicit CommitWait(const std::string& path);

  /// Can be read once there was a commit, or a sign of life.
  int descriptor() const { return events_.number(); }
  /// What was told up to here is known. To be called ahead of the look at the database.
  void clear();

 private:
  void follow();

  const std::string file_;
  snapshot::Descriptor events_;
};

} // namespace sources::database
