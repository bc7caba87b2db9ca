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

/// Those of the routes that were asked for, where more was read.
std::uint64_t hiddenAmong(const Needs& asked, const KernelState& kernel,
                          const state::DeviceState& device) {
  const auto* const vrf = device.vrf(asked.vrf);
  if (!asked.routes || (!vrf && asked.vrf != "all")) return 0;
  std::optional<std::uint32_t> table;
  if (vrf) table = vrf->id.value() == 0 ? RT_TABLE_MAIN : vrf->id.value();
  return (asked.ip4 ? hiddenRoutes<Ip4>(kernel.routes, table) : 0) +
         (asked.ip6 ? hiddenRoutes<Ip6>(kernel.routes6, table) : 0);
}

/// What was asked for, from the parts that are needed for it.
State read(Access& access, const Needs& asked, const Needs& needs) {
  Follower follower(access.feed, needs);
  follower.read(patience);
  if (follower.needsEverything()) return read(access, asked, {});
  State state;
  state.notes.moved = follower.moved();
  KernelState kernel = follower.take();
  kernel.forwarding = access.forwarding;
  kernel.configured = asked.configured;
  state.device = makeDevice(kernel);
  state.notes.hiddenRoutes = hiddenAmong(asked, kernel, state.device);
  return state;
}

} // namespace

State load(const std::string& netns, const Needs& needs) {
  const auto access = enter(netns);
  State state = read(*access, needs, needs);
  // A plain table is a VRF when it has routes: only these tell all names there are.
  const bool isKnown = needs.vrf == "all" || state.device.vrf(needs.vrf);
  return isKnown ? std::move(state) : read(*access, needs, {});
}

} // namespace sources::kernel
