#include "rova/core/Flush.h"
#include "rova/core/Interrupted.h"
#include "rova/route/DisplayAttrInfo.h"
#include "rova/staticroute/StaticRouteLine.h"
#include "rova/staticroute/StaticRoutesRibCommon.h"
#include "scrivo/Printer.h"

namespace Rova {

LUMO_DEFINE_TYPE(StaticRoutesRibCommon);

namespace {

/// The columns of the code, below which further lines are indented.
constexpr int codeColumns = 5;

/// One dump.
class RibDump {
 public:
  RibDump(const StaticRoutesRibCommon& common, const RovaConsts& consts, scrivo::Printer& printer)
      : common_(common), consts_(consts), printer_(printer) {}

  void print() {
    printer_.startDict("routes");
    printer_.addFrills("%s\n", common_.legend());
    for (const auto& [key, route] : common_.sortedRouteMap()) {
      if (isShown(*route)) printRoute(*route);
    }
    if (hasPrefix_) {
      printer_.addFrills("\n");
      endPrefix();
    }
    printer_.endDict();
  }

 private:
  bool isShown(const Routing::Route& route) const {
    return route.dynamic == common_.dynamic() && (common_.tag() == 0 || route.tag == common_.tag());
  }
  void startPrefix(const Kesh::IpGenPrefix& prefix);
  void endPrefix();
  void printRoute(const Routing::Route& route);
  void printHead(const Routing::Route& route);
  void printGroup(const Routing::Route& route);
  void printDrop(const Routing::Route& route);
  void printVias(const Routing::Route& route);
  void printVia(const Routing::Route& route, const Routing::Via& via);
  void printInterface(const Kesh::IntfId& intfId, bool behindHop);
  void printName(const Routing::Route& route, const Routing::Via& via);

  const StaticRoutesRibCommon& common_;
  const RovaConsts& consts_;
  scrivo::Printer& printer_;
  bool hasPrefix_ = false;
  Kesh::IpGenPrefix prefix_;
  Lumo::String prefixText_;
  scrivo::StringAttrInfo prefixKey_{printer_, "prefix"};
  scrivo::StringAttrInfo preferenceKey_{printer_, "preference"};
  scrivo::RibRouteTypeAttrInfo routeType_{printer_, "routeType"};
  scrivo::IntAttrInfo preference_{printer_, "preference"};
  scrivo::UintAttrInfo tag_{printer_, "tag"};
  scrivo::StringAttrInfo nexthopGroupName_{printer_, "nexthopGroupName"};
  scrivo::StringAttrInfo dropNextHopName_{printer_, "dropNextHopName"};
  scrivo::StringAttrInfo nexthopAddr_{printer_, "nexthopAddr"};
  scrivo::IntAttrInfo mplsLabel_{printer_, "mplsLabel"};
  scrivo::StringAttrInfo interface_{printer_, "interface"};
  scrivo::StringAttrInfo interfaceDescription_{printer_, "interfaceDescription"};
  scrivo::StringAttrInfo nexthopName_{printer_, "nexthopName"};
};

void RibDump::startPrefix(const Kesh::IpGenPrefix& prefix) {
  if (hasPrefix_) endPrefix();
  hasPrefix_ = true;
  prefix_ = prefix;
  prefixText_ = prefix.stringValue();
  prefixKey_.setValue(prefixText_);
  printer_.startDictEntry(prefixKey_);
  printer_.startDict("preference");
}

void RibDump::endPrefix() {
  printer_.endDict();
  printer_.endDictEntry();
}

void RibDump::printRoute(const Routing::Route& route) {
  if (!hasPrefix_ || prefix_ != route.key.prefix) startPrefix(route.key.prefix);
  preferenceKey_.setValue(Lumo::String(std::to_string(route.key.preference)));
  printer_.startDictEntry(preferenceKey_);
  printHead(route);
  if (route.routeType == Routing::RouteType::nexthopGroup) printGroup(route);
  if (route.routeType == Routing::RouteType::drop) printDrop(route);
  printer_.startList("vias");
  if (route.routeType == Routing::RouteType::forward) printVias(route);
  printer_.endList();
  printer_.addFrills("\n");
  printer_.endDictEntry();
}

void RibDump::printHead(const Routing::Route& route) {
  routeType_.setValue(route.routeType);
  printer_.addAttributes("%-5s", 1, routeType_.getArg());
  printer_.addFrills("%s", scrivo::asValue(prefixText_, prefixKey_.colour()));
  preference_.setValue(route.key.preference);
  printer_.addAttributes(" [%d]", 1, preference_.getArg());
  if (route.tag == consts_.defaultStaticRouteTag()) return;
  tag_.setValue(route.tag);
  printer_.addAttributes(" tag %u", 1, tag_.getArg());
}

void RibDump::printGroup(const Routing::Route& route) {
  nexthopGroupName_.setValue(route.nexthopGroupName);
  printer_.addFrills("\n%*s", codeColumns, " ");
  printer_.addAttributes(" nexthop-group %s", 1, nexthopGroupName_.getArg());
}

void RibDump::printDrop(const Routing::Route& route) {
  printer_.addFrills("\n%*s Null0", codeColumns, " ");
  if (route.dropNextHopName == consts_.defaultStaticRouteName()) return;
  dropNextHopName_.setValue(route.dropNextHopName);
  printer_.addAttributes(", name: %s", 1, dropNextHopName_.getArg());
}

void RibDump::printVias(const Routing::Route& route) {
  Lumo::RbTreeMap<Routing::Via, bool> sorted;
  route.via.forEach([&](const Routing::Via& via, bool) { sorted.insertOrAssign(via, true); });
  for (const auto& [via, present] : sorted) {
    flushIfFull(printer_);
    printer_.startListEntry();
    printVia(route, via);
    printer_.endListEntry();
  }
}

void RibDump::printVia(const Routing::Route& route, const Routing::Via& via) {
  printer_.addFrills("\n%*s", codeColumns, " ");
  if (hasHop(via)) {
    nexthopAddr_.setValue(via.hop.stringValue());
    printer_.addAttributes(" via %s", 1, nexthopAddr_.getArg());
    if (!via.mplsLabel.isNull()) {
      mplsLabel_.setValue(static_cast<int>(via.mplsLabel.value()));
      printer_.addAttributes(", label %u", 1, mplsLabel_.getArg());
    }
  }
  if (via.intfId) printInterface(via.intfId, hasHop(via));
  printName(route, via);
}

void RibDump::printInterface(const Kesh::IntfId& intfId, bool behindHop) {
  interface_.setValue(intfId.stringValue());
  printer_.addFrills("%s", behindHop ? ", " : " ");
  printer_.addAttributes("%s", 1, interface_.getArg());
  const auto config = common_.allIntfConfig()->intfConfig(intfId);
  if (!config || config->description.empty()) return;
  interfaceDescription_.setValue(config->description);
  printer_.addAttributes(" (%s)", 1, interfaceDescription_.getArg());
}

void RibDump::printName(const Routing::Route& route, const Routing::Via& via) {
  const auto* const name = route.viaNextHopName.find(via);
  if (!name || name->empty() || *name == consts_.defaultStaticRouteName()) return;
  nexthopName_.setValue(*name);
  printer_.addAttributes(", name: %s", 1, nexthopName_.getArg());
}

} // namespace

Lumo::String StaticRoutesRibCommon::legend() const {
  return "Codes: F - forward, D - drop, NG - nexthop group\n";
}

void StaticRoutesRibCommon::dump(RovaConsts rovaConsts) {
  routeInputConf_.forEach([this](const Lumo::Ptr<Routing::RouteInput>& input, bool) {
    input->route.forEach([this](const Routing::RouteKey&, const Lumo::Ptr<Routing::Route>& route) {
      sortedRouteIs(route);
    });
  });
  try {
    scrivo::Printer printer(static_cast<int>(fd_), fmt_, true, false, true, 0);
    RibDump(*this, rovaConsts, printer).print();
    printer.close();
  } catch (const scrivo::sigintException& interrupt) {
    reportInterrupt(interrupt);
  }
}

} // namespace Rova
