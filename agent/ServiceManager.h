// What the agent tells the service manager that started it, if one did: datagrams to the socket
// that NOTIFY_SOCKET names, as sd_notify(3) describes them.
#pragma once

#include "sources/snapshot/Descriptor.h"

#include <string_view>
#include <utility>

namespace agent {

class ServiceManager {
 public:
  /// Reads the environment. A socket whose name is abstract ("@...") belongs to a network
  /// namespace: the object is made in that of the service manager.
  ServiceManager();
  /// One that is connected already.
  explicit ServiceManager(sources::snapshot::Descriptor socket) : socket_(std::move(socket)) {}

  /// Told once, however often it is called.
  void ready() {
    if (!std::exchange(isReady_, true)) tell("READY=1");
  }
  void stopping() { tell("STOPPING=1"); }
  /// To be called more often than WATCHDOG_USEC says.
  void alive() {
    if (watches_) tell("WATCHDOG=1");
  }

 private:
  void tell(std::string_view what);

  sources::snapshot::Descriptor socket_;
  bool watches_ = false;
  bool isReady_ = false;
};

} // namespace agent
