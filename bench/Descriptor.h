// The files that listings are printed to.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

/// An open file without a name, or /dev/null, closed at the end.
class Descriptor {
 public:
  /// What is written to it is gone.
  static Descriptor null();
  /// A file in /tmp.
  static Descriptor temporary();
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int fd() const { return fd_; }
  std::size_t bytes() const;
  /// All that was written to a temporary file. Raises std::runtime_error.
  std::string content() const;

 private:
  explicit Descriptor(int fd);

  int fd_;
};

} // namespace bench
