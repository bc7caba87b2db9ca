// Which routes of the table a sorter takes, and which of those the printing stage will refuse.
// Templates over the sorter, instantiated for both in Selection.cpp.
#pragma once

#include "rova/route/Sorter.h"

#include <optional>

namespace Rova {

/// Fills `sortedRoute` by the sorter's query and captures the FECs of the routes that it looks at.
template <class Family>
void filterPrefixes(Sorter<Family>& sorter);

/// Whether the route is left out; one that is kept counts in `printCount`.
template <class Family>
bool filterRoute(Sorter<Family>& sorter, const typename Family::Route& route);

/// The route under `key` as the selection takes it, with its FEC captured; none where there is no
/// such route or it is left out. It is not entered in `sortedRoute`.
template <class Family>
std::optional<typename Family::Route> selectRoute(Sorter<Family>& sorter,
                                                  const typename Family::Prefix& key);

/// Whether the route has something to show: a nexthop group route, or one whose FEC is missing, has
/// no via, or has one that leads somewhere. A FEC of dead vias alone shows in a detail listing.
template <class Family>
bool isPrintable(const Sorter<Family>& sorter, const typename Family::Route& route);

/// The same where it is known whether the FEC is missing, has no via, or has one that leads
/// somewhere.
template <class Family>
bool isPrintable(const Sorter<Family>& sorter, const typename Family::Route& route,
                 bool fecForwards) {
  if (isNexthopGroup(route.routeType)) return true;
  if (route.fecId.isNull()) return false;
  return fecForwards || sorter.detail();
}

/// Whether the table of routes missing from the kernel holds any entry of the sorter's family.
template <class Family>
bool kernelUnprogrammedRoutes(const Sorter<Family>& sorter);

/// Whether the printing stage will refuse the route.
ROVA_EXPORT bool isRouteFiltered(const Route6Sorter& sorter, const Vanta::Fib6::Route& route);

/// How many selected routes the printing stage will refuse; always 0 for IPv4.
ROVA_EXPORT std::uint32_t getFilteredRoutesCount(const RouteSorter& sorter);
ROVA_EXPORT std::uint32_t getFilteredRoutesCount(const Route6Sorter& sorter);

/// How many routes the selection itself refuses. Counts the kept ones in `printCount` again.
ROVA_EXPORT std::uint32_t getInternalFilteredRoutesCount(Route6Sorter& sorter);

} // namespace Rova
