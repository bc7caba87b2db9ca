#include "agent/Rights.h"

#include "sources/SourceError.h"
#include "sources/snapshot/FileError.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace agent {

namespace {

using sources::SourceError;
using sources::snapshot::failErrno;

constexpr mode_t ofOthers = 0007, writing = 0022;

gid_t groupOf(const std::string& name) {
  if (const group* const found = getgrnam(name.c_str())) return found->gr_gid;
  throw SourceError("there is no group \"" + name + "\": expected one that getent group lists");
}

} // namespace

Rights::Rights(const std::string& group) : name_(group) {
  if (!group.empty()) group_ = groupOf(group);
  umask(group_ ? writing | ofOthers : writing);
}

void Rights::giveFile(const std::string& path) const { give(path, group_ ? 0640 : 0644); }

void Rights::giveFolder(const std::string& path) const { give(path, group_ ? 0750 : 0755); }

void Rights::giveDatabase(const std::string& path) const {
  for (const char* const suffix : {"", "-wal", "-shm", "-lock"}) giveFile(path + suffix);
}

// A sandbox may forbid the calls: none is made for what is right already.
void Rights::give(const std::string& path, mode_t mode) const {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return;
  const bool isOfGroup = !group_ || status.st_gid == *group_;
  if (!isOfGroup && chown(path.c_str(), static_cast<uid_t>(-1), *group_) != 0) {
    failErrno(path, "cannot be given to group " + name_);
  }
  if ((status.st_mode & 07777) == mode || chmod(path.c_str(), mode) == 0) return;
  failErrno(path, "its rights cannot be changed");
}

} // namespace agent
