#include "sources/kernel/Kernel.h"

#include "sources/kernel/Device.h"

namespace sources::kernel {

namespace {

/// What must be taken inside a namespace; the socket keeps belonging to it afterwards.
struct Access {
  Socket socket;
  Forwarding forwarding;
};

Access enter(const std::string& netns) {
  const NamespaceStay stay(netns);
  return {Socket(), readForwarding()};
}

} // namespace

state::DeviceState load(const std::string& netns) {
  Access access = enter(netns);
  return makeDevice(gather(access.socket, access.forwarding));
}

} // namespace sources::kernel
