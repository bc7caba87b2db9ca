#include "RoutePrinter.h"

#include "lumo/Assert.h"
#include "rova/core/Flush.h"
#include "rova/core/Trace.h"

namespace Rova {

template <class Family>
void RoutePrinter<Family>::print(const Route& route) {
  ROVA_TRACE(8, "bool Rova::print(" << Family::sorterTypeName << ", Route, scrivo::Printer)");
  const auto type = route.routeType;
  FecLook& look =
      looks_.look(route.fecId, [&] { return lookAt<Family>(forwarding_, route.fecId); });
  if (!isReceive(type) && !isPrintable(sorter_, route, look.forwards)) return;
  if (!protocolMatch(route, sorter_.protocol())) return;
  if (!look.fec) return printMissingFec(route);
  RouteLine line = lineOf(route);
  if (sharesVias(route, line, look)) line.shared = &look.vias;
  const bool isKnown = line.shared && line.shared->isKnown(hasV6Nexthop());
  if (isKnown || resolve(route, look, line)) lines_.printFormatRoute(type, line, hasV6Nexthop());
}

template <class Family>
void RoutePrinter<Family>::printSelected() {
  printLookingAhead(sorter_.sortedRouteMap(), looks_, [this](const Route& route) {
    print(route);
    flushIfFull(printer_);
  });
}

/// Whether the line goes on as those of other routes on the FEC do. Not where the route's type
/// makes it another line, shows an interface of its own, or stands between the policies of a leaked
/// route.
template <class Family>
bool RoutePrinter<Family>::sharesVias(const Route& route, const RouteLine& line,
                                      const FecLook& look) const {
  if (isNexthopGroup(route.routeType) && !look.isNexthopGroup) return false;
  return !isReceive(route.routeType) && !(line.routeLeaked && look.isSrTePolicy) &&
         look.vias.suit(line.prefix);
}

/// Works out what the line shows of its FEC; false if the query or the tunnel table leaves it out.
template <class Family>
bool RoutePrinter<Family>::resolve(const Route& route, const FecLook& look, RouteLine& line) {
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
bool RoutePrinter<Family>::resolveDirectly(const Route& route, const CachedFec& fec,
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
RouteLine RoutePrinter<Family>::lineOf(const Route& route) {
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
const char* RoutePrinter<Family>::srcVrfName(VrfId vrf) {
  if (vrf == lastSrcVrf_) return lastSrcVrfName_.c_str();
  bool found = false;
  const auto* const entry = sorter_.vrfIdMap()->vrfEntry.safeLookup(vrf, found, 0);
  lastSrcVrfName_ = found ? entry->name : Lumo::String();
  lastSrcVrf_ = vrf;
  return lastSrcVrfName_.c_str();
}

template <class Family>
void RoutePrinter<Family>::printMissingFec(const Route& route) {
  LUMO_ASSERT(Family::toleratesMissingFec, "fec");
  printer_.addFrills("%-5s   %s <FecId %llx not found>", pcode(route.routeType),
                     route.key.stringValue(), route.fecId.value());
}

template <class Family>
void RoutePrinter<Family>::buildGroups(CachedFec& fec) {
  if (!groupNamesBuilt_) sorter_.buildNexthopGroupIdToName();
  groupNamesBuilt_ = true;
  if (fec.nhgVias() == 0) buildNexthopGroupRows(forwarding_, fec);
}

/// Asked for each line: following a tunnel can capture the first FEC of the IPv6 table.
template <class Family>
bool RoutePrinter<Family>::hasV6Nexthop() const {
  if constexpr (Family::remembersV6Nexthops) {
    return sorter_.hasV6Nexthop();
  } else {
    return true;
  }
}

template <class Family>
Kesh::IntfId RoutePrinter<Family>::ownInterface(const Route& route) const {
  return sorter_.addrToIntfId(addrFromPrefix(route.key));
}

template class RoutePrinter<Ip4Family>;
template class RoutePrinter<Ip6Family>;

} // namespace Rova
