// What kind of route a kernel route is listed as.
#pragma once

#include "state/RouteType.h"

#include <linux/rtnetlink.h>

#include <cstdint>

namespace sources::kernel {

/// A kind of route in both families; `invalid` where a family has none of the kind.
struct RouteKind {
  Routing::Fib::RouteType type4;
  Routing6::Fib::RouteType type6;
  std::uint8_t preference;
};

using Type4 = Routing::Fib::RouteType;
using Type6 = Routing6::Fib::RouteType;

inline constexpr RouteKind notListed{Type4::invalid, Type6::invalid, 0};
inline constexpr RouteKind connectedRoute{Type4::connected, Type6::connected, 0};
/// A single address on a link, as the peer of a point-to-point link is: a connected route of that
/// length would be an address of the device itself.
inline constexpr RouteKind peerRoute{Type4::kernel, Type6::kernel, 0};
inline constexpr RouteKind kernelRoute{Type4::kernel, Type6::kernel, 40};
inline constexpr RouteKind dropRoute{Type4::drop, Type6::drop, 1};

struct KindRow {
  std::uint8_t code; ///< RTPROT_* or RTN_*
  RouteKind kind;
};

/// Unicast routes by protocol. Protocols without a row, and those of daemons that have no type of
/// their own (ZEBRA, BIRD, BABEL, EIGRP, OPENR), are `kernelRoute`.
inline constexpr KindRow kindsByProtocol[] = {
    {RTPROT_BOOT, {Type4::staticRoute, Type6::staticRoute, 1}},
    {RTPROT_STATIC, {Type4::staticRoute, Type6::staticRoute, 1}},
    {RTPROT_DHCP, {Type4::dhcp, Type6::dhcp, 1}},
    {RTPROT_BGP, {Type4::bgpExternal, Type6::bgp, 200}},
    {RTPROT_ISIS, {Type4::isisLevel2, Type6::isisLevel2, 115}},
    {RTPROT_OSPF, {Type4::ospfIntraArea, Type6::ospf3, 110}},
    {RTPROT_RIP, {Type4::rip, Type6::rip, 120}},
};

/// Routes that are not unicast, by type. Types without a row (NAT) are not listed.
inline constexpr KindRow kindsByType[] = {
    {RTN_LOCAL, {Type4::receive, Type6::receive, 0}},
    {RTN_BROADCAST, {Type4::receiveBroadcast, Type6::invalid, 0}},
    {RTN_ANYCAST, {Type4::invalid, Type6::receive, 0}},
    {RTN_MULTICAST, {Type4::receiveAll, Type6::receiveAll, 0}},
    {RTN_BLACKHOLE, dropRoute},
    {RTN_UNREACHABLE, dropRoute},
    {RTN_PROHIBIT, dropRoute},
    {RTN_THROW, dropRoute},
};

/// Whether a route of that type drops what it matches. A throw does so in the eyes of one table,
/// which answers nothing else then: what the policy rules ask behind it is not its matter.
inline bool isDrop(std::uint8_t type) {
  return type == RTN_BLACKHOLE || type == RTN_UNREACHABLE || type == RTN_PROHIBIT ||
         type == RTN_THROW;
}

/// The kind of a route that is not unicast.
const RouteKind& kindOfType(std::uint8_t type);
/// Where a unicast route leads first.
enum class FirstHop { gateway, link, peer };
/// The kind of a unicast route; of the kernel's own ones, those onto a link are connected.
const RouteKind& kindOfUnicast(std::uint8_t protocol, FirstHop hop);

} // namespace sources::kernel
