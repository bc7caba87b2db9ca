#include "sources/kernel/Kernel.h"

#include "sources/kernel/Device.h"
#include "sources/kernel/Follower.h"

namespace sources::kernel {

namespace {

/// How long a table that goes on moving is read again.
constexpr std::chrono::seconds patience{2};

/// What must be taken inside a namespace; the sockets keep belonging to it afterwards.
struct Access {
  KernelFeed feed;
  Forwarding forwarding = readForwarding();
};

std::unique_ptr<Access> enter(const std::string& netns) {
  const NamespaceStay stay(netns);
  return std::make_unique<Access>();
}

State read(Access& access, const Needs& needs) {
  Follower follower(access.feed, needs);
  follower.read(patience);
  if (follower.needsEverything()) return read(access, {});
  State state;
  state.notes.moved = follower.moved();
  KernelState kernel = follower.take();
  kernel.forwarding = access.forwarding;
  state.notes.hiddenRoutes = hiddenRoutes<Ip4>(kernel.routes) + hiddenRoutes<Ip6>(kernel.routes6);
  state.device = makeDevice(kernel);
  return state;
}

} // namespace

State load(const std::string& netns, const Needs& needs) {
  const auto access = enter(netns);
  State state = read(*access, needs);
  // A plain table is a VRF when it has routes: only these tell all names there are.
  const bool isKnown = needs.vrf == "all" || state.device.vrf(needs.vrf);
  return isKnown ? std::move(state) : read(*access, {});
}

} // namespace sources::kernel
