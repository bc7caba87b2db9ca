// Routes that a sorter makes up for neighbours, and what a handler asks of its routes by prefix.
#include "ListingParts.h"
#include "rova/fec/Capture.h"
#include "rova/route/Sorter.h"

#include <string>

namespace Rova {

namespace {

/// The host prefix of an address, in the family of the sorter; the caller gives that family.
Kesh::Prefix hostPrefix(const Kesh::IpGenAddr& ip, Ip4Family) {
  return Kesh::pfx(ip.v4Addr(), Ip4Family::hostLength);
}
Kesh::Ip6Prefix hostPrefix(const Kesh::IpGenAddr& ip, Ip6Family) {
  return Kesh::pfx(ip.v6Addr(), Ip6Family::hostLength);
}

/// The next number of an attached FEC; each sorter class counts for itself, from 1 on.
template <class Family>
Vanta::Fib::FecId nextAttachedFecId() {
  static std::uint64_t count = 0;
  return {Vanta::Fib::AdjType::attached, ++count};
}

/// A FEC with one via without next hop on that interface.
template <class Family>
typename Family::Fec attachedFec(Vanta::Fib::FecId id, const Kesh::IntfId& intfId) {
  typename Family::Fec::ViaType via;
  via.intfId = intfId;
  via.weight = 1;
  typename Family::Fec fec(id);
  fec.viaAppend(via);
  return fec;
}

} // namespace

template <class Family>
typename Family::Route Sorter<Family>::createAttachedRoute(Kesh::IpGenAddr ip,
                                                           Kesh::IntfId intfId) {
  const auto prefix = hostPrefix(ip, Family());
  Route route = sortedRoute(prefix);
  if (!(route == Route())) {
    if (const auto& known = fec(route.fecId)) { // null for a route of the table without a FEC
      CachedVia via;
      via.intfIdIs(intfId);
      known->viaIs(via, true);
    }
    return route;
  }
  route.key = prefix;
  route.fecId = nextAttachedFecId<Family>();
  route.routeType = Family::attachedType;
  cachedFecIs(forwarding(), route.fecId, attachedFec<Family>(route.fecId, intfId));
  return route;
}

template <class Family>
Lumo::String Sorter<Family>::protocolString(Prefix p) const {
  const Route& route = sortedRoute(p);
  std::string text;
  if (!route.fecId.isNull()) {
    LUMO_ASSERT(kernelUnprogrammedRoute(), "kernelUnprogrammedRoute()");
    text = std::string(isHardwareProgrammed(*this, p) ? " " : "*") + pcode(route.routeType) +
           (isKernelProgrammed(*this, p) ? "" : "%");
  }
  if (text.size() < 5) text.resize(5, ' ');
  return Lumo::String(text);
}

template <class FamilyType>
Lumo::Ptr<CachedFec> Sorter<FamilyType>::viasForPrefix(Prefix p) const
    requires(FamilyType::answersViasForPrefix) {
  const Route* const route = sortedRoute_.find(p);
  if (!route || route->fecId.isNull()) return {};
  const auto copy = cachedFecFactory(route->fecId);
  if (const auto& captured = fec(route->fecId)) {
    for (const auto& [via, present] : captured->viaMap()) copy->viaIs(via, true);
  }
  return copy;
}

#define ROVA_INSTANTIATE(Family)                                                                   \
  template Family::Route Sorter<Family>::createAttachedRoute(Kesh::IpGenAddr, Kesh::IntfId);       \
  template Lumo::String Sorter<Family>::protocolString(Family::Prefix) const;
ROVA_INSTANTIATE(Ip4Family)
ROVA_INSTANTIATE(Ip6Family)
#undef ROVA_INSTANTIATE
template Lumo::Ptr<CachedFec> Sorter<Ip4Family>::viasForPrefix(Kesh::Prefix) const;

} // namespace Rova
