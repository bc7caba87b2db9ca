// Stays in network namespaces.
#pragma once

#include <string>

namespace sources::kernel {

/// An open file, closed with the object.
class File {
 public:
  explicit File(const std::string& path);
  ~File();
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  int descriptor() const { return descriptor_; }

 private:
  int descriptor_;
};

/// The calling thread's stay in the network namespace that /run/netns/NAME names, for the life of
/// the object; an empty name stays where the thread is. Raises `SourceError` when there is no such
/// namespace or no right to enter it. That the way back fails is an internal failure: it ends the
/// process, which must not go on in a namespace that it does not expect.
class NamespaceStay {
 public:
  explicit NamespaceStay(const std::string& name);
  ~NamespaceStay();
  NamespaceStay(const NamespaceStay&) = delete;
  NamespaceStay& operator=(const NamespaceStay&) = delete;

 private:
  File home_;
  bool away_ = false;
};

/// Whether packets are forwarded, in the namespace where the calling thread is.
struct Forwarding {
  bool ip4 = false;
  bool ip6 = false;
};
Forwarding readForwarding();

} // namespace sources::kernel
