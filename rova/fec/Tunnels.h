// Following a tunnel: from its identifier to its vias, and from these through the FECs that they
// name.
#pragma once

#include "rova/fec/Forwarding.h"
#include "rova/fec/SortedTunVia.h"

namespace Rova {

/// The tunnel's entry in the tunnel FIB; the default one, for which `!entry` holds, for none.
const Tunnel::TunnelFib::TunnelFibEntry& tunnelFibEntry(const Forwarding& forwarding,
                                                        Tunnel::TunnelTable::TunnelId id);

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
SortedTunViaSet resolveTunnelToFec(const Forwarding& forwarding,
                                   Tunnel::TunnelTable::TunnelId tunnelId);

/// The label stack behind an encapsulation, the empty operation for any other than MPLS.
Kesh::MplsLabelOperation labelStackOf(const Forwarding& forwarding,
                                      Tunnel::TunnelTable::EncapId encapId);

/// The prefix that the protocol of a tunnel says it leads to; empty when its table does not know
/// it.
Lumo::String tunnelEndpoint(const Forwarding& forwarding, Tunnel::TunnelTable::TunnelId id);

/// What displays tell of a configured tunnel interface beside its name: fills `info` from the
/// tunnel's first via; leaves it as it is when the tunnel or its vias are not in the table. MPLS,
/// which no interface can have, stops the process.
void lookupStaticIntfTunnelEncap(const Forwarding& forwarding,
                                 Tunnel::TunnelTable::TunnelId tunnelId,
                                 Tunnel::CliSupport::CachedStaticIntfTunnelInfo& info);

} // namespace Rova
