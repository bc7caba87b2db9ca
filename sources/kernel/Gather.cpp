#include "sources/kernel/Gather.h"

#include <linux/if_addr.h>
#include <linux/neighbour.h>
#include <linux/nexthop.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <algorithm>
#include <unordered_set>

namespace sources::kernel {

namespace {

constexpr Request links{"interfaces", RTM_GETLINK, AF_UNSPEC, sizeof(ifinfomsg)};
constexpr Request addresses{"addresses", RTM_GETADDR, AF_UNSPEC, sizeof(ifaddrmsg)};
constexpr Request neighbours{"neighbours", RTM_GETNEIGH, AF_UNSPEC, sizeof(ndmsg)};
constexpr Request nexthops{"nexthop objects", RTM_GETNEXTHOP, AF_UNSPEC, sizeof(nhmsg)};
constexpr Request countedNexthops{"nexthop objects", RTM_GETNEXTHOP,     AF_UNSPEC,
                                  sizeof(nhmsg),     operationAttribute, dumpStatistics};
constexpr Request routes4{"IPv4 routes", RTM_GETROUTE, AF_INET, sizeof(rtmsg)};
constexpr Request routes6{"IPv6 routes", RTM_GETROUTE, AF_INET6, sizeof(rtmsg)};

template <class Object, class Decode>
bool dumpObjects(Socket& socket, const Request& request, Decode decode, std::vector<Object>& out) {
  return socket.dump(
      request, [&] { out.clear(); },
      [&](Bytes payload) {
        if (auto object = decode(payload)) out.push_back(std::move(*object));
      });
}

template <class Row>
void dumpRoutes(Socket& socket, const Request& request, std::vector<Row>& rows,
                KernelState& state) {
  RouteMessage route;
  // Hop lists and encapsulations of a disturbed attempt stay: no row names them, at worst `isWhole`
  // asks once more.
  socket.dump(
      request, [&] { rows.clear(); },
      [&](Bytes payload) {
        // A kernel without a family answers with the routes of all others.
        if (decodeRoute(payload, state.encapsulations, route) && route.family == request.family) {
          enterRoute(route, state);
        }
      });
}

bool isListed(const RouteMessage& route) {
  if (route.flags & RTM_F_CLONED || route.tos != 0 || route.sourceLength != 0) return false;
  const RouteKind& kind = kindOfType(route.type);
  if (route.type == RTN_UNICAST) return true;
  return route.family == AF_INET ? kind.type4 != Type4::invalid : kind.type6 != Type6::invalid;
}

std::uint32_t enterHops(const RouteMessage& route, HopLists& lists) {
  const auto family = route.destination.af();
  // The kernel may name the loopback interface for what it drops: nothing goes there.
  if (isDrop(route.type)) return lists.enter(family, 0, {});
  return lists.enter(family, route.nexthopId, route.hops);
}

template <class Family>
RouteRow<Family> rowOf(const RouteMessage& route, HopLists& lists) {
  return {Family::prefix(route.destination, route.length),
          route.table,
          route.metric,
          route.flags,
          enterHops(route, lists),
          route.type,
          route.protocol};
}

KernelState gatherOnce(Socket& socket) {
  KernelState state;
  dumpObjects(socket, links, decodeLink, state.links);
  dumpObjects(socket, addresses, decodeAddress, state.addresses);
  dumpObjects(socket, neighbours, decodeNeighbour, state.neighbours);
  const auto decode = [&](Bytes payload) { return decodeNexthop(payload, state.encapsulations); };
  if (!dumpObjects(socket, countedNexthops, decode, state.nexthops)) {
    dumpObjects(socket, nexthops, decode, state.nexthops); // by a kernel that does not count
  }
  dumpRoutes(socket, routes4, state.routes, state);
  dumpRoutes(socket, routes6, state.routes6, state);
  return state;
}

} // namespace

void enterRoute(const RouteMessage& route, KernelState& state) {
  if (!isListed(route)) return;
  if (route.family == AF_INET) {
    state.routes.push_back(rowOf<Ip4>(route, state.hopLists));
  } else {
    state.routes6.push_back(rowOf<Ip6>(route, state.hopLists));
  }
}

bool isWhole(const KernelState& state) {
  std::unordered_set<std::uint32_t> interfaces{0}, objects{0};
  for (const Link& link : state.links) interfaces.insert(link.index);
  for (const Nexthop& nexthop : state.nexthops) {
    objects.insert(nexthop.id);
    if (!interfaces.contains(nexthop.hop.interface)) return false;
  }
  return std::ranges::all_of(state.hopLists.lists(), [&](const HopList& list) {
    return (objects.contains(list.nexthopId) || list.count > 0) &&
           std::ranges::all_of(state.hopLists.hops(list),
                               [&](const Hop& hop) { return interfaces.contains(hop.interface); });
  });
}

KernelState gather(Socket& socket, const Forwarding& forwarding) {
  KernelState state;
  repeatUntilWhole("interfaces and routes", [&] {
    state = gatherOnce(socket);
    return isWhole(state);
  });
  state.forwarding = forwarding;
  return state;
}

} // namespace sources::kernel
