// The state of one namespace as the kernel's dumps give it, before it becomes a device's state.
#pragma once

#include "sources/kernel/Addresses.h"
#include "sources/kernel/Family.h"
#include "sources/kernel/HopLists.h"
#include "sources/kernel/Links.h"
#include "sources/kernel/Namespace.h"
#include "sources/kernel/Neighbours.h"
#include "sources/kernel/Netlink.h"
#include "sources/kernel/Nexthops.h"
#include "sources/kernel/Routes.h"

namespace sources::kernel {

/// A route that can be listed; small, since there are millions.
template <class Family>
struct RouteRow {
  typename Family::Prefix prefix;
  std::uint32_t table;
  std::uint32_t metric;
  std::uint32_t flags;   ///< RTM_F_*
  std::uint32_t hopList; ///< its number in `KernelState::hopLists`
  std::uint8_t type;     ///< RTN_*
  std::uint8_t protocol; ///< RTPROT_*
};

struct KernelState {
  Forwarding forwarding;
  std::vector<Link> links;
  std::vector<Address> addresses;
  std::vector<Neighbour> neighbours;
  std::vector<Nexthop> nexthops;
  Encapsulations encapsulations; ///< that hops name
  HopLists hopLists;
  std::vector<RouteRow<Ip4>> routes; ///< as the kernel orders them
  std::vector<RouteRow<Ip6>> routes6;
};

/// Enters a route, unless it is one that no listing shows: a cached copy, one that also looks at
/// the type of service or the source address, or one of a type that is not listed.
void enterRoute(const RouteMessage& route, KernelState& state);

/// Whether every interface and nexthop object that a route names is there. Objects are dumped one
/// kind after the other, so that one may come or go between.
bool isWhole(const KernelState& state);

/// Dumps everything. Raises `SourceError` when the kernel refuses or changes all the time.
KernelState gather(Socket& socket, const Forwarding& forwarding);

} // namespace sources::kernel
