// A file descriptor that is closed with its object.
#pragma once

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <utility>

namespace sources::snapshot {

/// One of the standard three is moved behind them: what is meant for a standard output that is
/// closed would go into the file otherwise.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {
    if (fd < 0 || fd > STDERR_FILENO) return;
    fd_ = fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    ::close(fd);
  }
  ~Descriptor() { close(); }
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }

  bool isOpen() const { return fd_ >= 0; }
  int number() const { return fd_; }
  /// What the system says of the closing; 0 when nothing is open.
  int close() { return isOpen() ? ::close(std::exchange(fd_, -1)) : 0; }

 private:
  int fd_ = -1;
};

/// Another descriptor of one of the standard three.
inline Descriptor copyOf(int fd) {
  return Descriptor(fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

/// Opens a file, however often a signal comes in between.
inline Descriptor openFile(const std::string& path, int flags, mode_t mode = 0) {
  for (;;) {
    const int fd = ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode);
    if (fd >= 0 || errno != EINTR) return Descriptor(fd);
  }
}

} // namespace sources::snapshot
