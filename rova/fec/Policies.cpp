#include "rova/fec/Policies.h"

#include "lumo/Assert.h"
#include "rova/fec/Tunnels.h"

namespace Rova {

LUMO_DEFINE_TYPE(PolicyInfo);
LUMO_DEFINE_TYPE(PolicyInfoSet);

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

/// Enters what one via of a policy's FEC says: a segment list, if the via is on a tunnel that the
/// tunnel FIB knows. Of two vias on one tunnel the later one counts.
void addSegmentList(const Forwarding& forwarding, PolicyInfo& policy, const Vanta::Fib::Via& via) {
  const auto tunnel = via.tunnelId();
  if (tunnel.isNull() || !tunnelFibEntry(forwarding, tunnel)) return;
  policy.sortedViaIs(tunnel, resolveTunnelToFec(forwarding, tunnel));
  const auto& tunnelVias = tunnelFibEntry(forwarding, tunnel).tunnelVia;
  const auto encapId =
      tunnelVias.empty() ? Tunnel::TunnelTable::EncapId() : tunnelVias.front().encapId;
  policy.tunnelLabelStackIs(tunnel, labelStackOf(forwarding, encapId));
  policy.viaLabelIs(tunnel, via.labelAndAction);
  policy.weightIs(tunnel, SrTePolicy::Weight(via.weight));
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

PolicyInfo copySrTePolicyInfo(const Forwarding& forwarding, Vanta::Fib::FecId fecId,
                              std::uint16_t index) {
  LUMO_ASSERT(forwarding.srTePolicyStatus, "srTePolicyStatus()");
  const auto* const key = forwarding.srTePolicyStatus->fecIdToPolicyKey.find(fecId);
  PolicyInfo policy(index, key ? *key : SrTePolicy::PolicyKey());
  if (policy.policyKey() == SrTePolicy::PolicyKey() || !forwarding.policyForwardingStatus) {
    return policy;
  }
  bool found = false;
  const Vanta::Fib::Fec record =
      *forwarding.policyForwardingStatus->fec.safeLookup(fecId, found, 0);
  for (std::uint32_t i = 0; i < record.viaCount; ++i) {
    addSegmentList(forwarding, policy, record.via(Vanta::Fib::ViaIndex(i)));
  }
  return policy;
}

PolicyInfoSet collectPolicies(const Forwarding& forwarding, const CachedFec& fec) {
  PolicyInfoSet set;
  const auto add = [&](Vanta::Fib::FecId fecId, std::uint16_t index) {
    auto policy = copySrTePolicyInfo(forwarding, fecId, index);
    if (policy == PolicyInfo(index, SrTePolicy::PolicyKey())) return;
    set.policyInfoIs(std::move(policy));
  };
  if (fec.fecId().adjType() == Vanta::Fib::AdjType::srTePolicy) {
    add(fec.fecId(), 0);
    return set;
  }
  std::uint16_t index = 0;
  for (const auto& [via, present] : fec.viaMap()) {
    const auto fecId = via.fecId();
    if (fecId.adjType() == Vanta::Fib::AdjType::srTePolicy) add(fecId, index);
    ++index;
  }
  return set;
}

} // namespace Rova
