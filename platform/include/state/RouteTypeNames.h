// The names of the route types, as state files write them.
#pragma once

#include "lumo/EnumType.h"
#include "state/RouteType.h"

namespace state {

/// The types of IPv4 routes, with the words that snapshots and state databases have for them.
inline constexpr Lumo::EnumName<Routing::Fib::RouteType> routeTypeNames[] = {
    {Routing::Fib::RouteType::invalid, "invalid"},
    {Routing::Fib::RouteType::receive, "receive"},
    {Routing::Fib::RouteType::receiveAll, "receiveAll"},
    {Routing::Fib::RouteType::receiveBroadcast, "receiveBroadcast"},
    {Routing::Fib::RouteType::receiveDirectedBroadcast, "receiveDirectedBroadcast"},
    {Routing::Fib::RouteType::attached, "attached"},
    {Routing::Fib::RouteType::staticRoute, "static"},
    {Routing::Fib::RouteType::vcs, "vcs"},
    {Routing::Fib::RouteType::kernel, "kernel"},
    {Routing::Fib::RouteType::rip, "rip"},
    {Routing::Fib::RouteType::connected, "connected"},
    {Routing::Fib::RouteType::unresolved, "unresolved"},
    {Routing::Fib::RouteType::bgpAggregate, "bgpAggregate"},
    {Routing::Fib::RouteType::ospfSummary, "ospfSummary"},
    {Routing::Fib::RouteType::ospfIntraArea, "ospfIntraArea"},
    {Routing::Fib::RouteType::ospfInterArea, "ospfInterArea"},
    {Routing::Fib::RouteType::ospfExternal1, "ospfExternal1"},
    {Routing::Fib::RouteType::ospfExternal2, "ospfExternal2"},
    {Routing::Fib::RouteType::ospfNssaExternal1, "ospfNssaExternal1"},
    {Routing::Fib::RouteType::ospfNssaExternal2, "ospfNssaExternal2"},
    {Routing::Fib::RouteType::bgpInternal, "bgpInternal"},
    {Routing::Fib::RouteType::bgpExternal, "bgpExternal"},
    {Routing::Fib::RouteType::isisLevel1, "isisLevel1"},
    {Routing::Fib::RouteType::isisLevel2, "isisLevel2"},
    {Routing::Fib::RouteType::nexthopGroup, "nexthopGroup"},
    {Routing::Fib::RouteType::drop, "drop"},
    {Routing::Fib::RouteType::ospf3IntraArea, "ospf3IntraArea"},
    {Routing::Fib::RouteType::ospf3InterArea, "ospf3InterArea"},
    {Routing::Fib::RouteType::ospf3External1, "ospf3External1"},
    {Routing::Fib::RouteType::ospf3External2, "ospf3External2"},
    {Routing::Fib::RouteType::ospf3Nssa, "ospf3Nssa"},
    {Routing::Fib::RouteType::dhcp, "dhcp"},
    {Routing::Fib::RouteType::martian, "martian"},
    {Routing::Fib::RouteType::dynamicPolicy, "dynamicPolicy"},
    {Routing::Fib::RouteType::reserved, "reserved"},
};

/// Those of IPv6.
inline constexpr Lumo::EnumName<Routing6::Fib::RouteType> route6TypeNames[] = {
    {Routing6::Fib::RouteType::invalid, "invalid"},
    {Routing6::Fib::RouteType::receive, "receive"},
    {Routing6::Fib::RouteType::receiveAll, "receiveAll"},
    {Routing6::Fib::RouteType::attached, "attached"},
    {Routing6::Fib::RouteType::staticRoute, "static"},
    {Routing6::Fib::RouteType::kernel, "kernel"},
    {Routing6::Fib::RouteType::rip, "rip"},
    {Routing6::Fib::RouteType::connected, "connected"},
    {Routing6::Fib::RouteType::unresolved, "unresolved"},
    {Routing6::Fib::RouteType::bgpAggregate, "bgpAggregate"},
    {Routing6::Fib::RouteType::ospfSummary, "ospfSummary"},
    {Routing6::Fib::RouteType::ospf3, "ospf3"},
    {Routing6::Fib::RouteType::bgp, "bgp"},
    {Routing6::Fib::RouteType::isisLevel1, "isisLevel1"},
    {Routing6::Fib::RouteType::isisLevel2, "isisLevel2"},
    {Routing6::Fib::RouteType::nexthopGroup, "nexthopGroup"},
    {Routing6::Fib::RouteType::drop, "drop"},
    {Routing6::Fib::RouteType::dhcp, "dhcp"},
    {Routing6::Fib::RouteType::martian, "martian"},
    {Routing6::Fib::RouteType::dynamicPolicy, "dynamicPolicy"},
    {Routing6::Fib::RouteType::reserved, "reserved"},
};

/// What a configured route does with its packets, by the same words.
inline constexpr Lumo::EnumName<Routing::RouteType> routeActionNames[] = {
    {Routing::RouteType::forward, "forward"},
    {Routing::RouteType::drop, "drop"},
    {Routing::RouteType::nexthopGroup, "nexthopGroup"},
};

} // namespace state

LUMO_TYPE_NAME(Routing::RouteType);
LUMO_ENUM(Routing::RouteType, state::routeActionNames);
LUMO_TYPE_NAME(Routing::Fib::RouteType);
LUMO_TYPE_NAME(Routing6::Fib::RouteType);
LUMO_ENUM(Routing::Fib::RouteType, state::routeTypeNames);
LUMO_ENUM(Routing6::Fib::RouteType, state::route6TypeNames);
