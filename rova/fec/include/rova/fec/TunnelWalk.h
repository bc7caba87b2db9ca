// Following a tunnel: from its identifier to its vias, and from these through the FECs that they
// name. Templates over the sorter, which has the tables.
#pragma once

#include "rova/fec/FecCapture.h"
#include "rova/fec/SortedTunVia.h"

namespace Rova {

/// The tunnel's entry in the tunnel FIB; the default one, for which `!entry` holds, for none.
template <class Sorter>
const Tunnel::TunnelFib::TunnelFibEntry& tunnelFibEntry(const Sorter& sorter,
                                                        Tunnel::TunnelTable::TunnelId id) {
  static const Tunnel::TunnelFib::TunnelFibEntry absent;
  return sorter.tunnelFib() ? sorter.tunnelFib()->entry(id) : absent;
}

/// The FEC that a tunnel via leads to, in the form in which the FEC tables know it; null for a via
/// that leads to none.
inline Vanta::Fib::FecId fecBehindTunnelVia(const Kesh::IntfId& intfId) {
  using Vanta::Fib::AdjType;
  const auto named = Vanta::Fib::FecId::hierarchicalIntfIdToFecId(intfId);
  if (named.isNull() || named.rawAdjType() >= Vanta::Fib::adjTypeMax()) return {};
  const bool isTunnelForm =
      named.adjType() == AdjType::tunnelFib || named.adjType() == AdjType::tunnelFib6;
  if (!isTunnelForm) return named;
  const Vanta::Fib::FecId number(AdjType::fib, named.value());
  if (number.isNull()) return {};
  const auto type = named.adjType() == AdjType::tunnelFib ? AdjType::fib : AdjType::fib6;
  return Vanta::Fib::fecIdToNewAdjType(static_cast<unsigned>(type), number);
}

/// The tunnel's vias, where each that leads to a FEC gives way to that FEC's vias with its own
/// encapsulation. One pass in the order of the set: what is inserted behind the current place is
/// followed in turn, what is inserted before it stays as it is, so that cycles among FECs end.
template <class Sorter>
SortedTunViaSet resolveTunnelToFec(Sorter& sorter, Tunnel::TunnelTable::TunnelId tunnelId) {
  SortedTunViaSet set(tunnelId, sorter.tunnelFib());
  for (auto at = set.viaMap().cursor(); at; at.next()) {
    const SortedTunVia tunnelVia = at.key();
    const auto* const fec = copyAdjacency(sorter, fecBehindTunnelVia(tunnelVia.intfId));
    if (!fec) continue;
    for (const auto& [via, present] : fec->viaMap()) {
      set.viaIs(SortedTunVia(via.hop(), via.intfId(), tunnelVia.encapId, sorter.tunnelFib()), true);
    }
    set.viaDel(at);
  }
  return set;
}

/// The label stack behind an encapsulation, the empty operation for any other than MPLS.
template <class Sorter>
Kesh::MplsLabelOperation labelStackOf(const Sorter& sorter, Tunnel::TunnelTable::EncapId encapId) {
  return sorter.tunnelFib() ? sorter.tunnelFib()->labelStack(encapId) : Kesh::MplsLabelOperation();
}

} // namespace Rova
