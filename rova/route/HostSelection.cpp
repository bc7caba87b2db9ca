// Which routes the host route table has.
#include "rova/core/Neighbors.h"
#include "rova/core/Watchdog.h"
#include "rova/fec/Capture.h"
#include "rova/route/HostTable.h"

namespace Rova {

namespace {

/// Captures the FEC of a route. An identifier of a kind that does not exist names no FEC.
void captureFec(const Forwarding& forwarding, Vanta::Fib::FecId fecId) {
  if (fecId.rawAdjType() < Vanta::Fib::adjTypeMax()) copyAdjacency(forwarding, fecId);
}

} // namespace

template <class Family>
void filterHostPrefixes(Sorter<Family>& sorter, std::uint8_t mask) {
  std::uint32_t steps = 0;
  const Forwarding forwarding = sorter.forwarding();
  using Routes = std::remove_cvref_t<decltype(sorter.routingStatus()->route)>;
  for (typename Routes::IteratorConst it(sorter.routingStatus()->route); it; it.next()) {
    const auto& route = it.value();
    if (isInvalid(route.routeType) || route.key.len() != mask) continue;
    captureFec(forwarding, route.fecId);
    sorter.sortedRouteIs(route.key, route);
    allowWatchdog(steps);
  }
  VrfFilter vrf(sorter);
  for (auto it = neighborIteratorConst(sorter); it; it.next()) {
    const auto& neighbor = it.value().key;
    if (Kesh::MgmtIntfId::isMgmtIntfId(neighbor.intfId) || !vrf.takes(neighbor.vrfId)) continue;
    const auto route = sorter.createAttachedRoute(neighbor.address, neighbor.intfId);
    sorter.sortedRouteIs(route.key, route);
    allowWatchdog(steps);
  }
}

template void filterHostPrefixes(Sorter<Ip4Family>&, std::uint8_t);
template void filterHostPrefixes(Sorter<Ip6Family>&, std::uint8_t);

} // namespace Rova
