#include "sources/database/Lock.h"

#include "sources/snapshot/FileError.h"

#include <sys/stat.h>

namespace sources::database {

namespace {

using snapshot::Descriptor;

struct flock wholeFile(short type) {
  struct flock lock {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  return lock;
}

std::chrono::milliseconds ageOf(const timespec& time) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const auto seconds = std::chrono::seconds(now.tv_sec - time.tv_sec);
  const auto rest = std::chrono::nanoseconds(now.tv_nsec - time.tv_nsec);
  return std::chrono::duration_cast<std::chrono::milliseconds>(seconds + rest);
}

std::optional<LiveWriter> holderOf(const Descriptor& file) {
  auto lock = wholeFile(F_WRLCK);
  struct stat status {};
  if (fcntl(file.number(), F_GETLK, &lock) != 0 || lock.l_type == F_UNLCK) return {};
  if (fstat(file.number(), &status) != 0) return {};
  return LiveWriter{lock.l_pid > 0 ? lock.l_pid : 0, ageOf(status.st_mtim)};
}

} // namespace

std::string lockPath(const std::string& path) { return path + "-lock"; }

std::optional<LiveWriter> liveWriter(const std::string& path) {
  const Descriptor file = snapshot::openFile(lockPath(path), O_RDONLY);
  return file.isOpen() ? holderOf(file) : std::nullopt;
}

std::int64_t lastBeat(const std::string& path) {
  struct stat status {};
  if (stat(lockPath(path).c_str(), &status) != 0) return 0;
  return status.st_mtim.tv_sec * 1000 + status.st_mtim.tv_nsec / 1'000'000;
}

WriterLock::WriterLock(const std::string& path)
    : file_(snapshot::openFile(lockPath(path), O_RDWR | O_CREAT, 0644)) {
  if (!file_.isOpen()) snapshot::failErrno(lockPath(path), "cannot be written");
  auto lock = wholeFile(F_WRLCK);
  if (fcntl(file_.number(), F_SETLK, &lock) == 0) {
    beat();
    return;
  }
  const auto holder = holderOf(file_);
  throw SourceError(path + ": process " + (holder ? std::to_string(holder->process) : "?") +
                    " writes it; stop that one first");
}

void WriterLock::beat() { futimens(file_.number(), nullptr); }

bool WriterLock::isOwn() const {
  char mark = 0;
  return pread(file_.number(), &mark, 1, 0) == 1;
}

void WriterLock::marksOwn() {
  // Without the mark a damaged file is refused by the next writer instead of being started anew.
  if (!isOwn()) [[maybe_unused]]
    const auto written = pwrite(file_.number(), "w", 1, 0);
}

} // namespace sources::database
