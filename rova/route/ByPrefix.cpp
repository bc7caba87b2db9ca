// What a handler asks of a sorter's routes by prefix.
#include "lumo/Assert.h"
#include "rova/route/Listing.h"

#include <string>

namespace Rova {

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

template Lumo::String Sorter<Ip4Family>::protocolString(Kesh::Prefix) const;
template Lumo::String Sorter<Ip6Family>::protocolString(Kesh::Ip6Prefix) const;
template Lumo::Ptr<CachedFec> Sorter<Ip4Family>::viasForPrefix(Kesh::Prefix) const;

} // namespace Rova
