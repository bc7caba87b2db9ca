#include "sources/kernel/Kernel.h"

#include "sources/kernel/Device.h"
#include "sources/kernel/Follower.h"
#include "sources/kernel/KernelFacts.h"
#include "sources/kernel/WatchedFeed.h"

namespace sources::kernel {

namespace {

/// How long a table that goes on moving is read again.
constexpr std::chrono::seconds patience{2};

/// What must be taken inside a namespace; the sockets keep belonging to it afterwards.
struct Access {
  explicit Access(Progress* heard) : progress(heard) {
    if (progress) watched.emplace(kernel, *progress);
  }
  Feed& feed() { return watched ? static_cast<Feed&>(*watched) : kernel; }

  Progress* progress;
  KernelFeed kernel;
  std::optional<WatchedFeed> watched;
  Forwarding forwarding = readForwarding();
};

std::unique_ptr<Access> enter(const std::string& netns, Progress* progress) {
  const NamespaceStay stay(netns);
  return std::make_unique<Access>(progress);
}

/// What was asked for, from the parts that are needed for it.
State read(Access& access, const Needs& asked, const Needs& needs) {
  Follower follower(access.feed(), needs);
  follower.read(patience);
  if (follower.needsEverything()) return read(access, asked, {});
  if (access.progress) access.progress->at("sorting routes", 0, 0);
  State state;
  state.notes.moved = follower.moved();
  KernelState kernel = follower.take();
  kernel.forwarding = access.forwarding;
  kernel.configured = asked.configured;
  state.device = makeDevice(kernel);
  state.notes.hiddenRoutes = hiddenAmong(routeFacts(kernel).hidden, asked, state.device);
  return state;
}

} // namespace

State load(const std::string& netns, const Needs& needs, Progress* progress) {
  const auto access = enter(netns, progress);
  State state = read(*access, needs, needs);
  // A plain table is a VRF when it has routes: only these tell all names there are.
  const bool isKnown = needs.vrf == "all" || state.device.vrf(needs.vrf);
  return isKnown ? std::move(state) : read(*access, needs, {});
}

} // namespace sources::kernel
