#include "rova/fec/StaticInterfaceTunnel.h"

#include "lumo/Assert.h"

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

void fillStaticIntfTunnelInfo(const Tunnel::TunnelFib::TunnelFib* tunnelFib,
                              Tunnel::TunnelTable::TunnelId tunnelId,
                              Tunnel::CliSupport::CachedStaticIntfTunnelInfo& info) {
  if (!tunnelFib) return;
  const auto& entry = tunnelFib->entry(tunnelId);
  if (!entry || entry.tunnelVia.empty()) return;
  const auto encapId = entry.tunnelVia.front().encapId;
  const Outer outer = outerOf(*tunnelFib, encapId);
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
