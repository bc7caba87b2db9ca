#include "rova/route/Selection.h"

#include "FecAnswers.h"
#include "rova/core/Watchdog.h"
#include "rova/fec/Capture.h"

namespace Rova {

namespace {

template <class Family>
using RouteTable = Vanta::VantaMap<typename Family::Prefix, typename Family::Route>;

template <class Family>
auto routesOf(const Sorter<Family>& sorter) {
  return typename RouteTable<Family>::IteratorConst(sorter.routingStatus()->route);
}

/// The route under a key; a default record, whose FEC is null, for none.
template <class Family>
typename Family::Route readRoute(const Sorter<Family>& sorter, const typename Family::Prefix& key) {
  bool found = false;
  return *sorter.routingStatus()->route.safeLookup(key, found, 0);
}

/// Whether a route may print by its FEC; one that is not captured does not stand in the way.
bool forwards(const CachedFec* fec) { return !fec || fec->forwards(); }

template <class Family>
const CachedFec* capturedFec(const Sorter<Family>& sorter, const typename Family::Route& route) {
  return sorter.fec(route.fecId).ptr();
}

/// Whether a receive route is for no local address. The link-local block has none, and shows in a
/// detail listing all the same.
template <class Family>
bool isForeignReceiveRoute(const Sorter<Family>& sorter, const typename Family::Route& route) {
  if (sorter.addrToIntfId(addrFromPrefix(route.key))) return false;
  return !sorter.detail() || !(route.key.stringValue() == "fe80::/10");
}

template <class Family>
bool filterRoute(Sorter<Family>& sorter, const typename Family::Route& route, bool fecForwards) {
  const auto type = route.routeType;
  if (isInvalid(type) || isAttached(type)) return true;
  if (isReceive(type)) {
    if (isForeignReceiveRoute(sorter, route)) return true;
  } else if (!isPrintable(sorter, route, fecForwards)) {
    return true;
  }
  if (isMartian(type) && !sorter.detail()) return true;
  sorter.printCountIs(sorter.printCount() + 1);
  return false;
}

template <class Family>
void selectWholeTable(Sorter<Family>& sorter) {
  std::uint32_t steps = 0;
  FecAnswers answers;
  const Forwarding forwarding = sorter.forwarding();
  for (auto it = routesOf(sorter); it;) {
    const auto route = it.value();
    it.next();
    answers.expect(it.value().fecId); // on its way while this route is entered
    const bool fecForwards = answers.answer(
        route.fecId, [&] { return forwards(copyAdjacency(forwarding, route.fecId)); });
    if (!filterRoute(sorter, route, fecForwards)) sorter.sortedRouteIs(route.key, route);
    allowWatchdog(steps);
  }
}

/// Hands each route inside the query's prefix to `take`. Of a table in key order it reads no more
/// than those and the one behind them: damage elsewhere is not met.
template <class Family, class Take>
void walkInside(const Sorter<Family>& sorter, Take&& take) {
  const RouteTable<Family>& routes = sorter.routingStatus()->route;
  const auto& prefix = sorter.prefix();
  const bool endsAtPrefix = routes.inKeyOrder();
  typename RouteTable<Family>::IteratorConst it(routes, prefix.firstInside());
  for (; it && !(endsAtPrefix && prefix < it.value().key); it.next()) {
    if (prefix.contains(it.value().key)) take(it.value());
  }
}

/// The filter runs ahead of the capture here, so that a route is judged without its FEC when no
/// earlier route brought it.
template <class Family>
void selectLongerPrefixes(Sorter<Family>& sorter) {
  const Forwarding forwarding = sorter.forwarding();
  walkInside(sorter, [&](const typename Family::Route& route) {
    if (filterRoute(sorter, route)) return;
    copyAdjacency(forwarding, route.fecId);
    sorter.sortedRouteIs(route.key, route);
  });
}

/// Enters the route under `key`; false when there is none or it is left out.
template <class Family>
bool selectExactly(Sorter<Family>& sorter, const typename Family::Prefix& key) {
  const auto route = selectRoute(sorter, key);
  if (route) sorter.sortedRouteIs(key, *route);
  return route.has_value();
}

template <class Family>
void selectLongestPrefix(Sorter<Family>& sorter) {
  const auto& prefix = sorter.prefix();
  if (selectExactly(sorter, prefix)) return;
  for (int length = prefix.len(); length >= 0; --length) {
    if (selectExactly(sorter, Kesh::pfx(prefix.address(), length))) return;
  }
}

/// The interface by which a query compares a via: an EVPN via has none.
Kesh::IntfId comparedIntf(const CachedVia& via) {
  const bool evpn = Tunnel::TunnelTable::EvpnVxlanTunnelTable::isValidEvpnIntf(via.intfId());
  return evpn ? Kesh::IntfId() : via.intfId();
}

/// Whether a via on `intfId` is left out by the query's limit to an interface.
bool isOtherInterface(const Route6Sorter& sorter, const Kesh::IntfId& intfId) {
  return InterfaceFilter{sorter.intf(), sorter.intfStatus().ptr()}.leavesOut(intfId);
}

/// Counts what lies outside the prefix too, so that it reads the whole of any table: how many those
/// are, no table is asked.
std::uint32_t countRefused(Route6Sorter& sorter) {
  std::uint32_t count = 0;
  const bool all = sorter.prefix().isNullPrefix();
  for (auto it = routesOf(sorter); it; it.next()) {
    const bool inside = all || sorter.prefix().contains(it.value().key);
    if (!inside || filterRoute<Ip6Family>(sorter, it.value())) ++count;
  }
  return count;
}

} // namespace

template <class Family>
void filterPrefixes(Sorter<Family>& sorter) {
  if (sorter.prefix().isNullPrefix()) return selectWholeTable(sorter);
  if (sorter.longerPrefixes()) return selectLongerPrefixes(sorter);
  selectLongestPrefix(sorter);
}

template <class Family>
std::optional<typename Family::Route> selectRoute(Sorter<Family>& sorter,
                                                  const typename Family::Prefix& key) {
  const auto route = readRoute(sorter, key);
  if (route.fecId.isNull()) return {};
  const CachedFec* const fec = copyAdjacency(sorter.forwarding(), route.fecId);
  if (filterRoute(sorter, route, forwards(fec))) return {};
  return route;
}

template <class Family>
bool filterRoute(Sorter<Family>& sorter, const typename Family::Route& route) {
  return filterRoute(sorter, route, forwards(capturedFec(sorter, route)));
}

template <class Family>
bool isPrintable(const Sorter<Family>& sorter, const typename Family::Route& route) {
  return isPrintable(sorter, route, forwards(capturedFec(sorter, route)));
}

template <class Family>
bool kernelUnprogrammedRoutes(const Sorter<Family>& sorter) {
  if (!sorter.kernelUnprogrammedRoute()) return false;
  const auto& errors = (*sorter.kernelUnprogrammedRoute()).*Family::kernelErrors;
  return bool(typename std::remove_cvref_t<decltype(errors)>::IteratorConst(errors));
}

bool isRouteFiltered(const Route6Sorter& sorter, const Vanta::Fib6::Route& route) {
  if (!isReceive(route.routeType) && !isPrintable(sorter, route)) return true;
  if (!sorter.asksFor(route)) return true;
  const CachedFec* const fec = capturedFec(sorter, route);
  if (!fec) return true;
  if (fec->vias() == 0) return static_cast<bool>(sorter.intfStatus());
  if (!sorter.intf()) return false;
  for (const auto& [via, present] : fec->viaMap()) {
    if (!isOtherInterface(sorter, comparedIntf(via))) return false;
  }
  return true;
}

std::uint32_t getFilteredRoutesCount(const RouteSorter&) { return 0; }

std::uint32_t getFilteredRoutesCount(const Route6Sorter& sorter) {
  std::uint32_t count = 0;
  for (auto at = sorter.sortedRouteMap().cursor(); at; at.next()) {
    if (isRouteFiltered(sorter, sorter.sortedRoute(at.key()))) ++count;
  }
  return count;
}

std::uint32_t getInternalFilteredRoutesCount(Route6Sorter& sorter) {
  const auto& prefix = sorter.prefix();
  if (prefix.isNullPrefix() || sorter.longerPrefixes()) return countRefused(sorter);
  const auto route = readRoute(sorter, prefix);
  if (!route.fecId.isNull() && !filterRoute(sorter, route)) return 0;
  std::uint32_t count = 0;
  for (int length = prefix.len(); length >= 0; --length) {
    const auto covering = readRoute(sorter, Kesh::pfx(prefix.address(), length));
    if (covering.fecId.isNull()) continue;
    if (!filterRoute(sorter, covering)) return count;
    ++count;
  }
  return count;
}

#define ROVA_INSTANTIATE(Family)                                                                   \
  template void filterPrefixes(Sorter<Family>&);                                                   \
  template bool filterRoute(Sorter<Family>&, const Family::Route&);                                \
  template std::optional<Family::Route> selectRoute(Sorter<Family>&, const Family::Prefix&);       \
  template bool isPrintable(const Sorter<Family>&, const Family::Route&);                          \
  template bool kernelUnprogrammedRoutes(const Sorter<Family>&);
ROVA_INSTANTIATE(Ip4Family)
ROVA_INSTANTIATE(Ip6Family)
#undef ROVA_INSTANTIATE

} // namespace Rova
