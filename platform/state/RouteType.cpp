#include "state/RouteType.h"

#include <span>

namespace state {

namespace {

template <class RouteType>
struct NamedType {
  RouteType type;
  std::string_view name;
};

using V4 = Routing::Fib::RouteType;
constexpr NamedType<V4> names4[] = {
    {V4::invalid, "invalid"},
    {V4::receive, "receive"},
    {V4::receiveAll, "receiveAll"},
    {V4::receiveBroadcast, "receiveBroadcast"},
    {V4::receiveDirectedBroadcast, "receiveDirectedBroadcast"},
    {V4::attached, "attached"},
    {V4::staticRoute, "static"},
    {V4::vcs, "vcs"},
    {V4::kernel, "kernel"},
    {V4::rip, "rip"},
    {V4::connected, "connected"},
    {V4::unresolved, "unresolved"},
    {V4::bgpAggregate, "bgpAggregate"},
    {V4::ospfSummary, "ospfSummary"},
    {V4::ospfIntraArea, "ospfIntraArea"},
    {V4::ospfInterArea, "ospfInterArea"},
    {V4::ospfExternal1, "ospfExternal1"},
    {V4::ospfExternal2, "ospfExternal2"},
    {V4::ospfNssaExternal1, "ospfNssaExternal1"},
    {V4::ospfNssaExternal2, "ospfNssaExternal2"},
    {V4::bgpInternal, "bgpInternal"},
    {V4::bgpExternal, "bgpExternal"},
    {V4::isisLevel1, "isisLevel1"},
    {V4::isisLevel2, "isisLevel2"},
    {V4::nexthopGroup, "nexthopGroup"},
    {V4::drop, "drop"},
    {V4::ospf3IntraArea, "ospf3IntraArea"},
    {V4::ospf3InterArea, "ospf3InterArea"},
    {V4::ospf3External1, "ospf3External1"},
    {V4::ospf3External2, "ospf3External2"},
    {V4::ospf3Nssa, "ospf3Nssa"},
    {V4::dhcp, "dhcp"},
    {V4::martian, "martian"},
    {V4::dynamicPolicy, "dynamicPolicy"},
    {V4::reserved, "reserved"},
};

using V6 = Routing6::Fib::RouteType;
constexpr NamedType<V6> names6[] = {
    {V6::invalid, "invalid"},
    {V6::receive, "receive"},
    {V6::receiveAll, "receiveAll"},
    {V6::attached, "attached"},
    {V6::staticRoute, "static"},
    {V6::kernel, "kernel"},
    {V6::rip, "rip"},
    {V6::connected, "connected"},
    {V6::unresolved, "unresolved"},
    {V6::bgpAggregate, "bgpAggregate"},
    {V6::ospfSummary, "ospfSummary"},
    {V6::ospf3, "ospf3"},
    {V6::bgp, "bgp"},
    {V6::isisLevel1, "isisLevel1"},
    {V6::isisLevel2, "isisLevel2"},
    {V6::nexthopGroup, "nexthopGroup"},
    {V6::drop, "drop"},
    {V6::dhcp, "dhcp"},
    {V6::martian, "martian"},
    {V6::dynamicPolicy, "dynamicPolicy"},
    {V6::reserved, "reserved"},
};

std::span<const NamedType<V4>> names(V4) { return names4; }
std::span<const NamedType<V6>> names(V6) { return names6; }

template <class RouteType>
std::string_view nameOf(RouteType type) {
  for (const auto& named : names(type)) {
    if (named.type == type) return named.name;
  }
  return {};
}

} // namespace

std::string_view routeTypeName(V4 type) { return nameOf(type); }
std::string_view routeTypeName(V6 type) { return nameOf(type); }

template <class RouteType>
std::optional<RouteType> routeTypeFromName(std::string_view name) {
  for (const auto& named : names(RouteType{})) {
    if (named.name == name) return named.type;
  }
  return {};
}

template std::optional<V4> routeTypeFromName<V4>(std::string_view);
template std::optional<V6> routeTypeFromName<V6>(std::string_view);

} // namespace state
