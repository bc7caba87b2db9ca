// Where a shared table lives.
#pragma once

#include <string>

namespace Mem {

/// The place of a table in shared memory: a root and the table's name below it.
class RootPath {
 public:
  RootPath() = default;
  RootPath(std::string root, std::string name) : root_(std::move(root)), name_(std::move(name)) {}
  virtual ~RootPath() = default;
  RootPath(const RootPath&) = default;
  RootPath& operator=(const RootPath&) = default;

  /// What the name of the socket that serves the table begins with.
  virtual const char* socknamePrefix() const { return "shmem"; }
  const std::string& root() const { return root_; }
  const std::string& name() const { return name_; }
  std::string stringValue() const { return root_.empty() ? name_ : root_ + "/" + name_; }

 private:
  std::string root_;
  std::string name_;
};

} // namespace Mem

namespace Vanta {

class RootPath : public Mem::RootPath {
 public:
  using Mem::RootPath::RootPath;
  const char* socknamePrefix() const override { return "vanta"; }
};

} // namespace Vanta
