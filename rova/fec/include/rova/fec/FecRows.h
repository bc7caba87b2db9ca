// Turning the vias of a captured FEC into rows: one row is one line of via output, its texts
// already made. Templates over the sorter, which has the query and the tables.
#pragma once

#include "rova/core/DirectlyConnected.h"
#include "rova/fec/StaticInterfaceTunnel.h"
#include "rova/fec/TunnelRows.h"

namespace Rova {

/// Whether the sorter's query is limited to an interface.
template <class Sorter>
bool filtersByInterface(const Sorter& sorter) {
  if constexpr (Sorter::Family::hasIntfFlag) {
    return sorter.intf();
  } else {
    return static_cast<bool>(sorter.intfStatus());
  }
}

/// Whether a query by interface leaves out a via on `intfId`. With a filter and no interface, every
/// via is left out.
template <class Sorter>
bool isOtherInterface(const Sorter& sorter, const Kesh::IntfId& intfId) {
  return filtersByInterface(sorter) &&
         (!sorter.intfStatus() || !(intfId == sorter.intfStatus()->intfId));
}

/// The name of a captured nexthop group, or the word for one that has none.
inline Lumo::String nexthopGroupNameOrUnknown(const Lumo::String& name) {
  return name.empty() ? Lumo::String("NexthopGroupUnknown") : name;
}

/// Fills `nhgVia` from the vias in their order. A via that is no nexthop group leaves a gap.
template <class Sorter>
void buildNexthopGroupRows(const Sorter& sorter, CachedFec& fec) {
  std::uint16_t row = 0;
  for (const auto& [via, present] : fec.viaMap()) {
    if (const auto id = nexthopGroupIdFromIntfId(via.intfId())) {
      CachedNhgVia entry;
      entry.nhgIdIs(id);
      entry.nhgNameIs(nexthopGroupNameOrUnknown(sorter.cachedNexthopGroupIdToName(id)));
      fec.nhgViaIs(row, entry);
    }
    ++row;
  }
}

/// The texts that one via shows, whether in a row of its own or straight from its FEC.
template <class Sorter>
DirectViaText viaTexts(const Sorter& sorter, const CachedVia& via) {
  using Tunnel::TunnelTable::TunnelKind;
  const auto tunnel = via.tunnelId();
  const bool staticTunnel = tunnel.kind() == TunnelKind::staticInterface;
  DirectViaText text;
  text.label = via.viaLabel();
  text.interfaceDescription = interfaceDescriptionOf(sorter, via.intfId());
  if (Tunnel::TunnelTable::EvpnVxlanTunnelTable::isValidEvpnIntf(via.intfId())) {
    text.evpnEntry = sorter.evpnVxlanTunnelTable()->entry(tunnel);
  } else {
    text.interface = via.intfId().stringValue().view();
  }
  if (tunnel.isNull() || !via.hop().isAddrZero() || staticTunnel) {
    text.nexthopAddr = via.hop().stringValue().view();
  }
  if (staticTunnel) lookupStaticIntfTunnelEncap(sorter, tunnel, text.staticIntfTunInfo);
  return text;
}

/// One plain row for `via`. `prefix` is that of the route whose print builds the rows.
template <class Sorter>
void buildPlainRow(const Sorter& sorter, CachedFec& fec, const CachedVia& via,
                   const Kesh::IpGenPrefix& prefix, std::uint16_t row) {
  const DirectViaText text = viaTexts(sorter, via);
  fec.viaTypeStringIs(row, fec.hasBackup() && via.isBackup() ? "backup" : "active");
  fec.interfaceIs(row, text.interface);
  fec.interfaceDescriptionIs(row, text.interfaceDescription);
  fec.viaEvpnEntryIs(row, text.evpnEntry);
  fec.staticIntfTunInfoIs(row, text.staticIntfTunInfo);
  fec.labelIs(row, text.label);
  if (!Sorter::Family::hidesConnectedNexthops || !isDirectlyConnected(prefix, text.nexthopAddr)) {
    fec.nexthopAddrIs(row, text.nexthopAddr);
  }
  if (fec.isUnequalCost()) fec.viaWeightIs(row, via.viaWeight());
}

/// Whether the via, in a FEC whose first via is plain, shows its tunnel all the same.
inline bool isBackupTunnel(const CachedVia& via) {
  return via.isBackup() && isValidDynamicTunnel(via) &&
         via.tunnelId().kind() != Tunnel::TunnelTable::TunnelKind::direct;
}

/// One row for each via. Vias that a query by interface leaves out get no row and leave no gap.
template <class Sorter>
void buildPlainRows(Sorter& sorter, CachedFec& fec, const Kesh::IpGenPrefix& prefix) {
  std::uint16_t row = 0;
  for (const auto& [via, present] : fec.viaMap()) {
    if (isBackupTunnel(via)) {
      updateTunSortedViaHierarchyEntry(fec, sorter, via, row++);
    } else if (!isOtherInterface(sorter, via.intfId())) {
      buildPlainRow(sorter, fec, via, prefix, row++);
    }
  }
  fec.numEntriesIs(static_cast<int>(fec.viaTypeStrings()));
}

/// Builds the rows of a FEC, unless that is done. The first via decides for all whether they show
/// as tunnels. `prefix` is that of the route whose print builds the rows.
template <class Sorter>
void buildRows(Sorter& sorter, CachedFec& fec, const Kesh::IpGenPrefix& prefix) {
  if (fec.numEntries() != 0 || fec.vias() == 0) return;
  const CachedVia& first = fec.viaMap().begin()->first;
  if (!isValidDynamicTunnel(first)) return buildPlainRows(sorter, fec, prefix);
  if (first.tunnelId().kind() == Tunnel::TunnelTable::TunnelKind::direct) {
    return updateTunSortedVia(fec, sorter);
  }
  fec.hierarchicalViaIs(true);
  updateTunSortedViaHierarchy(fec, sorter);
}

} // namespace Rova
