// Routes that a sorter makes up for neighbours.
#include "rova/fec/Capture.h"
#include "rova/route/Sorter.h"

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

template Vanta::Fib::Route Sorter<Ip4Family>::createAttachedRoute(Kesh::IpGenAddr, Kesh::IntfId);
template Vanta::Fib6::Route Sorter<Ip6Family>::createAttachedRoute(Kesh::IpGenAddr, Kesh::IntfId);

} // namespace Rova
