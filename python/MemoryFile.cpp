#include "MemoryFile.h"

#include <cerrno>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace rova_python {

namespace {

[[noreturn]] void fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

} // namespace

MemoryFile::MemoryFile(std::string_view beginning)
    : descriptor_(memfd_create("rova-model", MFD_CLOEXEC)) {
  if (descriptor_ < 0) fail("no file in memory");
  if (write(descriptor_, beginning.data(), beginning.size()) < 0) {
    const int error = errno;
    close(descriptor_);
    errno = error;
    fail("no write to a file in memory");
  }
}

MemoryFile::~MemoryFile() {
  if (bytes_) munmap(bytes_, mapped_);
  close(descriptor_);
}

std::size_t MemoryFile::length() const {
  struct stat status {};
  if (fstat(descriptor_, &status)) fail("no length of a file in memory");
  return static_cast<std::size_t>(status.st_size);
}

char* MemoryFile::map(std::size_t length) {
  if (ftruncate(descriptor_, static_cast<off_t>(length))) fail("no room behind a file in memory");
  void* const bytes =
      mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_POPULATE, descriptor_, 0);
  if (bytes == MAP_FAILED) fail("no view of a file in memory");
  bytes_ = bytes;
  mapped_ = length;
  return static_cast<char*>(bytes);
}

} // namespace rova_python
