#include "rova/fec/Rows.h"

#include "rova/core/DirectlyConnected.h"
#include "rova/fec/TunnelRows.h"
#include "rova/fec/Tunnels.h"

namespace Rova {

namespace {

/// The name of a nexthop group, or the word for one that has none.
Lumo::String nexthopGroupName(const Forwarding& forwarding,
                              Routing::NexthopGroup::NexthopGroupId id) {
  const auto* const name = forwarding.nexthopGroupNames.find(id);
  return name && !name->empty() ? *name : Lumo::String("NexthopGroupUnknown");
}

/// One plain row for `via`. `prefix` is that of the route whose print builds the rows.
void buildPlainRow(const Forwarding& forwarding, CachedFec& fec, const CachedVia& via,
                   const Kesh::IpGenPrefix& prefix, std::uint16_t row) {
  const DirectViaText text = viaTexts(forwarding, via);
  fec.viaTypeStringIs(row, fec.hasBackup() && via.isBackup() ? "backup" : "active");
  fec.interfaceIs(row, text.interface);
  fec.interfaceDescriptionIs(row, text.interfaceDescription);
  fec.viaEvpnEntryIs(row, text.evpnEntry);
  fec.staticIntfTunInfoIs(row, text.staticIntfTunInfo);
  fec.labelIs(row, text.label);
  if (!forwarding.hidesConnectedNexthops || !isDirectlyConnected(prefix, text.nexthopAddr)) {
    fec.nexthopAddrIs(row, text.nexthopAddr);
  }
  if (fec.isUnequalCost()) fec.viaWeightIs(row, via.viaWeight());
}

/// Whether the via, in a FEC whose first via is plain, shows its tunnel all the same.
bool isBackupTunnel(const CachedVia& via) {
  return via.isBackup() && isValidDynamicTunnel(via) &&
         via.tunnelId().kind() != Tunnel::TunnelTable::TunnelKind::direct;
}

/// One row for each via. Vias that a query by interface leaves out get no row and leave no gap.
void buildPlainRows(const Forwarding& forwarding, CachedFec& fec, const Kesh::IpGenPrefix& prefix) {
  std::uint16_t row = 0;
  for (const auto& [via, present] : fec.viaMap()) {
    if (isBackupTunnel(via)) {
      updateTunSortedViaHierarchyEntry(fec, forwarding, via, row++);
    } else if (!forwarding.filter.leavesOut(via.intfId())) {
      buildPlainRow(forwarding, fec, via, prefix, row++);
    }
  }
  fec.numEntriesIs(static_cast<int>(fec.viaTypeStrings()));
}

} // namespace

DirectViaText viaTexts(const Forwarding& forwarding, const CachedVia& via) {
  using Tunnel::TunnelTable::TunnelKind;
  const auto tunnel = via.tunnelId();
  const bool staticTunnel = tunnel.kind() == TunnelKind::staticInterface;
  DirectViaText text;
  text.label = via.viaLabel();
  text.interfaceDescription = interfaceDescriptionOf(forwarding, via.intfId());
  if (Tunnel::TunnelTable::EvpnVxlanTunnelTable::isValidEvpnIntf(via.intfId())) {
    text.evpnEntry = forwarding.evpnVxlanTunnelTable->entry(tunnel);
  } else {
    text.interface = via.intfId().stringValue().view();
  }
  if (tunnel.isNull() || !via.hop().isAddrZero() || staticTunnel) {
    text.nexthopAddr = via.hop().stringValue().view();
  }
  if (staticTunnel) lookupStaticIntfTunnelEncap(forwarding, tunnel, text.staticIntfTunInfo);
  return text;
}

void buildNexthopGroupRows(const Forwarding& forwarding, CachedFec& fec) {
  std::uint16_t row = 0;
  for (const auto& [via, present] : fec.viaMap()) {
    if (const auto id = nexthopGroupIdFromIntfId(via.intfId())) {
      CachedNhgVia entry;
      entry.nhgIdIs(id);
      entry.nhgNameIs(nexthopGroupName(forwarding, id));
      fec.nhgViaIs(row, entry);
    }
    ++row;
  }
}

void buildRows(const Forwarding& forwarding, CachedFec& fec, const Kesh::IpGenPrefix& prefix) {
  if (fec.numEntries() != 0 || fec.vias() == 0) return;
  const CachedVia& first = fec.viaMap().begin()->first;
  if (!isValidDynamicTunnel(first)) return buildPlainRows(forwarding, fec, prefix);
  if (first.tunnelId().kind() == Tunnel::TunnelTable::TunnelKind::direct) {
    return updateTunSortedVia(fec, forwarding);
  }
  fec.hierarchicalViaIs(true);
  updateTunSortedViaHierarchy(fec, forwarding);
}

} // namespace Rova
