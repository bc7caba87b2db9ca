// What the kernel notifies, and what follows from it.
#include "sources/kernel/Follower.h"

#include <linux/neighbour.h>

namespace sources::kernel {

namespace {

Change changeOf(const nlmsghdr& header) {
  if (header.nlmsg_type == RTM_DELROUTE) return Change::removed;
  if (header.nlmsg_flags & NLM_F_REPLACE) return Change::replaced;
  return header.nlmsg_flags & NLM_F_APPEND ? Change::appended : Change::entered;
}

/// A notification of a group lacks its counts: those of members that stay stand.
void inheritPackets(const Nexthop* before, Nexthop& now) {
  for (Nexthop::Member& member : now.group) {
    member.packets = 0;
    if (!before) continue;
    const auto old = std::ranges::find(before->group, member.id, &Nexthop::Member::id);
    if (old != before->group.end() && old->packets) member.packets = old->packets;
  }
}

} // namespace

void Follower::drain() {
  const bool heardAll =
      feed_.drain([this](const nlmsghdr& header, Bytes payload) { hear(header, payload); });
  if (heardAll) return;
  heard_.lost = true;
  doubt();
}

void Follower::hear(const nlmsghdr& header, Bytes payload) {
  ++heard_.changes;
  switch (header.nlmsg_type) {
  case RTM_NEWLINK:
  case RTM_DELLINK:
    return hearLink(header, payload);
  case RTM_NEWADDR:
  case RTM_DELADDR:
    return hearAddress(header, payload);
  case RTM_NEWNEIGH:
  case RTM_DELNEIGH:
    return hearNeighbour(header, payload);
  case RTM_NEWNEXTHOP:
  case RTM_DELNEXTHOP:
    return hearNexthop(header, payload);
  case RTM_NEWROUTE:
  case RTM_DELROUTE:
    return hearRoute(header, payload);
  case RTM_NEWNETCONF: // whether an interface, or the whole, forwards packets
    heard_.others = true;
  }
}

void Follower::hearLink(const nlmsghdr& header, Bytes payload) {
  auto link = decodeLink(payload);
  if (!link) return;
  if (header.nlmsg_type == RTM_DELLINK) {
    interfaceLost(link->index, true);
    links_.gone(link->index);
    heard_.others = true;
    return;
  }
  if (const Link* const before = links_.find(link->index)) interfaceTurned(*before, *link);
  if (links_.changed(std::move(*link))) heard_.others = true;
}

void Follower::interfaceTurned(const Link& before, const Link& now) {
  if (before.up && !now.up) return interfaceLost(now.index, false);
  const HopLists::Use use = hopLists_.useOf(now.index);
  const bool carrierLost = before.carrier && !now.carrier;
  if (carrierLost) nexthopsLost(now.index);
  const bool turned = before.up != now.up || before.carrier != now.carrier;
  if (turned && (use.dead || (carrierLost && use.any))) disturbRoutes();
}

void Follower::interfaceLost(std::uint32_t interface, bool gone) {
  nexthopsLost(interface);
  Loss loss;
  loss.interface = interface;
  loss.interfaceGone = gone;
  routesLost(loss);
  if (hopLists_.useOf(interface).amongOthers) disturbRoutes();
}

void Follower::nexthopsLost(std::uint32_t interface) {
  std::set<std::uint32_t> lost;
  nexthops_.forEach([&](const Nexthop& nexthop) {
    if (nexthop.hop.interface == interface) lost.insert(nexthop.id);
  });
  if (lost.empty()) return;
  for (const std::uint32_t id : lost) nexthopLost(id);
  nexthops_.forEach([&](Nexthop& nexthop) {
    std::erase_if(nexthop.group, [&](const auto& member) { return lost.contains(member.id); });
  });
  nexthops_.disturbed(); // a group goes with its last member
}

/// The kernel removes the routes over a nexthop object with it.
void Follower::nexthopLost(std::uint32_t id) {
  nexthops_.gone(id);
  Loss loss;
  loss.nexthop = id;
  routesLost(loss);
}

void Follower::hearAddress(const nlmsghdr& header, Bytes payload) {
  auto address = decodeAddress(payload);
  if (!address) return;
  const std::uint32_t interface = address->interface;
  const bool ip4 = address->address.af() == Kesh::AddressFamily::ip4;
  if (header.nlmsg_type == RTM_NEWADDR) {
    if (ip4 && !hasIp4(interface)) ip4Turned(interface, true);
    if (addresses_.changed(std::move(*address))) heard_.others = true;
    return;
  }
  heard_.others = true;
  addresses_.gone(address->key());
  if (ip4 && !hasIp4(interface)) ip4Turned(interface, false);
  bool elsewhere = false;
  addresses_.forEach(
      [&](const Address& one) { elsewhere = elsewhere || one.address == address->address; });
  if (elsewhere || !ip4) return;
  Loss loss;
  loss.source = address->address;
  routes_.lost(loss);
}

bool Follower::hasIp4(std::uint32_t interface) {
  bool found = false;
  addresses_.forEach([&](const Address& one) {
    found = found || (one.interface == interface && one.address.af() == Kesh::AddressFamily::ip4);
  });
  return found;
}

/// Without an address of its own an interface has no IPv4, and its routes go as if it were down.
void Follower::ip4Turned(std::uint32_t interface, bool on) {
  const HopLists::Use use = hopLists_.useOf(interface);
  if (on ? use.dead : use.amongOthers) routes_.disturbed();
  if (on) return;
  Loss loss;
  loss.interface = interface;
  loss.objectsStay = true;
  routes_.lost(loss);
}

void Follower::hearNeighbour(const nlmsghdr& header, Bytes payload) {
  auto neighbour = decodeNeighbour(payload);
  const bool isThere = header.nlmsg_type == RTM_NEWNEIGH && neighbour;
  const auto key = decodeNeighbourKey(payload).key();
  // Most of what is told of neighbours is that they still are there.
  if (!(isThere ? neighbours_.changed(std::move(*neighbour)) : neighbours_.gone(key))) return;
  heard_.neighbours = true;
  touchedNeighbours_.insert(key);
}

void Follower::hearNexthop(const nlmsghdr& header, Bytes payload) {
  auto nexthop = decodeNexthop(payload, encapsulations_);
  if (!nexthop) return;
  heard_.others = true;
  if (header.nlmsg_type == RTM_DELNEXTHOP) return nexthopLost(nexthop->id);
  if (countsPackets_) inheritPackets(nexthops_.find(nexthop->id), *nexthop);
  nexthops_.changed(std::move(*nexthop));
}

void Follower::hearRoute(const nlmsghdr& header, Bytes payload) {
  if (!decodeRoute(payload, encapsulations_, route_) || !isWanted(route_)) return;
  heard_.routes = true;
  const Change change = changeOf(header);
  if (route_.family == AF_INET) {
    routes_.changed(rowOf<Ip4>(route_, hopLists_), change);
  } else {
    routes6_.changed(rowOf<Ip6>(route_, hopLists_), change);
  }
}

void Follower::routesLost(const Loss& loss) {
  routes_.lost(loss);
  routes6_.lost(loss);
}

void Follower::disturbRoutes() {
  routes_.disturbed();
  routes6_.disturbed();
}

} // namespace sources::kernel
