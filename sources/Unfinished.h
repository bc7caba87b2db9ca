// The files that are being written under a name of their own, so that one who ends the process at
// once can take them away.
#pragma once

#include <cstddef>
#include <string>

namespace sources {

/// Keeps a file's name for `removeUnfinished` while the object lives. Make it before the file is
/// created, and let it go once the file has its final name or is gone. A file beyond the eighth at
/// a time, and one whose name no system call would take, are not kept.
class Unfinished {
 public:
  explicit Unfinished(const std::string& path) noexcept;
  ~Unfinished();
  Unfinished(const Unfinished&) = delete;
  Unfinished& operator=(const Unfinished&) = delete;

 private:
  std::size_t slot_;
};

/// Removes those files. For a signal handler that ends the process: it allocates nothing, takes no
/// lock and leaves `errno` to the caller's care. Their writers cannot finish them any more.
void removeUnfinished() noexcept;

} // namespace sources
