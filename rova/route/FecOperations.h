// The operations on FECs, tunnels and policies by the sorter whose tables they follow.
#pragma once

#include "rova/fec/Capture.h"
#include "rova/fec/Policies.h"
#include "rova/fec/TunnelRows.h"
#include "rova/fec/Tunnels.h"
#include "rova/route/Sorter.h"

namespace Rova {

template <class Family, class Fec>
Lumo::Ptr<CachedFec> cachedFecIs(Sorter<Family>& sorter, Vanta::Fib::FecId fecId,
                                 const Fec& record) {
  return cachedFecIs(sorter.forwarding(), fecId, record);
}

template <class Family>
const CachedFec* copyAdjacency(Sorter<Family>& sorter, Vanta::Fib::FecId fecId) {
  return copyAdjacency(sorter.forwarding(), fecId);
}

template <class Family>
SortedTunViaSet resolveTunnelToFec(Sorter<Family>& sorter, Tunnel::TunnelTable::TunnelId id) {
  return resolveTunnelToFec(sorter.forwarding(), id);
}

template <class Family>
void updateTunSortedVia(CachedFec& fec, Sorter<Family>& sorter) {
  updateTunSortedVia(fec, sorter.forwarding());
}

template <class Family>
void updateTunSortedViaHierarchy(CachedFec& fec, Sorter<Family>& sorter) {
  updateTunSortedViaHierarchy(fec, sorter.forwarding());
}

template <class Family>
void updateTunSortedViaHierarchyEntry(CachedFec& fec, Sorter<Family>& sorter, const CachedVia& via,
                                      std::uint16_t row) {
  updateTunSortedViaHierarchyEntry(fec, sorter.forwarding(), via, row);
}

template <class Family>
void lookupStaticIntfTunnelEncap(Sorter<Family>& sorter, Tunnel::TunnelTable::TunnelId id,
                                 Tunnel::CliSupport::CachedStaticIntfTunnelInfo& info) {
  lookupStaticIntfTunnelEncap(sorter.forwarding(), id, info);
}

template <class Family>
PolicyInfo copySrTePolicyInfo(Sorter<Family>& sorter, Vanta::Fib::FecId fecId,
                              std::uint16_t index) {
  return copySrTePolicyInfo(sorter.forwarding(), fecId, index);
}

} // namespace Rova
