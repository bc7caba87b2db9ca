#include "rova/fec/PolicyInfo.h"

namespace Rova {

LUMO_DEFINE_TYPE(PolicyInfo);
LUMO_DEFINE_TYPE(PolicyInfoSet);

bool operator==(const PolicyInfo& a, const PolicyInfo& b) {
  return a.index_ == b.index_ && a.policyKey_ == b.policyKey_ && a.sortedVia_ == b.sortedVia_ &&
         a.viaLabel_ == b.viaLabel_ && a.tunnelLabelStack_ == b.tunnelLabelStack_ &&
         a.weight_ == b.weight_;
}

bool operator==(const PolicyInfoSet& a, const PolicyInfoSet& b) {
  return a.policyInfo_ == b.policyInfo_;
}

namespace {

/// The columns by which the vias of a segment list stand behind its own.
constexpr int viaStep = 3;

/// One segment list, in text alone.
void printSegmentList(scrivo::Printer& printer, const PolicyInfo& policy,
                      Tunnel::TunnelTable::TunnelId tunnel, const SortedTunViaSet& vias,
                      int viaIndent) {
  printer.addFrills("%*cvia ", viaIndent, ' ');
  printTunnelInfoCli(printer, Tunnel::CliSupport::getCachedTunnelInfo(tunnel, {}));
  const auto& label = policy.viaLabel(tunnel);
  if (!(label == Kesh::MplsLabelAndAction())) {
    printer.addFrills(", label %s", Kesh::labelText(label.label()));
  }
  printer.addFrills(", weight %u\n", policy.weight(tunnel).value());
  for (const auto& [via, present] : vias.viaMap()) {
    const auto nexthopAddr = via.nexthop.stringValue();
    const auto interface = via.intfId.stringValue();
    printer.addFrills("%*c", viaIndent + viaStep, ' ');
    Tunnel::CliSupport::printTunnelViaInfo(
        printer, false,
        {nexthopAddr.c_str(), interface.c_str(), "", policy.tunnelLabelStack(tunnel)});
    printer.addFrills("\n");
  }
}

void printSegmentLists(scrivo::Printer& printer, const PolicyInfo& policy, int viaIndent) {
  if (printer.format() != scrivo::textFormat) return;
  policy.sortedViaMap().forEach(
      [&](Tunnel::TunnelTable::TunnelId tunnel, const SortedTunViaSet& vias) {
        printSegmentList(printer, policy, tunnel, vias, viaIndent);
      });
}

} // namespace

void printSrTePolicySetModel(scrivo::Printer& printer, const PolicyInfoSet& policySet,
                             std::uint32_t policyIndent, std::uint32_t viaIndent) {
  scrivo::StringAttrInfo endpoint(printer, "endpoint");
  scrivo::UintAttrInfo color(printer, "color");
  printer.startList("srTePolicy");
  std::uint32_t indent = 0; // the first policy continues the line
  policySet.policyInfoMap().forEach([&](std::uint16_t, const PolicyInfo& policy) {
    printer.startListEntry();
    endpoint.setValue(policy.policyKey().endpoint.text());
    color.setValue(policy.policyKey().color);
    if (indent != 0) printer.addFrills("%*s via", static_cast<int>(indent), "");
    printer.addAttributes(" SR-TE Policy %s, color %u", 2, endpoint.getArg(), color.getArg());
    printer.endListEntry();
    printer.addFrills("\n");
    printSegmentLists(printer, policy, static_cast<int>(viaIndent));
    indent = policyIndent;
  });
  printer.endList();
}

} // namespace Rova
