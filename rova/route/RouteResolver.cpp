#include "RouteResolver.h"

namespace Rova {

template <class Family>
RouteLine RouteResolver<Family>::lineOf(const Route& route) {
  RouteLine line;
  line.prefix = route.key;
  line.preference = route.preference();
  line.metric = route.metric;
  if (const VrfId source = route.srcVrfId(); source != VrfId(VrfId::none)) {
    line.srcVrfName = srcVrfName(source);
    line.routeLeaked = !(sorter_.vrfName().stringValue() == line.srcVrfName);
  }
  line.hardwareProgrammed = !missesHardware_ || isHardwareProgrammed(sorter_, route.key);
  line.kernelProgrammed = !missesKernel_ || isKernelProgrammed(sorter_, route.key);
  return line;
}

/// The name of a VRF, empty for an unknown number. Leaked routes come in runs of one source.
template <class Family>
const char* RouteResolver<Family>::srcVrfName(VrfId vrf) {
  if (vrf == lastSrcVrf_) return lastSrcVrfName_.c_str();
  bool found = false;
  const auto* const entry = sorter_.vrfIdMap()->vrfEntry.safeLookup(vrf, found, 0);
  lastSrcVrfName_ = found ? entry->name : Lumo::String();
  lastSrcVrf_ = vrf;
  return lastSrcVrfName_.c_str();
}

/// Not where the route's type makes it another line, shows an interface of its own, or stands
/// between the policies of a leaked route.
template <class Family>
bool RouteResolver<Family>::sharesVias(const Route& route, const RouteLine& line,
                                       const FecLook& look) const {
  if (isNexthopGroup(route.routeType) && !look.isNexthopGroup) return false;
  return !isReceive(route.routeType) && !(line.routeLeaked && look.isSrTePolicy) &&
         look.vias.suit(line.prefix);
}

template <class Family>
bool RouteResolver<Family>::resolve(const Route& route, const FecLook& look, RouteLine& line) {
  CachedFec& fec = *look.fec;
  line.isNexthopGroup = isNexthopGroup(route.routeType) || look.isNexthopGroup;
  if (look.isDirect && !line.isNexthopGroup) return resolveDirectly(route, fec, line);
  line.fec = &fec;
  if (line.isNexthopGroup) {
    buildGroups(fec);
  } else if (look.isSrTePolicy) {
    policies_ = collectPolicies(forwarding_, fec);
    line.policies = &policies_;
  } else if (fec.vias() != 0) {
    buildRows(forwarding_, fec, route.key);
    return fec.numEntries() != 0 || !forwarding_.filter.isSet;
  }
  return true;
}

/// A line that shows its only via needs no more of the FEC: there are no rows.
template <class Family>
bool RouteResolver<Family>::resolveDirectly(const Route& route, const CachedFec& fec,
                                            RouteLine& line) {
  const CachedVia& via = fec.viaMap().begin()->first;
  const bool isEvpn = via.tunnelId().kind() == Tunnel::TunnelTable::TunnelKind::evpnVxlan;
  viaText_ = viaTexts(forwarding_, via);
  if (isEvpn && !viaText_.evpnEntry.isSet()) return false;
  if (forwarding_.filter.leavesOut(isEvpn ? Kesh::IntfId() : via.intfId())) return false;
  line.via = &viaText_;
  if (isReceive(route.routeType) && viaText_.interface.empty()) {
    const Kesh::IntfId own = ownInterface(route);
    ownInterfaceText_ = own.stringValue();
    ownDescription_ = interfaceDescriptionOf(forwarding_, own);
    line.ownInterface = ownInterfaceText_.c_str();
    line.ownInterfaceDescription = ownDescription_.c_str();
  }
  return true;
}

template <class Family>
void RouteResolver<Family>::buildGroups(CachedFec& fec) {
  if (!groupNamesBuilt_) sorter_.buildNexthopGroupIdToName();
  groupNamesBuilt_ = true;
  if (fec.nhgVias() == 0) buildNexthopGroupRows(forwarding_, fec);
}

template <class Family>
bool RouteResolver<Family>::hasV6Nexthop() const {
  if constexpr (Family::remembersV6Nexthops) {
    return sorter_.hasV6Nexthop();
  } else {
    return true;
  }
}

template <class Family>
Kesh::IntfId RouteResolver<Family>::ownInterface(const Route& route) const {
  return sorter_.addrToIntfId(addrFromPrefix(route.key));
}

template class RouteResolver<Ip4Family>;
template class RouteResolver<Ip6Family>;

} // namespace Rova
