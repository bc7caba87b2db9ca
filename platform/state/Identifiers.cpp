#include "lumo/OneAtATime.h"
#include "state/ChipSet.h"
#include "state/FecId.h"
#include "state/TunnelId.h"

#include <charconv>
#include <cinttypes>
#include <cstdio>

std::uint32_t Vanta::Fib::FecId::hash() const { return Lumo::OneAtATime().add(value_).end(); }

namespace Dunlin {

Lumo::String ChipSet::stringValue() const {
  char digits[2 * 16 + 1];
  std::snprintf(digits, sizeof digits, "%016" PRIx64 "%016" PRIx64, words_[1], words_[0]);
  return digits;
}

std::optional<ChipSet> ChipSet::parse(std::string_view text) {
  constexpr std::size_t half = 16;
  if (text.size() != 2 * half) return {};
  const auto word = [](std::string_view digits) {
    std::uint64_t value = 0;
    const auto* const end = digits.data() + digits.size();
    const bool whole = std::from_chars(digits.data(), end, value, 16).ptr == end;
    return whole ? std::optional(value) : std::nullopt;
  };
  const auto second = word(text.substr(0, half)), first = word(text.substr(half));
  if (!first || !second) return {};
  return ChipSet(*first, *second);
}

} // namespace Dunlin

namespace Tunnel::TunnelTable {

std::uint32_t TunnelId::hash() const { return Lumo::OneAtATime().add(value_).end(); }

const char* TunnelId::typeCliStr() const {
  switch (kind()) {
  case TunnelKind::direct:
    return "direct";
  case TunnelKind::bgpLu:
    return "BGP-LU";
  case TunnelKind::ldp:
    return "LDP";
  case TunnelKind::staticTunnel:
    return "static";
  case TunnelKind::evpnVxlan:
    return "EVPN VXLAN";
  case TunnelKind::sr:
    return "SR";
  case TunnelKind::staticInterface:
    return "static interface";
  case TunnelKind::none:
    break;
  }
  return "tunnel";
}

const char* EncapId::typeCliStr(bool asConfigured) const {
  switch (kind()) {
  case EncapKind::gre:
    return asConfigured ? "gre" : "GRE";
  case EncapKind::ipsecVti:
    return asConfigured ? "ipsec" : "IPsec VTI";
  case EncapKind::ipsecGre:
    return asConfigured ? "ipsec gre" : "IPsec GRE";
  case EncapKind::mpls:
    return asConfigured ? "mpls" : "MPLS";
  }
  return "encapsulation";
}

TunnelId tunnelIdOfIntf(const Kesh::IntfId& intfId) {
  if (Kesh::DynamicTunnelIntfId::isDynamicTunnelIntfId(intfId)) {
    return TunnelId(Kesh::DynamicTunnelIntfId::tunnelId(intfId));
  }
  if (!Kesh::TunnelIntfId::isTunnelIntfId(intfId)) return {};
  constexpr auto kind = static_cast<std::uint64_t>(TunnelKind::staticInterface);
  return TunnelId(TunnelId::convertToTunnelValue(kind, Kesh::TunnelIntfId::port(intfId) & 0xffff));
}

} // namespace Tunnel::TunnelTable
