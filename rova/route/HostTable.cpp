// The document of the host route table.
//
//    A  10.0.0.1 via 192.0.2.1 on Ethernet1
//                via 192.0.2.5 to cpu on Ethernet2
//
// A line has the hardware mark, the code, two blanks, the address and the vias.
#include "rova/route/HostTable.h"

#include "rova/core/Flush.h"
#include "rova/route/DisplayAttrInfo.h"
#include "rova/route/FecLooks.h"
#include "rova/route/Listing.h"

namespace Rova {

namespace {

/// The columns ahead of the address.
constexpr std::size_t hostHeadColumns = 4;

/// What one via shows.
struct HostRow {
  Lumo::String nexthopAddr;
  Lumo::String interface;
  bool toCpu = false;
};

template <class Family>
HostRow makeRow(const CachedVia& via, typename Family::RouteType type) {
  const bool hasHop = !via.hop().isAddrZero();
  HostRow row;
  if (!via.intfId()) return row.toCpu = true, row;
  if (hasHop) row.nexthopAddr = via.hop().stringValue();
  if (Tunnel::TunnelTable::EvpnVxlanTunnelTable::isValidEvpnIntf(via.intfId())) return row;
  row.interface = via.intfId().stringValue();
  row.toCpu = !hasHop && !Family::hostIsOnLink(type);
  return row;
}

/// The rows of a FEC, one a via, made once: the first route on the FEC that prints decides by its
/// type whether a via without next hop goes to the processor.
template <class Family>
void buildHostRows(CachedFec& fec, typename Family::RouteType type) {
  if (fec.numEntries() != 0) return;
  std::uint16_t at = 0;
  for (const auto& [via, present] : fec.viaMap()) {
    HostRow row = makeRow<Family>(via, type);
    fec.nexthopAddrIs(at, std::move(row.nexthopAddr));
    fec.interfaceIs(at, std::move(row.interface));
    fec.hostToCpuIs(at, row.toCpu);
    ++at;
  }
  fec.numEntriesIs(static_cast<int>(fec.vias()));
}

/// What the routes on a FEC show of it: its rows, or where the only via leads to the route's own
/// address on some interface, that interface.
struct HostLook {
  CachedFec* fec = nullptr; ///< null for one that was not captured
  bool isEmpty = true;
  Kesh::IpGenAddr onlyAddress; ///< null unless such a via is the only one
  scrivo::Stretch rows;

  const scrivo::Stretch& output() const { return rows; }
};

HostLook lookAt(CachedFec* fec) {
  HostLook look;
  look.fec = fec;
  look.isEmpty = !fec || fec->vias() == 0;
  if (look.isEmpty || fec->vias() != 1) return look;
  const CachedVia& via = fec->viaMap().begin()->first;
  if (via.intfId() && !via.hop().isAddrZero()) look.onlyAddress = via.hop();
  return look;
}

/// One render of the table.
template <class Family>
class HostTable {
 public:
  using Route = typename Family::Route;

  HostTable(Sorter<Family>& sorter, scrivo::Printer& printer)
      : sorter_(sorter),
        printer_(printer),
        missesHardware_(hasUnprogrammedRoutes(sorter)),
        prefix_(printer, "prefix"),
        routeType_(printer, "routeType"),
        hardwareProgrammed_(printer, "hardwareProgrammed"),
        toCpu_(printer, "toCpu"),
        nexthopAddr_(printer, "nexthopAddr"),
        interface_(printer, "interface") {}

  void print() {
    const double start = Lumo::System::currentTime();
    if (sorter_.sortedRouteMap().empty()) return;
    printer_.start();
    printHead();
    printer_.startDict("routes");
    printLookingAhead(
        sorter_.sortedRouteMap(), looks_, [this](const Route& route) { printRoute(route); },
        [](const Route&) {});
    printer_.endDict();
    printer_.addFrills("\n");
    if (sorter_.quantify() != 0.0) printTiming(sorter_, printer_, start);
    printer_.end();
  }

 private:
  void printHead();
  void printRoute(const Route& route);
  void startRoute(const Route& route);
  void endRoute();
  void printToCpu();
  void printVias(const Route& route, HostLook& look);
  void printOwnAddress(const CachedVia& via);
  void printRows(const CachedFec& fec);
  void printRow(const CachedFec& fec, std::uint16_t at);

  Sorter<Family>& sorter_;
  scrivo::Printer& printer_;
  const bool missesHardware_; ///< some route of the device: most devices have all
  FecLooks<HostLook> looks_;
  char addressText_[Kesh::maxAddressText];
  char prefixText_[Kesh::maxAddressText];
  std::size_t addressLength_ = 0;
  scrivo::StringAttrInfo prefix_;
  scrivo::HostRouteTypeAttrInfo routeType_;
  scrivo::HardwareProgrammedAttrInfo hardwareProgrammed_;
  scrivo::BoolAttrInfo toCpu_;
  scrivo::StringAttrInfo nexthopAddr_;
  scrivo::StringAttrInfo interface_;
};

template <class Family>
void HostTable<Family>::printHead() {
  scrivo::BoolAttrInfo routingDisabled(printer_, "routingDisabled");
  scrivo::BoolAttrInfo allInHardware(printer_, "allRoutesProgrammedHardware");
  const bool hardwareMissing = hasHardwareUnprogrammed(sorter_);
  if (hardwareMissing) {
    for (const auto* text : {warningRule, hardwareWarning, warningRule}) printer_.addWarning(text);
  }
  printer_.addFrills("%s\n", sorter_.hostLegend());
  routingDisabled.setValue(isRoutingDisabled(sorter_));
  allInHardware.setValue(!hardwareMissing);
  printer_.addAttributes("", 2, routingDisabled.getArg(), allInHardware.getArg());
  printer_.ioflush();
}

template <class Family>
void HostTable<Family>::printRoute(const Route& route) {
  startRoute(route);
  HostLook& look = looks_.look(route.fecId, [&] { return lookAt(sorter_.fec(route.fecId).ptr()); });
  if (look.fec && !look.rows.isKept()) buildHostRows<Family>(*look.fec, route.routeType);
  if (Family::hostGoesToCpu(route.routeType)) {
    printToCpu();
    return endRoute();
  }
  if (!look.isEmpty) printVias(route, look);
  printer_.addFrills("\n");
  endRoute();
  flushIfFull(printer_);
}

template <class Family>
void HostTable<Family>::startRoute(const Route& route) {
  addressLength_ = route.key.address().writeText(addressText_);
  prefixText_[route.key.writeText(prefixText_)] = '\0';
  prefix_.setValue(static_cast<const char*>(prefixText_));
  printer_.startDictEntry(prefix_);
  routeType_.setValue(route.routeType);
  hardwareProgrammed_.setValue(!missesHardware_ || isHardwareProgrammed(sorter_, route.key));
  printer_.addAttributes("%s%s", 2, hardwareProgrammed_.getArg(), routeType_.getArg());
  printer_.addFrills("%s", scrivo::asValue({addressText_, addressLength_}, prefix_.colour()));
  printer_.startList("vias");
}

template <class Family>
void HostTable<Family>::endRoute() {
  printer_.endList();
  printer_.endDictEntry();
}

template <class Family>
void HostTable<Family>::printToCpu() {
  printer_.startListEntry();
  toCpu_.setValue(true);
  printer_.addAttributes(" to cpu\n", 1, toCpu_.getArg());
  printer_.endListEntry();
}

template <class Family>
void HostTable<Family>::printVias(const Route& route, HostLook& look) {
  if (look.onlyAddress == Kesh::IpGenAddr(route.key.address())) {
    return printOwnAddress(look.fec->viaMap().begin()->first);
  }
  printer_.marginIs(static_cast<std::uint32_t>(addressLength_ + hostHeadColumns));
  printer_.addStretch(look.rows, [&] { printRows(*look.fec); });
}

template <class Family>
void HostTable<Family>::printRows(const CachedFec& fec) {
  for (std::uint16_t at = 0; at < static_cast<std::uint16_t>(fec.vias()); ++at) {
    printer_.startListEntry();
    if (at != 0) {
      printer_.addFrills("\n");
      printer_.addIndent();
    }
    printRow(fec, at);
    printer_.endListEntry();
  }
}

/// The interface alone. It is the via's and not the row's: the row of an EVPN via has none.
template <class Family>
void HostTable<Family>::printOwnAddress(const CachedVia& via) {
  printer_.startListEntry();
  toCpu_.setValue(false);
  printer_.addAttributes("", 1, toCpu_.getArg());
  interface_.setValue(via.intfId().stringValue());
  printer_.addAttributes(" on %s", 1, interface_.getArg());
  printer_.endListEntry();
}

template <class Family>
void HostTable<Family>::printRow(const CachedFec& fec, std::uint16_t at) {
  const Lumo::String& nexthopAddr = fec.nexthopAddr(at);
  const Lumo::String& interface = fec.interface(at);
  if (!nexthopAddr.empty()) {
    nexthopAddr_.setValue(nexthopAddr.c_str());
    printer_.addAttributes(" via %s", 1, nexthopAddr_.getArg());
  }
  const bool toCpu = fec.hostToCpu(at);
  toCpu_.setValue(toCpu);
  toCpu ? printer_.addAttributes(" to cpu", 1, toCpu_.getArg())
        : printer_.addAttributes("", 1, toCpu_.getArg());
  if (!interface.empty()) {
    interface_.setValue(interface.c_str());
    printer_.addAttributes(" on %s", 1, interface_.getArg());
  }
}

} // namespace

template <class Family>
void formatHostRouteOutput(Sorter<Family>& sorter, std::uint32_t, std::uint32_t,
                           scrivo::Printer& printer) {
  HostTable<Family>(sorter, printer).print();
}

template void formatHostRouteOutput(Sorter<Ip4Family>&, std::uint32_t, std::uint32_t,
                                    scrivo::Printer&);
template void formatHostRouteOutput(Sorter<Ip6Family>&, std::uint32_t, std::uint32_t,
                                    scrivo::Printer&);

} // namespace Rova
