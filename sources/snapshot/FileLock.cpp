#include "FileLock.h"

#include "FileError.h"

#include <sys/file.h>
#include <sys/stat.h>

namespace sources::snapshot {

namespace {

/// A file in the network is locked by those who may write it; else any way to open it will do.
Descriptor openToLock(const std::string& path) {
  Descriptor file;
  for (const int flags : {O_RDWR, O_RDONLY, O_WRONLY}) {
    file = openFile(path, flags | O_NONBLOCK);
    if (file.isOpen() || errno == ENOENT) break;
  }
  return file;
}

bool tryLock(const Descriptor& file, int operation) {
  while (flock(file.number(), operation) != 0) {
    if (errno != EINTR) return false;
  }
  return true;
}

/// Whether the file at the path is still this one: who had the lock may have replaced it.
bool isAt(const std::string& path, const Descriptor& file) {
  struct stat there {
  }, here{};
  return stat(path.c_str(), &there) == 0 && fstat(file.number(), &here) == 0 &&
         there.st_dev == here.st_dev && there.st_ino == here.st_ino;
}

/// Whether there is a regular file; raises `SourceError` where that cannot be known.
bool hasFile(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0) return S_ISREG(status.st_mode);
  if (errno != ENOENT) failErrno(path, "cannot be written");
  return false;
}

} // namespace

Descriptor lockFile(const std::string& path, const std::function<void()>& waiting) {
  bool isTold = !waiting;
  while (hasFile(path)) {
    Descriptor file = openToLock(path);
    if (!file.isOpen() && errno == ENOENT) continue; // gone since
    if (!file.isOpen()) failErrno(path, "cannot be written");
    if (!tryLock(file, LOCK_EX | LOCK_NB)) {
      if (errno == EWOULDBLOCK && !std::exchange(isTold, true)) waiting();
      if (!tryLock(file, LOCK_EX)) failErrno(path, "cannot be locked");
    }
    if (isAt(path, file)) return file;
  }
  return {};
}

} // namespace sources::snapshot
