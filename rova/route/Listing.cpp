#include "rova/route/Listing.h"

#include "RoutePrinter.h"

namespace Rova {

namespace {

constexpr const char* kernelWarning = "WARNING: Some of the routes are not programmed in     \n"
                                      "kernel, and they are marked with '%'.                 \n";

/// The default route's prefix, 0.0.0.0/0 or ::/0.
template <class Family>
typename Family::Prefix defaultPrefix() {
  return Kesh::pfx(typename Family::Address(), 0);
}

/// One render of one listing.
template <class Family>
class Listing {
 public:
  using Prefix = typename Family::Prefix;
  using Route = typename Family::Route;

  Listing(Sorter<Family>& sorter, scrivo::Printer& printer)
      : sorter_(sorter), printer_(printer), routes_(sorter, printer) {}

  void print() {
    const double start = Lumo::System::currentTime();
    printEntryCount();
    printFlags();
    printer_.addFrills("%s\n", sorter_.legend());
    printDefaultRoute();
    printer_.ioflush();
    routes_.printSelected();
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

  Sorter<Family>& sorter_;
  scrivo::Printer& printer_;
  RoutePrinter<Family> routes_;
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
  if (hardwareMissing) printer_.addWarning(warningRule);
  if (hardwareMissing) printer_.addWarning(hardwareWarning);
  if (routes_.missesKernel()) printer_.addWarning(kernelWarning);
  if (hardwareMissing) printer_.addWarning(warningRule);

  routingDisabled.setValue(isRoutingDisabled(sorter_));
  allInHardware.setValue(!hardwareMissing);
  allInKernel.setValue(!routes_.missesKernel());
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
  return asked && sorter_.asksFor(route);
}

template <class Family>
void Listing<Family>::printGateway(std::string_view state, const Route& route) {
  if (state == "reachable") {
    printer_.addFrills("Gateway of last resort:\n");
    routes_.printRoute(route);
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

} // namespace

template <class Family>
void formatOutput(Sorter<Family>& sorter, scrivo::Printer& printer) {
  Listing<Family>(sorter, printer).print();
}

template void formatOutput(Sorter<Ip4Family>&, scrivo::Printer&);
template void formatOutput(Sorter<Ip6Family>&, scrivo::Printer&);

} // namespace Rova
