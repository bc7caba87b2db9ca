#include "rova/route/Listing.h"

#include "FecLook.h"
#include "lumo/Assert.h"
#include "rova/core/Flush.h"
#include "rova/core/Trace.h"
#include "rova/fec/Policies.h"
#include "rova/route/RouteLine.h"
#include "rova/route/Selection.h"

namespace Rova {

namespace {

using Vrf::VrfIdMap::VrfId;

constexpr const char* kernelWarning = "WARNING: Some of the routes are not programmed in     \n"
                                      "kernel, and they are marked with '%'.                 \n";

/// The default route's prefix, 0.0.0.0/0 or ::/0.
template <class Family>
typename Family::Prefix defaultPrefix() {
  return Kesh::pfx(typename Family::Address(), 0);
}

/// One render of one listing; what routes share is worked out once here.
template <class Family>
class Listing {
 public:
  using Prefix = typename Family::Prefix;
  using Route = typename Family::Route;

  Listing(Sorter<Family>& sorter, scrivo::Printer& printer)
      : sorter_(sorter),
        printer_(printer),
        forwarding_(sorter.forwarding()),
        missesHardware_(hasUnprogrammedRoutes(sorter)),
        missesKernel_(kernelUnprogrammedRoutes(sorter)),
        lines_(printer, {sorter.detail(), sorter.degradeNhgModel()}) {}

  void print() {
    const double start = Lumo::System::currentTime();
    printEntryCount();
    printFlags();
    printer_.addFrills("%s\n", sorter_.legend());
    printDefaultRoute();
    printer_.ioflush();
    printRoutes();
    printer_.endDict();
    printer_.addFrills("\n");
    if (sorter_.quantify() != 0.0) printTiming(sorter_, printer_, start);
  }

 private:
  void printEntryCount();
  void printFlags();

  const char* defaultRouteState(const Route& route) const;
  bool isConfigured(const Prefix& prefix) const;
  bool gatewayBelongs(const Route& route) const;
  void printGateway(std::string_view state, const Route& route);
  void printDefaultRoute();

  void printRoutes();
  void printRoute(const Route& route);
  Kesh::IntfId ownInterface(const Route& route) const;
  bool hasV6Nexthop() const;
  RouteLine lineOf(const Route& route);
  const char* srcVrfName(VrfId vrf);
  void printMissingFec(const Route& route);
  bool sharesVias(const Route& route, const RouteLine& line, const FecLook& look) const;
  bool resolve(const Route& route, const FecLook& look, RouteLine& line);
  bool resolveDirectly(const Route& route, const CachedFec& fec, RouteLine& line);
  void buildGroups(CachedFec& fec);

  Sorter<Family>& sorter_;
  scrivo::Printer& printer_;
  const Forwarding forwarding_;
  // Whether there is a route to ask about: most devices have none.
  const bool missesHardware_, missesKernel_;
  RouteLinePrinter lines_;
  FecLooks<FecLook> looks_;
  bool groupNamesBuilt_ = false;
  VrfId lastSrcVrf_{VrfId::none};
  Lumo::String lastSrcVrfName_;
  // What the line in print shows of its FEC.
  DirectViaText viaText_;
  PolicyInfoSet policies_;
  Lumo::String ownInterfaceText_, ownDescription_;
};

template <class Family>
void Listing<Family>::printEntryCount() {
  if constexpr (Family::printsEntryCount) {
    const auto& prefix = sorter_.prefix();
    if (prefix.isNullPrefix()) {
      const auto total = static_cast<std::uint32_t>(sorter_.routingStatus()->route.members());
      const auto shown =
          static_cast<std::uint32_t>(sorter_.printCount()) - getFilteredRoutesCount(sorter_);
      sorter_.printCountIs(static_cast<int>(shown));
      printer_.addFrills("Displaying %u of %u IPv6 routing table entries\n", shown, total);
    } else {
      printer_.addFrills("Routing entry for %s\n", sorter_.originalMask()
                                                       ? prefix.stringValue()
                                                       : prefix.address().stringValue());
    }
  }
}

template <class Family>
void Listing<Family>::printFlags() {
  scrivo::BoolAttrInfo routingDisabled(printer_, "routingDisabled");
  scrivo::BoolAttrInfo allInHardware(printer_, "allRoutesProgrammedHardware");
  scrivo::BoolAttrInfo allInKernel(printer_, "allRoutesProgrammedKernel");

  const bool hardwareMissing = hasHardwareUnprogrammed(sorter_);
  if (hardwareMissing) printer_.addFrills("%s%s", warningRule, hardwareWarning);
  if (missesKernel_) printer_.addFrills("%s", kernelWarning);
  if (hardwareMissing) printer_.addFrills("%s", warningRule);

  routingDisabled.setValue(isRoutingDisabled(sorter_));
  allInHardware.setValue(!hardwareMissing);
  allInKernel.setValue(!missesKernel_);
  printer_.addAttributes("", 3, routingDisabled.getArg(), allInHardware.getArg(),
                         allInKernel.getArg());
}

template <class Family>
bool Listing<Family>::isConfigured(const Prefix& prefix) const {
  const Kesh::IpGenPrefix wanted(prefix);
  bool found = false;
  sorter_.routingConfig()->route.forEach(
      [&](const Routing::RouteKey& key, const auto&) { found = found || key.prefix == wanted; });
  return found;
}

template <class Family>
const char* Listing<Family>::defaultRouteState(const Route& route) const {
  if (!sorter_.routingConfig()) return "notSet";
  if (isPrintable(sorter_, route)) return "reachable";
  return !route.fecId.isNull() || isConfigured(defaultPrefix<Family>()) ? "notReachable" : "notSet";
}

/// Whether the gateway of last resort is a matter of this listing: of the whole table, of a query
/// for the default route, and of one for a single prefix that resolved to it.
template <class Family>
bool Listing<Family>::gatewayBelongs(const Route& route) const {
  const auto& routes = sorter_.sortedRouteMap();
  const auto isDefault = [](const Prefix& prefix) { return prefix == defaultPrefix<Family>(); };
  const bool asked =
      isDefault(sorter_.prefix()) ||
      (!sorter_.longerPrefixes() && (sorter_.prefix().isNullPrefix() ||
                                     (routes.size() == 1 && isDefault(routes.begin()->first))));
  return asked && protocolMatch(route, sorter_.protocol());
}

template <class Family>
void Listing<Family>::printGateway(std::string_view state, const Route& route) {
  if (state == "reachable") {
    printer_.addFrills("Gateway of last resort:\n");
    printRoute(route);
    printer_.addFrills("\n");
  } else {
    printer_.addFrills("Gateway of last resort is not %s\n\n",
                       state == "notReachable" ? "reachable" : "set");
  }
}

template <class Family>
void Listing<Family>::printDefaultRoute() {
  bool found = false;
  const Route route = *sorter_.routingStatus()->route.safeLookup(defaultPrefix<Family>(), found, 0);
  const char* const state = defaultRouteState(route);
  scrivo::StringAttrInfo defaultRouteState(printer_, "defaultRouteState");
  defaultRouteState.setValue(state);
  printer_.addAttributes("", 1, defaultRouteState.getArg());
  printer_.startDict("routes");
  if (!sorter_.routingConfig() || !Family::printsGatewayOfLastResort) return;
  if (!gatewayBelongs(route)) return;
  printGateway(state, route);
  sorter_.sortedRouteDel(defaultPrefix<Family>());
}

template <class Family>
void Listing<Family>::printRoutes() {
  printLookingAhead(sorter_.sortedRouteMap(), looks_, [this](const Route& route) {
    printRoute(route);
    flushIfFull(printer_);
  });
}

template <class Family>
void Listing<Family>::printRoute(const Route& route) {
  ROVA_TRACE(8, "bool Rova::printRoute(" << Family::sorterTypeName << ", Route, scrivo::Printer)");
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

/// Whether the line goes on as those of other routes on the FEC do. Not where the route's type
/// makes it another line, shows an interface of its own, or stands between the policies of a leaked
/// route.
template <class Family>
bool Listing<Family>::sharesVias(const Route& route, const RouteLine& line,
                                 const FecLook& look) const {
  if (isNexthopGroup(route.routeType) && !look.isNexthopGroup) return false;
  return !isReceive(route.routeType) && !(line.routeLeaked && look.isSrTePolicy) &&
         look.vias.suit(line.prefix);
}

/// Works out what the line shows of its FEC; false if the query or the tunnel table leaves it out.
template <class Family>
bool Listing<Family>::resolve(const Route& route, const FecLook& look, RouteLine& line) {
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
bool Listing<Family>::resolveDirectly(const Route& route, const CachedFec& fec, RouteLine& line) {
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
RouteLine Listing<Family>::lineOf(const Route& route) {
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
const char* Listing<Family>::srcVrfName(VrfId vrf) {
  if (vrf == lastSrcVrf_) return lastSrcVrfName_.c_str();
  bool found = false;
  const auto* const entry = sorter_.vrfIdMap()->vrfEntry.safeLookup(vrf, found, 0);
  lastSrcVrfName_ = found ? entry->name : Lumo::String();
  lastSrcVrf_ = vrf;
  return lastSrcVrfName_.c_str();
}

template <class Family>
void Listing<Family>::printMissingFec(const Route& route) {
  LUMO_ASSERT(Family::toleratesMissingFec, "fec");
  printer_.addFrills("%-5s   %s <FecId %llx not found>", pcode(route.routeType),
                     route.key.stringValue(), route.fecId.value());
}

template <class Family>
void Listing<Family>::buildGroups(CachedFec& fec) {
  if (!groupNamesBuilt_) sorter_.buildNexthopGroupIdToName();
  groupNamesBuilt_ = true;
  if (fec.nhgVias() == 0) buildNexthopGroupRows(forwarding_, fec);
}

/// Asked for each line: following a tunnel can capture the first FEC of the IPv6 table.
template <class Family>
bool Listing<Family>::hasV6Nexthop() const {
  if constexpr (Family::remembersV6Nexthops) {
    return sorter_.hasV6Nexthop();
  } else {
    return true;
  }
}

template <class Family>
Kesh::IntfId Listing<Family>::ownInterface(const Route& route) const {
  return sorter_.addrToIntfId(addrFromPrefix(route.key));
}

} // namespace

template <class Family>
void formatOutput(Sorter<Family>& sorter, scrivo::Printer& printer) {
  Listing<Family>(sorter, printer).print();
}

template void formatOutput(Sorter<Ip4Family>&, scrivo::Printer&);
template void formatOutput(Sorter<Ip6Family>&, scrivo::Printer&);

} // namespace Rova
