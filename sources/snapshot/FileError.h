// What goes wrong with a file, in the system's words.
#pragma once

#include "sources/SourceError.h"

#include "lumo/Exception.h"

#include <cerrno>
#include <poll.h>

namespace sources::snapshot {

/// Raises `SourceError`: "PATH: WHAT: the system's text of `errno`".
[[noreturn]] inline void failErrno(const std::string& path, const std::string& what) {
  throw SourceError(path + ": " + what + ": " + Lumo::errorString(errno));
}

/// After a read or write that failed: whether to try it again, for a signal came in between, or,
/// once it can go on, for the descriptor does not block.
inline bool isWorthRetry(int fd, short events) {
  if (errno == EINTR) return true;
  if (errno != EAGAIN) return false;
  pollfd descriptor{fd, events, 0};
  ::poll(&descriptor, 1, -1);
  return true;
}

} // namespace sources::snapshot
