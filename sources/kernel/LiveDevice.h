// A device that is kept up to date with a follower: made as a whole, and afterwards by what changes
// of its routes and neighbours, as long as nothing else does.
#pragma once

#include "sources/kernel/Device.h"
#include "sources/kernel/Follower.h"
#include "sources/kernel/KeptFecNumbers.h"
#include "sources/kernel/KernelFacts.h"

#include <optional>

namespace sources::kernel {

using VrfId = Vrf::VrfIdMap::VrfId;

/// What changes of the routes of one family.
template <class Family>
struct RouteChanges {
  std::vector<std::pair<VrfId, typename Family::Route>> entered, replaced;
  std::vector<std::pair<VrfId, typename Family::Prefix>> removed;
  std::vector<std::pair<VrfId, Lumo::Ptr<Routing::Route>>> configured;
  std::vector<std::pair<VrfId, Routing::RouteKey>> unconfigured;
  std::vector<std::pair<VrfId, std::uint64_t>> hidden; ///< how many routes of a VRF lose by now
};

/// What changes of a device. FECs come ahead of the routes that lead to them, and go behind them.
struct DeviceChanges {
  std::vector<ViaList> enteredFecs;
  RouteChanges<Ip4> routes;
  RouteChanges<Ip6> routes6;
  std::vector<Vanta::Fib::FecId> removedFecs;
  std::vector<Arp::Table::ArpEntry> enteredNeighbours; ///< or changed
  std::vector<Arp::Table::ArpKey> removedNeighbours;
  std::optional<state::DeviceState> nexthopGroups; ///< which name neighbours' addresses
};

class LiveDevice {
 public:
  KeptFecNumbers& numbers() { return numbers_; }

  /// The whole device. Raises `SourceError` as `makeDevice` does.
  state::DeviceState make(Follower& follower, const Forwarding& forwarding);

  /// What is known of its routes by the last call of either.
  const RouteFacts& facts() const { return facts_; }

  /// What changes by the routes and neighbours that the follower was notified of since this or
  /// `make` was called, which is all that it was notified of. Nothing when that cannot be told
  /// without the whole: when VRFs come or go, the hardware has a part in it, hops push more than a
  /// label, or it is time to tidy up. Then it is made as a whole before anything else is asked.
  std::optional<DeviceChanges> change(Follower& follower);

 private:
  template <class Family>
  class Changer;
  struct Vrf {
    VrfId id;
    bool stays; ///< without routes too
  };

  void note(MadeDevice& made, const KernelState& kernel);
  void countUsers();
  void noteVrfs(const KernelState& kernel);
  void use(ViaList& list);
  void release(ViaList& list);
  void tellFecs(DeviceChanges& changes);
  void tellNeighbours(Follower& follower, DeviceChanges& changes) const;
  state::DeviceState groupsOf(Follower& follower) const;

  KeptFecNumbers numbers_;
  std::optional<ViaLists> lists_;
  std::optional<Interfaces> interfaces_;
  std::vector<Nexthop> nexthops_;
  std::unordered_map<std::uint32_t, Vrf> vrfs_;          ///< by table
  std::unordered_map<std::uint64_t, std::size_t> users_; ///< routes by FEC
  struct Before {
    std::size_t users;
    ViaList* list;
  };
  std::map<std::uint64_t, Before> before_; ///< FECs whose users changed
  bool hardwareTakesPart_ = false;
  RouteFacts facts_;
};

} // namespace sources::kernel
