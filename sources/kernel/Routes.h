// Routes as the kernel reports them.
#pragma once

#include "sources/kernel/Encapsulation.h"

#include <vector>

namespace sources::kernel {

/// One route message. The object is reused from message to message, so that its list of hops is
/// allocated once.
struct RouteMessage {
  std::uint8_t family = 0; ///< AF_INET or AF_INET6
  std::uint8_t type = 0;   ///< RTN_*
  std::uint8_t protocol = 0;
  std::uint8_t tos = 0;
  std::uint8_t length = 0;       ///< of the destination prefix, in bits
  std::uint8_t sourceLength = 0; ///< not 0 for a route that also looks at the source address
  std::uint32_t flags = 0;       ///< RTM_F_*
  std::uint32_t table = 0;
  std::uint32_t metric = 0;
  std::uint32_t nexthopId = 0; ///< of a nexthop object; 0 for none
  Kesh::IpGenAddr destination;
  Kesh::IpGenAddr source; ///< own address that packets leave with (RTA_PREFSRC); unset for no wish
  std::vector<Hop> hops;
};

/// Fills `route` from the payload of an RTM_NEWROUTE message; false, with `route` undefined, for
/// a damaged one or another family than IPv4 and IPv6. Enters the encapsulations of its hops.
bool decodeRoute(Bytes payload, Encapsulations& encapsulations, RouteMessage& route);

} // namespace sources::kernel
