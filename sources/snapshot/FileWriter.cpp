// The new file stands beside the old one under a name of its own until it is whole. It gets what
// the old one has beside its bytes before it gets its first byte.
#include "sources/snapshot/FileWriter.h"

#include "FileError.h"
#include "FileLock.h"
#include "FileTraits.h"
#include "scrivo/Exception.h"
#include "sources/Unfinished.h"

#include <atomic>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <sys/stat.h>

namespace sources::snapshot {

namespace {

namespace fs = std::filesystem;

constexpr mode_t newFileMode = 0666; // less the bits of the umask
constexpr mode_t ownerAlone = 0600;

/// The path with the links at its end followed, to a file that need not be there.
fs::path targetOf(fs::path path) {
  constexpr int mostLinks = 40; // the system's own limit
  std::error_code error;
  for (int links = 0; links < mostLinks && fs::is_symlink(path, error); ++links) {
    path = path.parent_path() / fs::read_symlink(path);
  }
  return path;
}

/// A name that no living writer has: a file of that name is one's that was killed.
fs::path nameBeside(const fs::path& target) {
  static std::atomic<unsigned> writers = 0;
  const std::string ending = ".new." + std::to_string(getpid()) + "." + std::to_string(++writers);
  return target.parent_path() /
         (target.filename().string().substr(0, NAME_MAX - ending.size()) + ending);
}

} // namespace

/// The new file's name, which goes with the object unless it has become the target.
class FileWriter::Beside {
 public:
  explicit Beside(const std::string& path)
      : target_(targetOf(path)), name_(nameBeside(target_)), unfinished_(name_) {
    unlink(name_.c_str());
  }
  ~Beside() {
    if (!isDone_) unlink(name_.c_str());
  }
  Beside(const Beside&) = delete;
  Beside& operator=(const Beside&) = delete;

  const std::string& name() const { return name_; }
  bool rename() { return isDone_ = std::rename(name_.c_str(), target_.c_str()) == 0; }
  Descriptor openFolder() const {
    const auto folder = fs::path(target_).parent_path();
    return openFile(folder.empty() ? "." : folder, O_RDONLY | O_DIRECTORY);
  }

 private:
  std::string target_, name_;
  Unfinished unfinished_;
  bool isDone_ = false;
};

FileWriter::FileWriter(const std::string& path, const std::function<void()>& waiting)
    : path_(path) {
  if (path != "-") old_ = lockFile(path, waiting);
}

FileWriter::~FileWriter() = default;

void FileWriter::open() {
  struct stat status {};
  if (path_ == "-") {
    file_ = copyOf(STDOUT_FILENO);
  } else if (!old_.isOpen() && stat(path_.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
    file_ = openFile(path_, O_WRONLY);
  } else {
    openBeside();
  }
  if (!file_.isOpen()) fail();
}

void FileWriter::openBeside() {
  beside_ = std::make_unique<Beside>(path_);
  file_ = openFile(beside_->name(), O_WRONLY | O_CREAT | O_EXCL,
                   old_.isOpen() ? ownerAlone : newFileMode);
  if (!file_.isOpen()) fail();
  if (old_.isOpen()) keepTraits(old_, file_, path_);
}

void FileWriter::write(std::string_view bytes) {
  if (!file_.isOpen()) open();
  while (!bytes.empty()) {
    const ssize_t count = ::write(file_.number(), bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (!isWorthRetry(file_.number(), POLLOUT)) {
      fail();
    }
  }
}

void FileWriter::finish() {
  if (!file_.isOpen()) return;
  // A pipe or terminal has nothing to synchronise and says so by EINVAL.
  if (fsync(file_.number()) != 0 && errno != EINVAL) fail();
  if (file_.close() != 0) fail();
}

// A rename lasts over a power failure once its folder is synchronised, where that can be done.
void FileWriter::commit() {
  finish();
  if (!beside_) return;
  const Descriptor folder = beside_->openFolder();
  if (!beside_->rename()) fail();
  beside_.reset();
  if (folder.isOpen()) fsync(folder.number());
}

void FileWriter::fail() const {
  if (errno == EPIPE) throw scrivo::sigintException("the reader has gone away");
  failErrno(path_ == "-" ? "standard output" : path_, "cannot be written");
}

} // namespace sources::snapshot
