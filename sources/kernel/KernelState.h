// The state of one namespace as the kernel tells it, before it becomes a device's state.
#pragma once

#include "sources/kernel/Addresses.h"
#include "sources/kernel/Links.h"
#include "sources/kernel/Namespace.h"
#include "sources/kernel/Neighbours.h"
#include "sources/kernel/Nexthops.h"
#include "sources/kernel/RouteRows.h"

namespace sources::kernel {

/// Everything is in the kernel's order, but for the routes.
struct KernelState {
  Forwarding forwarding;
  bool configured = true; ///< configured routes are wanted
  std::vector<Link> links;
  std::vector<Address> addresses;
  std::vector<Neighbour> neighbours;
  std::vector<Nexthop> nexthops;
  Encapsulations encapsulations; ///< that hops name
  HopLists hopLists;
  std::vector<RouteRow<Ip4>> routes; ///< in the order of `isBefore`
  std::vector<RouteRow<Ip6>> routes6;
};

} // namespace sources::kernel
