#include "rova/route/RouteLine.h"

#include "lumo/Assert.h"
#include "rova/core/DirectlyConnected.h"
#include "scrivo/Shown.h"

#include <cstring>

namespace Rova {

namespace {

/// Columns of the head: a mark, the code with its blanks, a mark.
constexpr unsigned headColumns = 10;
constexpr unsigned codeColumns = 8;
constexpr char blanks[codeColumns + 1] = "        ";
constexpr unsigned leakMarkColumns = 2;
/// Where further policies stand, ahead of their " via", and how far behind it their segment lists.
constexpr std::size_t policyIndent4 = 27;
constexpr std::size_t policyIndent6 = 6;
constexpr std::size_t policyViaStep = 4;
/// Where the vias of the IPv6 form stand.
constexpr const char* ownLineVia = "\n           via";
constexpr unsigned ownLineColumns = 11;
/// How far the vias of a tunnel stand behind their row.
constexpr unsigned tunnelViaStep = 3;

unsigned digits(std::uint32_t number) {
  unsigned count = 1;
  while (number >= 10) number /= 10, ++count;
  return count;
}

} // namespace

/// The texts and tables of one row; a text that the row lacks is empty.
struct RouteLinePrinter::Row {
  std::uint16_t number;
  bool isFirst;
  const CachedNhgVia* group;
  const Tunnel::CliSupport::CachedTunVia* tunnel;
  const Tunnel::TunnelTable::EvpnVxlanTunnelEntry* evpn;
  Lumo::String nexthopAddr;
  Lumo::String interface;
  Lumo::String interfaceDescription;
};

struct RouteLinePrinter::Subject {
  const RouteLine& line;
  LineForm form;
  std::uint32_t type;
  const char* code;
  std::string_view prefixText;
  const char* nexthopAddr;
  const char* interface;
  const char* interfaceDescription;
  bool hasEvpn;

  bool hasRows() const {
    if (!line.fec) return false;
    return line.isNexthopGroup ? line.fec->nhgVias() != 0 : line.fec->numEntries() != 0;
  }
  bool hasTexts() const { return *nexthopAddr || *interface; }
  bool hasPolicies() const { return line.policies && line.policies->policyInfos() != 0; }
  /// Whether nothing is known of where the route leads.
  bool leadsNowhere() const { return !hasTexts() && !hasEvpn && !hasPolicies(); }
  /// The columns that the note on a leaked route takes.
  std::size_t noteColumns() const {
    return line.routeLeaked ? sizeof "(source VRF ) " - 1 + scrivo::shown(line.srcVrfName).size()
                            : 0;
  }
  /// The columns in front of a further via in the IPv4 form.
  unsigned padding() const {
    return static_cast<unsigned>(prefixText.size() + noteColumns()) + sizeof " [/] " - 1 +
           digits(static_cast<std::uint32_t>(line.preference)) + digits(line.metric) + headColumns;
  }
};

RouteLinePrinter::RouteLinePrinter(scrivo::Printer& printer, LineOptions options)
    : printer_(printer),
      options_(options),
      prefix_(printer, "prefix"),
      routeType_(printer, "routeType"),
      routeAction_(printer, "routeAction"),
      hardwareProgrammed_(printer, "hardwareProgrammed"),
      kernelProgrammed_(printer, "kernelProgrammed"),
      routeLeaked_(printer, "routeLeaked"),
      preference_(printer, "preference"),
      metric_(printer, "metric"),
      directlyConnected_(printer, "directlyConnected"),
      srcVrf_(printer, "srcVrf"),
      nexthopAddr_(printer, "nexthopAddr"),
      interface_(printer, "interface"),
      interfaceDescription_(printer, "interfaceDescription"),
      viaType_(printer, "viaType"),
      viaWeight_(printer, "viaWeight"),
      vtepAddr_(printer, "vtepAddr"),
      vni_(printer, "vni"),
      routerMac_(printer, "routerMac"),
      groupName_(printer, "groupName"),
      groupId_(printer, "groupId") {}

bool RouteLinePrinter::print(const RouteLine& line, std::uint32_t type, const char* code,
                             bool hasV6Nexthop) {
  char text[Kesh::maxAddressText + 1];
  const auto length = line.prefix.writeText(text);
  text[length] = '\0';
  prefix_.setValue(static_cast<const char*>(text));
  if (line.shared && !line.shared->isKnown(hasV6Nexthop)) line.shared->forget();
  const auto* const via = line.via;
  const bool hasInterface = via && !via->interface.empty();
  Subject route{line,
                line.shared ? line.shared->form : LineForm::unknown,
                type,
                code,
                {text, length},
                via ? via->nexthopAddr.c_str() : "",
                hasInterface ? via->interface.c_str() : line.ownInterface,
                hasInterface ? via->interfaceDescription.c_str() : line.ownInterfaceDescription,
                via && via->evpnEntry.isSet()};
  const bool isFirst = route.form == LineForm::unknown;
  if (isFirst) route.form = formOf(route);
  if (route.form != LineForm::hidden) {
    hasV6Nexthop ? printFormatRoute6(route) : printFormatRoute4(route);
  }
  if (isFirst && line.shared) line.shared->isPrinted(route.form, hasV6Nexthop, line.prefix);
  return route.form != LineForm::hidden;
}

LineForm RouteLinePrinter::formOf(const Subject& route) {
  if (!hasSomethingToShow(route)) return LineForm::hidden;
  if (!route.hasEvpn && isConnected(route, route.nexthopAddr)) return LineForm::connected;
  if (route.hasRows()) return LineForm::rows;
  return route.leadsNowhere() ? LineForm::nowhere : LineForm::vias;
}

bool RouteLinePrinter::hasSomethingToShow(const Subject& route) {
  const bool nexthopAlone = *route.nexthopAddr && !*route.interface;
  return !nexthopAlone || options_.detail || route.hasEvpn || route.line.isNexthopGroup ||
         route.hasRows() || isConnected(route, route.nexthopAddr) || route.line.policies;
}

/// Whether the next hop is the route itself. What the lines of a FEC share is printed under the
/// answer "no", and notes what it asked about.
bool RouteLinePrinter::isConnected(const Subject& route, std::string_view nexthop) {
  if (route.line.shared) route.line.shared->askedHops.enter(nexthop);
  return isDirectlyConnected(route.line.prefix, nexthop);
}

/// Prints what the lines of a FEC share, or in its place what this line has of its own.
template <class Print>
void RouteLinePrinter::share(const Subject& route, Print printVias) {
  route.line.shared ? printer_.addStretch(route.line.shared->output, printVias) : printVias();
}

/// Prints what lines of one key print alike, whatever their FECs. Of very many keys the later ones
/// are printed each time, for what is kept of them would not be read again from near memory.
template <class Print>
void RouteLinePrinter::shareWithAll(KeyedStretches& known, std::uint64_t key, Print print) {
  constexpr std::size_t mostKept = 4096;
  scrivo::Stretch* stretch = known.find(key);
  if (!stretch && known.size() < mostKept) stretch = &known.insertOrAssign(key, {});
  stretch ? printer_.addStretch(*stretch, print) : print();
}

void RouteLinePrinter::printFormatRoute4(const Subject& route) {
  printHead(route, route.form);
  switch (route.form) {
  case LineForm::connected:
    printer_.addFrills(" is directly connected, ");
    share(route, [&] { printConnectedVias4(route); });
    addPreference();
    break;
  case LineForm::rows:
    printRows4(route);
    break;
  case LineForm::nowhere:
    printer_.addFrills(" is directly connected, Null0");
    addPreference();
    printer_.addFrills("\n");
    printEmptyVias();
    break;
  default:
    printVia4(route);
  }
  printer_.endDictEntry();
}

void RouteLinePrinter::printFormatRoute6(const Subject& route) {
  printHead(route, LineForm::unknown);
  printPreference(route);
  share(route, [&] {
    addKind(route.form);
    switch (route.form) {
    case LineForm::connected:
      return printConnectedVias6(route);
    case LineForm::rows:
      return printRows6(route);
    case LineForm::nowhere:
      printer_.addFrills("\n           Null0\n");
      return printEmptyVias();
    default:
      printer_.addFrills(ownLineVia);
      if (!route.hasPolicies()) return printDirectVia(route);
      printPolicies(route, policyIndent6, policyIndent6 + policyViaStep);
    }
  });
  printer_.endDictEntry();
}

/// The marks, the code and the prefix; in the model the kind too, if the form has it here.
void RouteLinePrinter::printHead(const Subject& route, LineForm kind) {
  const RouteLine& line = route.line;
  preference_.setValue(line.preference);
  metric_.setValue(line.metric);
  printer_.startDictEntry(prefix_);
  const std::uint32_t key = route.type << 6 | static_cast<std::uint32_t>(kind) << 3 |
                            line.hardwareProgrammed << 2 | line.kernelProgrammed << 1 |
                            line.routeLeaked;
  shareWithAll(marks_, key, [&] {
    printMarks(route);
    if (kind != LineForm::unknown) addKind(kind);
  });
  printer_.addFrills("%s", scrivo::asValue(route.prefixText, prefix_.colour()));
}

void RouteLinePrinter::printMarks(const Subject& route) {
  hardwareProgrammed_.setValue(route.line.hardwareProgrammed);
  kernelProgrammed_.setValue(route.line.kernelProgrammed);
  routeLeaked_.setValue(route.line.routeLeaked);
  printer_.addAttributes("%s%s%s%s", 4, hardwareProgrammed_.getArg(), routeType_.getArg(),
                         routeLeaked_.getArg(), kernelProgrammed_.getArg());
  const auto columns =
      codeColumns - (route.line.routeLeaked ? leakMarkColumns : 0) - std::strlen(route.code);
  printer_.addFrills("%s", std::string_view(blanks, columns));
}

void RouteLinePrinter::printSourceVrf(const Subject& route) {
  srcVrf_.setValue(route.line.srcVrfName);
  printer_.addFrills(" (source VRF ");
  printer_.addAttributes("%s", 1, srcVrf_.getArg());
  printer_.addFrills(")");
}

/// " [PREFERENCE/METRIC]" and the note.
void RouteLinePrinter::printPreference(const Subject& route) {
  const auto key = std::uint64_t{static_cast<std::uint32_t>(route.line.preference)} << 32;
  shareWithAll(numbers_, key | route.line.metric, [&] {
    printer_.addAttributes(" [%d/%u]", 2, preference_.getArg(), metric_.getArg());
  });
  if (route.line.routeLeaked) printSourceVrf(route);
}

/// Where a line leads, for the model.
void RouteLinePrinter::addKind(LineForm form) {
  directlyConnected_.setValue(form == LineForm::connected || form == LineForm::nowhere);
  routeAction_.setValue(form == LineForm::nowhere ? "drop" : "forward");
  printer_.addAttributes("", 2, directlyConnected_.getArg(), routeAction_.getArg());
}

/// For the model alone, where the line has no room for them.
void RouteLinePrinter::addPreference() {
  printer_.addAttributes("", 2, preference_.getArg(), metric_.getArg());
}

void RouteLinePrinter::printEmptyVias() {
  printer_.startList("vias");
  printer_.endList();
}

void RouteLinePrinter::printConnectedVias4(const Subject& route) {
  printer_.startList("vias");
  if (*route.interface) {
    interface_.setValue(route.interface);
    printer_.startListEntry();
    printer_.addAttributes("%s", 1, interface_.getArg());
    if (*route.interfaceDescription) {
      interfaceDescription_.setValue(route.interfaceDescription);
      printer_.addAttributes(" %s", 1, interfaceDescription_.getArg());
    }
    printer_.endListEntry();
  } else {
    printer_.addFrills("<Internal>");
  }
  printer_.endList();
  printer_.addFrills("\n");
}

void RouteLinePrinter::printConnectedVias6(const Subject& route) {
  printer_.startList("vias");
  if (*route.interface) {
    interface_.setValue(route.interface);
    nexthopAddr_.setValue(route.nexthopAddr);
    printer_.startListEntry();
    printer_.addFrills(ownLineVia);
    const std::string_view hop = route.nexthopAddr;
    if (!hop.empty() && hop != "::") printer_.addAttributes(" %s", 1, nexthopAddr_.getArg());
    printer_.addAttributes(" %s, directly connected", 1, interface_.getArg());
    if (*route.interfaceDescription) {
      interfaceDescription_.setValue(route.interfaceDescription);
      printer_.addAttributes(" %s", 1, interfaceDescription_.getArg());
    }
    printer_.endListEntry();
  } else {
    printer_.addFrills("\n           directly connected, <Internal>");
  }
  printer_.endList();
  printer_.addFrills("\n");
}

void RouteLinePrinter::printRows4(const Subject& route) {
  printPreference(route);
  printer_.marginIs(route.padding());
  share(route, [&] {
    printer_.addFrills(" ");
    printRowList4(route);
  });
}

void RouteLinePrinter::printRowList4(const Subject& route) {
  if (options_.degradeNhgModel && route.line.isNexthopGroup) {
    printer_.addFrills(" via");
    return printDegradedGroup(route);
  }
  printer_.startList("vias");
  forEachRow(route, [&](const Row& row) {
    if (!row.isFirst) printer_.addFrills("\n");
    if (!row.isFirst) printer_.addIndent();
    printRowStart4(route, row);
    printRowLabels(route, row);
    if (row.evpn) printEvpn(*row.evpn);
    printRowEnd(route, row);
    if (row.tunnel) printTunnelVias(route, *row.tunnel);
  });
  printer_.endList();
  printer_.addFrills("\n");
}

void RouteLinePrinter::printRows6(const Subject& route) {
  if (options_.degradeNhgModel && route.line.isNexthopGroup) {
    printer_.addFrills(ownLineVia);
    return printDegradedGroup(route);
  }
  printer_.marginIs(ownLineColumns);
  printer_.startList("vias");
  forEachRow(route, [&](const Row& row) {
    printer_.addFrills(ownLineVia);
    printRowStart6(row);
    printRowLabels(route, row);
    printRowEnd(route, row);
    if (row.tunnel) printTunnelVias(route, *row.tunnel);
  });
  printer_.endList();
  printer_.addFrills("\n");
}

/// Calls `printRow` for each row that exists, in order, inside an entry of the list.
template <class PrintRow>
void RouteLinePrinter::forEachRow(const Subject& route, PrintRow printRow) {
  const CachedFec& fec = *route.line.fec;
  const std::size_t rows = route.line.isNexthopGroup ? fec.nhgVias() : fec.viaTypeStrings();
  std::size_t shown = 0;
  for (std::uint32_t at = 0; shown < rows && at <= 0xffff; ++at) {
    const auto number = static_cast<std::uint16_t>(at);
    const auto* const group = fec.nhgViaMap().find(number);
    const bool exists = route.line.isNexthopGroup ? group != nullptr
                                                  : fec.viaTypeStringMap().find(number) != nullptr;
    if (!exists) continue;
    Row row{
        number, shown++ == 0, route.line.isNexthopGroup ? group : nullptr, nullptr, nullptr, {}, {},
        {}};
    if (!route.line.isNexthopGroup) {
      row.tunnel = fec.tunViaMap().find(number);
      const auto* const evpn = fec.viaEvpnEntryMap().find(number);
      row.evpn = evpn && evpn->isSet() ? evpn : nullptr;
      row.nexthopAddr = fec.nexthopAddr(number);
      row.interface = fec.interface(number);
      row.interfaceDescription = fec.interfaceDescription(number);
    }
    nexthopAddr_.setValue(row.nexthopAddr.c_str());
    interface_.setValue(row.interface.c_str());
    interfaceDescription_.setValue(row.interfaceDescription.c_str());
    printer_.startListEntry();
    printRow(row);
    printer_.endListEntry();
  }
}

void RouteLinePrinter::printRowStart4(const Subject& route, const Row& row) {
  if (!row.evpn && isConnected(route, row.nexthopAddr)) {
    printer_.addFrills("is directly connected");
  } else {
    printer_.addFrills("via");
    if (row.group) {
      printGroup(*row.group);
    } else if (row.tunnel) {
      printer_.addFrills(" ");
      printTunnelInfo(printer_, *row.tunnel, true);
    } else if (!row.nexthopAddr.empty()) {
      printer_.addAttributes(" %s", 1, nexthopAddr_.getArg());
    }
  }
  if (!row.interface.empty()) printer_.addAttributes(", %s", 1, interface_.getArg());
}

void RouteLinePrinter::printRowStart6(const Row& row) {
  if (row.group) return printGroup(*row.group);
  if (row.tunnel) {
    printer_.addFrills(" ");
    return printTunnelInfo(printer_, *row.tunnel, true);
  }
  const bool hasNexthop = !row.nexthopAddr.empty();
  if (row.evpn) {
    if (hasNexthop) printer_.addAttributes(" %s", 1, nexthopAddr_.getArg());
    return printEvpn(*row.evpn);
  }
  if (hasNexthop) {
    printer_.addAttributes(" %s", 1, nexthopAddr_.getArg());
    if (!row.interface.empty()) printer_.addAttributes(", %s", 1, interface_.getArg());
    return;
  }
  directlyConnected_.setValue(true);
  printer_.addAttributes("", 1, directlyConnected_.getArg());
  if (!row.interface.empty()) printer_.addAttributes(" %s", 1, interface_.getArg());
  printer_.addFrills(", directly connected");
}

void RouteLinePrinter::printRowLabels(const Subject& route, const Row& row) {
  const CachedFec& fec = *route.line.fec;
  if (!row.interfaceDescription.empty()) {
    printer_.addAttributes(" %s", 1, interfaceDescription_.getArg());
  }
  if (const auto* const label = fec.labelMap().find(row.number)) {
    Tunnel::CliSupport::maybeAddLabelStackToOutput(printer_, *label, fec.viaLabelStack(row.number),
                                                   true, "labelStack");
  }
  if (const auto* const encap = fec.staticIntfTunInfoMap().find(row.number)) {
    Tunnel::CliSupport::maybePrintTunnelEncapInfo(printer_, *encap, true);
  }
}

void RouteLinePrinter::printRowEnd(const Subject& route, const Row& row) {
  const CachedFec& fec = *route.line.fec;
  if (const auto& weight = fec.viaWeight(row.number); !weight.empty()) {
    viaWeight_.setValue(Lumo::String(weight.str() + "/" + std::to_string(fec.weight())));
    printer_.addAttributes(", weight %s", 1, viaWeight_.getArg());
  }
  if (!fec.hasBackup()) return;
  const auto& type = fec.viaTypeString(row.number);
  viaType_.setValue(type.c_str());
  printer_.addAttributes("", 1, viaType_.getArg());
  if (type == "backup") printer_.addFrills(", %s", type);
}

void RouteLinePrinter::printGroup(const CachedNhgVia& group) {
  groupName_.setValue(group.nhgName().c_str());
  groupId_.setValue(group.nhgId());
  printer_.startSubmodel("nexthopGroup");
  printer_.addAttributes(" %s, Nexthop Group ID %d", 2, groupName_.getArg(), groupId_.getArg());
  printer_.endSubmodel();
}

/// The older form: the first group alone, beside an empty list of vias.
void RouteLinePrinter::printDegradedGroup(const Subject& route) {
  std::uint16_t row = 0;
  while (!route.line.fec->nhgViaMap().find(row)) ++row;
  printGroup(route.line.fec->nhgVia(row));
  printer_.addFrills("\n");
  printEmptyVias();
}

void RouteLinePrinter::printVia4(const Subject& route) {
  printPreference(route);
  share(route, [&] {
    printer_.addFrills(" via");
    if (!route.hasPolicies()) return printDirectVia(route);
    const auto indent = route.noteColumns() + policyIndent4;
    printPolicies(route, indent, indent + policyViaStep);
  });
}

void RouteLinePrinter::printPolicies(const Subject& route, std::size_t policyIndent,
                                     std::size_t viaIndent) {
  printSrTePolicySetModel(printer_, *route.line.policies, static_cast<std::uint32_t>(policyIndent),
                          static_cast<std::uint32_t>(viaIndent));
  printEmptyVias();
}

void RouteLinePrinter::printDirectVia(const Subject& route) {
  LUMO_ASSERT(options_.detail || *route.interface || route.hasEvpn, "false");
  const DirectViaText& via = *route.line.via;
  printer_.startList("vias");
  printer_.startListEntry();
  if (*route.nexthopAddr || !route.hasEvpn) {
    nexthopAddr_.setValue(route.nexthopAddr);
    printer_.addAttributes(" %s", 1, nexthopAddr_.getArg());
  }
  if (*route.interface) {
    interface_.setValue(route.interface);
    printer_.addAttributes(", %s", 1, interface_.getArg());
  }
  if (*route.interfaceDescription) {
    interfaceDescription_.setValue(route.interfaceDescription);
    printer_.addAttributes(" %s", 1, interfaceDescription_.getArg());
  }
  if (!via.label.isNull()) {
    Tunnel::CliSupport::maybeAddLabelStackToOutput(printer_, Kesh::MplsLabel(via.label.value()), {},
                                                   true, "labelStack");
  }
  Tunnel::CliSupport::maybePrintTunnelEncapInfo(printer_, via.staticIntfTunInfo, true);
  if (route.hasEvpn) printEvpn(via.evpnEntry);
  printer_.endListEntry();
  printer_.endList();
  printer_.addFrills("\n");
}

void RouteLinePrinter::printEvpn(const Tunnel::TunnelTable::EvpnVxlanTunnelEntry& entry) {
  vtepAddr_.setValue(entry.vtepAddr.stringValue());
  vni_.setValue(entry.vni);
  routerMac_.setValue(entry.routerMac.stringValue());
  printer_.addAttributes(" VTEP %s", 1, vtepAddr_.getArg());
  printer_.addAttributes(" VNI %u", 1, vni_.getArg());
  printer_.addAttributes(" router-mac %s", 1, routerMac_.getArg());
}

void RouteLinePrinter::printTunnelVias(const Subject& route,
                                       const Tunnel::CliSupport::CachedTunVia& tunnel) {
  printer_.startList("tunnelVias");
  for (std::uint32_t at = 0; at < tunnel.numVias; ++at) {
    const auto index = static_cast<Tunnel::CliSupport::TunnelViaIndex>(at);
    const auto text = [index](const auto& table) {
      const auto* const found = table.find(index);
      return found ? found->c_str() : "";
    };
    const auto* const labels = tunnel.viaLabelStack.find(index);
    const auto nexthopAddr = text(tunnel.nexthopAddr);
    printer_.startListEntry();
    printer_.addFrills("\n");
    printer_.addIndent(tunnelViaStep);
    Tunnel::CliSupport::printTunnelViaInfo(
        printer_, true,
        {nexthopAddr, text(tunnel.interface), text(tunnel.interfaceDescription),
         labels ? *labels : Kesh::MplsLabelOperation(), isConnected(route, nexthopAddr)});
    printer_.endListEntry();
  }
  printer_.endList();
}

} // namespace Rova
