#include "File.h"

#include "sources/SourceError.h"

#include "lumo/Exception.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace sources::snapshot {

namespace {

constexpr mode_t newFileMode = 0666; // less the bits of the umask
constexpr mode_t permissionBits = 07777;
constexpr std::size_t readBytes = 64 * 1024;

class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  operator int() const { return fd_; }

 private:
  int fd_;
};

[[noreturn]] void failErrno(const std::string& path, const char* doing) {
  throw SourceError(path + ": " + doing + ": " + Lumo::errorString(errno));
}

int openToRead(const std::string& path) {
  if (path == "-") return fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0);
  return open(path.c_str(), O_RDONLY | O_CLOEXEC);
}

/// Fills `text` from `used` on and returns the bytes read; 0 at the end.
std::size_t readSome(int fd, std::string& text, std::size_t used, const std::string& path) {
  for (;;) {
    const ssize_t count = read(fd, text.data() + used, text.size() - used);
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) failErrno(inputName(path), "cannot be read");
  }
}

/// Makes a rename last over a power failure. What cannot be synchronised stays as it is.
void syncFolder(const std::string& path) {
  const auto folder = std::filesystem::path(path).parent_path();
  const Descriptor fd(
      open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (fd >= 0) fsync(fd);
}

} // namespace

std::string readFile(const std::string& path, std::size_t padding) {
  const Descriptor fd(openToRead(path));
  struct stat status {};
  if (fd < 0 || fstat(fd, &status) != 0) failErrno(inputName(path), "cannot be read");
  std::string text;
  text.reserve(static_cast<std::size_t>(status.st_size) + readBytes + padding);
  for (std::size_t used = 0;;) {
    text.resize(used + readBytes);
    const std::size_t count = readSome(fd, text, used, path);
    used += count;
    if (count > 0) continue;
    text.resize(used);
    text.resize(used + padding);
    return text;
  }
}

FileWriter::FileWriter(const std::string& path) : path_(path), target_(path) {
  struct stat status {};
  if (path == "-") {
    fd_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
  } else if (stat(path.c_str(), &status) != 0) {
    openBeside();
  } else if (!S_ISREG(status.st_mode)) {
    fd_ = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  } else {
    std::error_code error;
    const auto target = std::filesystem::canonical(path, error);
    if (!error) target_ = target;
    openBeside();
    fchmod(fd_, status.st_mode & permissionBits);
  }
  if (fd_ < 0) fail();
}

// No living writer has the same process and number: a file of that name is one's that was killed.
void FileWriter::openBeside() {
  static std::atomic<unsigned> writers = 0;
  const std::string name =
      target_ + ".new." + std::to_string(getpid()) + "." + std::to_string(++writers);
  unlink(name.c_str());
  fd_ = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, newFileMode);
  if (fd_ < 0) fail();
  temporary_ = name;
}

FileWriter::~FileWriter() {
  if (fd_ >= 0) close(fd_);
  if (!temporary_.empty()) unlink(temporary_.c_str());
}

void FileWriter::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(fd_, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) fail();
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void FileWriter::commit() {
  // A pipe or terminal has nothing to synchronise and says so by EINVAL.
  if (fsync(fd_) != 0 && errno != EINVAL) fail();
  if (close(std::exchange(fd_, -1)) != 0) fail();
  if (temporary_.empty()) return;
  if (rename(temporary_.c_str(), target_.c_str()) != 0) fail();
  temporary_.clear();
  syncFolder(target_);
}

void FileWriter::fail() const {
  failErrno(path_ == "-" ? "standard output" : path_, "cannot be written");
}

} // namespace sources::snapshot
