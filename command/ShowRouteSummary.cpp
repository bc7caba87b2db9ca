#include "command/ShowRouteSummary.h"

#include "command/Notes.h"
#include "rova/CliSupport.h"
#include "scrivo/Printer.h"

#include <unistd.h>

namespace command {

namespace {

/// A counter of the library as it shows.
struct Row {
  const char* key;   ///< the library's
  const char* label; ///< in text, behind its indent
};

constexpr const char* emptyKeyInModel = "other";

/// In the order of the display. A kind below a sum or another kind is part of it; those of OSPF and
/// BGP occur in IPv4 alone, where IPv6 counts all routes of the protocol in the one row.
constexpr Row rows[] = {
    {"connected", "  connected"},
    {"attached", "  attached"},
    {"static", "  static"},
    {"staticPersistent", "    persistent"},
    {"staticNonPersistent", "    non-persistent"},
    {"dynamicPolicy", "  dynamic policy"},
    {"ospfTotal", "  OSPF"},
    {"ospfIntraArea", "    intra-area"},
    {"ospfInterArea", "    inter-area"},
    {"ospfExternal1", "    external type 1"},
    {"ospfExternal2", "    external type 2"},
    {"nssaExternal1", "    NSSA type 1"},
    {"nssaExternal2", "    NSSA type 2"},
    {"ospfv3Total", "  OSPFv3"},
    {"bgpTotal", "  BGP"},
    {"bgpInternal", "    internal"},
    {"bgpExternal", "    external"},
    {"isisTotal", "  IS-IS"},
    {"isisLevel1", "    level 1"},
    {"isisLevel2", "    level 2"},
    {"rip", "  RIP"},
    {"aggregate", "  aggregate"},
    {"staticNexthopGroup", "  nexthop group"},
    {"DhcpDefaultRoute", "  DHCP"}, // IPv4
    {"dhcp", "  DHCP"},             // IPv6
    {"vcs", "  VCS"},
    {"internal", "  internal"},
    {"", "  other"},
};

/// Prints one count: a line of text, a member of the open dictionary.
template <class Key>
void printCount(scrivo::Printer& printer, const Key& key, const std::string& label,
                std::uint32_t count) {
  if (count == 0) return;
  scrivo::UintAttrInfo value(printer, "");
  value.setValue(count);
  printer.startSimpleDictEntry(key);
  printer.addFrills("%-20s", label);
  printer.addAttributes("%7u\n", 1, value.getArg());
  printer.endSimpleDictEntry();
}

template <class Family>
void printKinds(scrivo::Printer& printer, const Rova::Summary<Family>& summary) {
  scrivo::StringAttrInfo key(printer, "kind", true);
  printer.addFrills("Routes by kind\n");
  printer.startDict("routesByKind");
  for (const Row& row : rows) {
    key.setValue(*row.key ? row.key : emptyKeyInModel);
    printCount(printer, key, row.label, summary.routeCountByType(row.key));
  }
  printer.endDict();
}

template <class Family>
void printMasks(scrivo::Printer& printer, const Rova::Summary<Family>& summary) {
  scrivo::UintAttrInfo key(printer, "maskLength", true);
  printer.addFrills("Routes by mask length\n");
  printer.startDict("routesByMaskLength");
  for (const auto& [length, count] : summary.routeCountByMaskMap()) {
    key.setValue(length);
    printCount(printer, key, "  /" + std::to_string(length), count);
  }
  printer.endDict();
}

template <class Family>
void printSummary(scrivo::Printer& printer, const Rova::Summary<Family>& summary) {
  scrivo::IntAttrInfo total(printer, "totalRoutes");
  total.setValue(summary.totalNumRoutes());
  printer.addFrills("\nVRF: %s\n\n", scrivo::asValue(summary.vrfName().stringValue()));
  printKinds(printer, summary);
  printMasks(printer, summary);
  printer.addAttributes("Total%22d\n", 1, total.getArg());
}

/// The counts of one VRF, loaded.
template <class Family>
auto makeSummary(const state::DeviceState& device, const state::VrfState& vrf) {
  Rova::Summary<Family> summary(vrf.*Family::routingConfig, vrf.*Family::routingStatus,
                                device.arpVanta, device.vrfIdMap, vrf.name);
  summary.loadInternalStructures();
  summary.loadAttachedRoutes();
  return summary;
}

} // namespace

template <class Family>
void showRouteSummary(const state::DeviceState& device,
                      const std::vector<const state::VrfState*>& vrfs, const sources::Notes& notes,
                      unsigned format) {
  scrivo::Printer printer(STDOUT_FILENO, format);
  scrivo::StringAttrInfo vrfName(printer, "vrf");
  printer.start();
  printNotes(printer, notes);
  printer.startDict("vrfs");
  for (const auto* vrf : vrfs) {
    vrfName.setValue(vrf->name.stringValue());
    printer.startDictEntry(vrfName);
    printSummary(printer, makeSummary<Family>(device, *vrf));
    printer.endDictEntry();
  }
  printer.endDict();
  printer.end();
  printer.close();
}

template void showRouteSummary<Rova::Ip4Family>(const state::DeviceState&,
                                                const std::vector<const state::VrfState*>&,
                                                const sources::Notes&, unsigned);
template void showRouteSummary<Rova::Ip6Family>(const state::DeviceState&,
                                                const std::vector<const state::VrfState*>&,
                                                const sources::Notes&, unsigned);

} // namespace command
