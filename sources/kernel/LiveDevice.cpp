// A route that is notified changes its prefix in its VRF and nothing beside it, so each prefix that
// was touched is looked at twice: as it was listed, and as it is to be. What was listed stands in
// the database: no notification is brought in without a look at both.
#include "sources/kernel/LiveDevice.h"

#include "sources/kernel/ListedRoute.h"

#include <algorithm>

namespace sources::kernel {

namespace {

template <class Row>
bool isOfHardware(const Row& row) {
  return row.flags & (RTM_F_OFFLOAD | RTM_F_TRAP | RTM_F_OFFLOAD_FAILED);
}

/// What is listed of one prefix.
template <class Family>
struct Listed {
  std::optional<RouteRow<Family>> row;
  Lumo::Ptr<Routing::Route> configured; ///< null for none
  std::uint64_t hidden;                 ///< routes that lose against the one that is listed
};

} // namespace

template <class Family>
class LiveDevice::Changer {
 public:
  using Row = RouteRow<Family>;

  Changer(LiveDevice& device, RouteTable<Family>& table, RouteChanges<Family>& changes)
      : device_(device), table_(table), reader_(*device.lists_), changes_(changes) {}

  void bringIn() {
    keys_ = table_.touched();
    for (const Row& key : keys_) before_.push_back(listedAt(table_.rowsAt(key)));
    table_.bringIn();
  }

  /// Once the hop lists of what was brought in are known. False when the changes cannot be told.
  bool run() {
    for (std::size_t i = 0; i < keys_.size(); ++i) {
      if (!change(keys_[i], before_[i])) return false;
    }
    tellHidden();
    return true;
  }

 private:
  Listed<Family> listedAt(const std::vector<Row>& rows) const {
    const Row* const row = reader_.forwarding(rows);
    return {row ? std::optional(*row) : std::nullopt, reader_.configured(rows),
            hiddenRoutes<Family>(rows)};
  }

  bool change(const Row& key, const Listed<Family>& before) {
    const auto vrf = device_.vrfs_.find(vrfTable(key.table));
    if (vrf == device_.vrfs_.end()) return false;
    const std::vector<Row> rows = table_.rowsAt(key);
    if (std::ranges::any_of(rows, isOfHardware<Row>)) return false;
    if (rows.empty() && !vrf->second.stays) touchedPlain_ = true;
    const Listed<Family> now = listedAt(rows);
    const VrfId id = vrf->second.id;
    tellConfigured(id, before, now);
    if (now.hidden != before.hidden) moreHidden_[id] += now.hidden - before.hidden;
    return tellRoute(id, before.row, now.row);
  }

  bool tellRoute(VrfId vrf, const std::optional<Row>& before, const std::optional<Row>& now) {
    if (!before && !now) return true;
    std::optional<typename Family::Route> old;
    if (before) old = reader_.routeOf(*before);
    if (now) {
      ViaList& list = reader_.listOf(*now);
      if (list.vias.size() > Vanta::Fib::Fec::maxVias) return false;
      device_.use(list);
      const auto route = reader_.routeOf(*now);
      if (!old) {
        changes_.entered.emplace_back(vrf, route);
      } else if (!(*old == route)) {
        changes_.replaced.emplace_back(vrf, route);
      }
    } else {
      changes_.removed.emplace_back(vrf, before->prefix);
    }
    if (before) device_.release(reader_.listOf(*before));
    return true;
  }

  void tellConfigured(VrfId vrf, const Listed<Family>& before, const Listed<Family>& now) {
    if (now.configured) {
      changes_.configured.emplace_back(vrf, now.configured);
    } else if (before.configured) {
      changes_.unconfigured.emplace_back(vrf, before.configured->key);
    }
  }

  void tellHidden() {
    for (const auto& [vrf, more] : moreHidden_) {
      if (more == 0) continue;
      std::uint64_t& count = device_.facts_.hidden[{vrf, Family::version}];
      count += more;
      changes_.hidden.emplace_back(vrf, count);
    }
  }

  LiveDevice& device_;
  RouteTable<Family>& table_;
  const RowReader<Family> reader_;
  RouteChanges<Family>& changes_;
  std::vector<Row> keys_;
  std::vector<Listed<Family>> before_;        ///< of each key
  std::map<VrfId, std::uint64_t> moreHidden_; ///< modulo 2^64: fewer is a number below 0

 public:
  bool touchedPlain_ = false; ///< a VRF that may be gone with its last route
};

state::DeviceState LiveDevice::make(Follower& follower, const Forwarding& forwarding) {
  if (follower.isUntidy()) follower.tidy();
  std::optional<MadeDevice> made;
  follower.show([&](KernelState& kernel) {
    kernel.forwarding = forwarding;
    made = makeDevice(kernel, numbers_);
    note(*made, kernel);
  });
  follower.touchedNeighbours();
  return std::move(made->device);
}

void LiveDevice::note(MadeDevice& made, const KernelState& kernel) {
  lists_ = std::move(made.lists);
  interfaces_ = std::move(made.interfaces);
  nexthops_ = kernel.nexthops;
  facts_ = routeFacts(kernel);
  hardwareTakesPart_ = std::ranges::any_of(kernel.routes, isOfHardware<RouteRow<Ip4>>) ||
                       std::ranges::any_of(kernel.routes6, isOfHardware<RouteRow<Ip6>>);
  noteVrfs(kernel);
  countUsers();
}

void LiveDevice::noteVrfs(const KernelState& kernel) {
  vrfs_.clear();
  for (const VrfIdentity& vrf : vrfsOf(kernel)) vrfs_[vrf.table] = {vrf.id, !vrf.isPlain};
}

void LiveDevice::countUsers() {
  users_.clear();
  before_.clear();
  lists_->forEach([&](const ViaList& list) {
    if (list.routes != 0) users_[list.fecId.value()] += list.routes;
  });
}

void LiveDevice::use(ViaList& list) {
  if (list.fecId.isNull() || !users_.contains(list.fecId.value())) numbers_.numberOne(list);
  std::size_t& users = users_[list.fecId.value()];
  before_.try_emplace(list.fecId.value(), Before{users, &list});
  ++users;
}

void LiveDevice::release(ViaList& list) {
  std::size_t& users = users_[list.fecId.value()];
  before_.try_emplace(list.fecId.value(), Before{users, &list});
  --users;
}

void LiveDevice::tellFecs(DeviceChanges& changes) {
  for (const auto& [id, before] : std::exchange(before_, {})) {
    const auto users = users_.find(id);
    if (before.users == 0 && users->second != 0) changes.enteredFecs.push_back(*before.list);
    if (users->second != 0) continue;
    if (before.users != 0) changes.removedFecs.emplace_back(id);
    numbers_.forget(*before.list);
    users_.erase(users);
  }
}

void LiveDevice::tellNeighbours(Follower& follower, DeviceChanges& changes) const {
  const auto keys = follower.touchedNeighbours();
  for (const auto& key : keys) {
    const auto& interface = interfaces_->find(key.first);
    if (!interface.id || key.second.af() == Kesh::AddressFamily::unset) continue;
    const Arp::Table::ArpKey arp{vrfs_.at(interface.table).id, interface.id, key.second};
    const Neighbour* const neighbour = follower.neighbour(key);
    if (neighbour && !neighbour->unresolved) {
      changes.enteredNeighbours.push_back({arp, neighbour->ethernet});
    } else {
      changes.removedNeighbours.push_back(arp);
    }
  }
  if (!keys.empty() && !nexthops_.empty()) changes.nexthopGroups = groupsOf(follower);
}

state::DeviceState LiveDevice::groupsOf(Follower& follower) const {
  KernelState kernel = follower.objects();
  // VRFs have the names that they have beside those of plain tables.
  for (const auto& [table, vrf] : vrfs_) {
    RouteRow<Ip4> row{};
    row.table = table;
    kernel.routes.push_back(row);
  }
  return makeNexthopGroups(kernel);
}

std::optional<DeviceChanges> LiveDevice::change(Follower& follower) {
  if (!lists_ || hardwareTakesPart_ || follower.hasEncapsulations()) return {};
  if (follower.isUntidy()) return {};
  DeviceChanges changes;
  auto& routes = follower.routes<Ip4>();
  auto& routes6 = follower.routes<Ip6>();
  Changer<Ip4> changer(*this, routes, changes.routes);
  Changer<Ip6> changer6(*this, routes6, changes.routes6);
  changer.bringIn();
  changer6.bringIn();
  // The hops that are left of a route may be a list that nobody told.
  lists_->extend(follower.hopLists(), nexthops_, *interfaces_);
  if (!changer.run() || !changer6.run()) return {};
  if (changer.touchedPlain_ || changer6.touchedPlain_) {
    for (const auto& [table, vrf] : vrfs_) {
      if (!vrf.stays && !routes.hasRows(table) && !routes6.hasRows(table)) return {};
    }
  }
  tellFecs(changes);
  tellNeighbours(follower, changes);
  return changes;
}

} // namespace sources::kernel
