#include "sources/database/CommitWait.h"

#include "sources/database/Lock.h"
#include "sources/snapshot/FileError.h"

#include <sys/inotify.h>

namespace sources::database {

CommitWait::CommitWait(const std::string& path)
    : file_(lockPath(path)), events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  if (!events_.isOpen()) snapshot::failErrno(path, "cannot be watched");
  follow();
}

// The one that was followed before stays so. A file that is not there yet, or is another one by
// now, is followed from the next call on.
void CommitWait::follow() { inotify_add_watch(events_.number(), file_.c_str(), IN_ATTRIB); }

void CommitWait::clear() {
  char events[4096];
  while (read(events_.number(), events, sizeof events) > 0) continue;
  follow();
}

} // namespace sources::database
