// The types of a route: its origin and kind. IPv4 and IPv6 number them differently; the numbers of
// one must never be used for the other.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Routing::Fib {

enum class RouteType : std::uint32_t {
  invalid = 0,
  receive = 1,
  receiveAll = 2,
  receiveBroadcast = 3,
  receiveDirectedBroadcast = 4,
  attached = 5,
  staticRoute = 7,
  vcs = 8,
  kernel = 9,
  rip = 10,
  connected = 11,
  unresolved = 12,
  bgpAggregate = 13,
  ospfSummary = 14,
  ospfIntraArea = 15,
  ospfInterArea = 16,
  ospfExternal1 = 17,
  ospfExternal2 = 18,
  ospfNssaExternal1 = 19,
  ospfNssaExternal2 = 20,
  bgpInternal = 21,
  bgpExternal = 22,
  isisLevel1 = 23,
  isisLevel2 = 24,
  nexthopGroup = 25,
  drop = 26,
  ospf3IntraArea = 27,
  ospf3InterArea = 28,
  ospf3External1 = 29,
  ospf3External2 = 30,
  ospf3Nssa = 31,
  dhcp = 32,
  martian = 33,
  dynamicPolicy = 34,
  reserved = 36
};

} // namespace Routing::Fib

namespace Routing6::Fib {

enum class RouteType : std::uint32_t {
  invalid = 0,
  receive = 1,
  receiveAll = 2,
  attached = 3,
  staticRoute = 4,
  kernel = 5,
  rip = 6,
  connected = 7,
  unresolved = 8,
  bgpAggregate = 9,
  ospfSummary = 10,
  ospf3 = 11,
  bgp = 12,
  isisLevel1 = 13,
  isisLevel2 = 14,
  nexthopGroup = 15,
  drop = 16,
  dhcp = 17,
  martian = 18,
  dynamicPolicy = 19,
  reserved = 21
};

} // namespace Routing6::Fib

namespace Routing {

/// The action of a configured route.
enum class RouteType : std::uint32_t { forward = 0, drop = 1, nexthopGroup = 2 };

} // namespace Routing

namespace state {

/// The name of a route type as state files write it ("bgpExternal"); empty for a number without
/// one.
std::string_view routeTypeName(Routing::Fib::RouteType type);
std::string_view routeTypeName(Routing6::Fib::RouteType type);

/// The route type of that name.
template <class RouteType>
std::optional<RouteType> routeTypeFromName(std::string_view name);

} // namespace state
