// Which routes the host route table has.
#include "rova/core/Trace.h"
#include "rova/fec/FecCapture.h"
#include "rova/route/HostTable.h"

namespace Rova {

namespace {

using Vrf::VrfIdMap::VrfId;

/// Whether a neighbour is one of the sorter's VRF. The default VRF is told by its number, any other
/// by its name. Neighbours are in the order of their VRFs, so each VRF is asked about once.
template <class Family>
class VrfFilter {
 public:
  explicit VrfFilter(const Sorter<Family>& sorter)
      : sorter_(sorter), isDefault_(sorter.vrfName() == L3::VrfName(L3::defaultVrfName)) {}

  bool takes(VrfId vrf) {
    if (isDefault_) return vrf == VrfId(0);
    if (vrf != last_) {
      last_ = vrf;
      takesLast_ = hasName(vrf);
    }
    return takesLast_;
  }

 private:
  /// A number that the device does not know has the empty name.
  bool hasName(VrfId vrf) const {
    bool found = false;
    const auto* const entry = sorter_.vrfIdMap()->vrfEntry.safeLookup(vrf, found, 0);
    return sorter_.vrfName().stringValue() == (found ? entry->name : Lumo::String());
  }

  const Sorter<Family>& sorter_;
  const bool isDefault_;
  VrfId last_{VrfId::none};
  bool takesLast_ = false;
};

/// Captures the FEC of a route. An identifier of a kind that does not exist names no FEC.
template <class Family>
void captureFec(Sorter<Family>& sorter, Vanta::Fib::FecId fecId) {
  if (fecId.rawAdjType() < Vanta::Fib::adjTypeMax()) copyAdjacency(sorter, fecId);
}

} // namespace

template <class Family>
void filterHostPrefixes(Sorter<Family>& sorter, std::uint8_t mask) {
  std::uint32_t steps = 0;
  using Routes = std::remove_cvref_t<decltype(sorter.routingStatus()->route)>;
  for (typename Routes::IteratorConst it(sorter.routingStatus()->route); it; it.next()) {
    const auto& route = it.value();
    if (isInvalid(route.routeType) || route.key.len() != mask) continue;
    captureFec(sorter, route.fecId);
    sorter.sortedRouteIs(route.key, route);
    allowWatchdog(steps);
  }
  VrfFilter<Family> vrf(sorter);
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
