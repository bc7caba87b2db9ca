#include "rova/fec/Tunnels.h"

#include "lumo/Assert.h"
#include "rova/fec/Capture.h"

#include <optional>

namespace Rova {

using Tunnel::TunnelTable::EncapKind;

namespace {

/// The part of a tunnel's identifier that tells it among the tunnels of its kind.
constexpr std::uint64_t indexMask = 0x7ffffffffffull;

/// What all encapsulations have, and the GRE key of those that have one.
struct Outer {
  Tunnel::L3TunnelInfo ends;
  std::optional<std::uint32_t> greKey = {};
};

Outer outerOf(const Tunnel::TunnelFib::TunnelFib& fib, Tunnel::TunnelTable::EncapId id) {
  switch (id.kind()) {
  case EncapKind::gre:
    return {fib.greEncap(id), fib.greEncap(id).greKey};
  case EncapKind::ipsecVti:
    return {fib.ipsecVtiEncap(id)};
  case EncapKind::ipsecGre:
    return {fib.ipsecGreEncap(id), fib.ipsecGreEncap(id).greKey};
  case EncapKind::mpls:
    LUMO_ASSERT(false, "0 && \"mpls not supported on static interface tunnels\"");
  }
  return {};
}

} // namespace

const Tunnel::TunnelFib::TunnelFibEntry& tunnelFibEntry(const Forwarding& forwarding,
                                                        Tunnel::TunnelTable::TunnelId id) {
  static const Tunnel::TunnelFib::TunnelFibEntry absent;
  return forwarding.tunnelFib ? forwarding.tunnelFib->entry(id) : absent;
}

SortedTunViaSet resolveTunnelToFec(const Forwarding& forwarding,
                                   Tunnel::TunnelTable::TunnelId tunnelId) {
  SortedTunViaSet set(tunnelId, forwarding.tunnelFib);
  for (auto at = set.viaMap().cursor(); at; at.next()) {
    const SortedTunVia tunnelVia = at.key();
    const auto* const fec = copyAdjacency(forwarding, fecBehindTunnelVia(tunnelVia.intfId));
    if (!fec) continue;
    for (const auto& [via, present] : fec->viaMap()) {
      set.viaIs(SortedTunVia(via.hop(), via.intfId(), tunnelVia.encapId, forwarding.tunnelFib),
                true);
    }
    set.viaDel(at);
  }
  return set;
}

Kesh::MplsLabelOperation labelStackOf(const Forwarding& forwarding,
                                      Tunnel::TunnelTable::EncapId encapId) {
  const auto& fib = forwarding.tunnelFib;
  return fib ? fib->labelStack(encapId) : Kesh::MplsLabelOperation();
}

Lumo::String tunnelEndpoint(const Forwarding& forwarding, Tunnel::TunnelTable::TunnelId id) {
  using Tunnel::TunnelTable::TunnelKind;
  const auto read = [id](const auto& table) -> Lumo::String {
    if (!table) return {};
    const auto& entry = table->entry(id);
    return !entry ? Lumo::String() : entry.endpoint.stringValue();
  };
  switch (id.kind()) {
  case TunnelKind::bgpLu:
    return read(forwarding.bgpLuTunnelTable);
  case TunnelKind::ldp:
    return read(forwarding.ldpTunnelTable);
  case TunnelKind::staticTunnel:
    return read(forwarding.staticTunnelTable);
  case TunnelKind::sr:
    return read(forwarding.srTunnelTable);
  default:
    return {};
  }
}

void lookupStaticIntfTunnelEncap(const Forwarding& forwarding,
                                 Tunnel::TunnelTable::TunnelId tunnelId,
                                 Tunnel::CliSupport::CachedStaticIntfTunnelInfo& info) {
  const auto& entry = tunnelFibEntry(forwarding, tunnelId);
  if (!entry || entry.tunnelVia.empty()) return;
  const auto encapId = entry.tunnelVia.front().encapId;
  const Outer outer = outerOf(*forwarding.tunnelFib, encapId);
  info.tunnelTypeText = tunnelId.typeCliStr();
  info.tunnelIndexPart = tunnelId.value() & indexMask;
  info.encapTypeText = encapId.typeCliStr(false);
  info.encapTypeTextAlt = encapId.typeCliStr(true);
  info.destinationText = outer.ends.destination.stringValue();
  info.sourceText = outer.ends.source.stringValue();
  info.addressFamily = static_cast<std::uint32_t>(outer.ends.source.af());
  info.greKeyField = outer.greKey.value_or(info.greKeyField);
  info.encapByte0 = outer.ends.ttl;
  info.encapByte1 = outer.ends.tos;
}

} // namespace Rova
