// An agent of one's own, for who follows a kernel that no agent follows: a process beside the
// caller's, on a database in a temporary folder. Both go with the object, and with the caller's
// process however that ends.
#pragma once

#include "sources/snapshot/Descriptor.h"

#include <string>
#include <sys/types.h>

namespace agent {

class PrivateAgent {
 public:
  /// Follows the network namespace of that name, the caller's own for an empty one. Returns once
  /// the state is written. Raises `SourceError`.
  explicit PrivateAgent(const std::string& netns);
  ~PrivateAgent();
  PrivateAgent(const PrivateAgent&) = delete;
  PrivateAgent& operator=(const PrivateAgent&) = delete;

  /// The file of the database.
  const std::string& state() const { return state_; }
  /// Can be read when the agent has ended.
  int descriptor() const { return socket_.number(); }
  /// Raises `SourceError`, with the agent's own words, when it has ended.
  void requireAlive();

 private:
  std::string folder_, state_;
  sources::snapshot::Descriptor socket_;
  pid_t process_ = -1;
};

} // namespace agent
