#include "Descriptor.h"

#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace bench {

Descriptor::Descriptor(int fd) : fd_(fd) {
  if (fd_ < 0) throw std::runtime_error("no file to print the listing to can be opened");
}

Descriptor::~Descriptor() { ::close(fd_); }

Descriptor Descriptor::null() { return Descriptor(::open("/dev/null", O_WRONLY | O_CLOEXEC)); }

Descriptor Descriptor::temporary() {
  return Descriptor(::open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
}

std::size_t Descriptor::bytes() const {
  struct stat status {};
  ::fstat(fd_, &status);
  return static_cast<std::size_t>(status.st_size);
}

std::string Descriptor::content() const {
  std::string text(bytes(), '\0');
  for (std::size_t at = 0; at < text.size();) {
    const auto count = ::pread(fd_, text.data() + at, text.size() - at, static_cast<::off_t>(at));
    if (count <= 0) throw std::runtime_error("a listing cannot be read back");
    at += static_cast<std::size_t>(count);
  }
  return text;
}

} // namespace bench
