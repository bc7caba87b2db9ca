#include "state/FecId.h"
#include "state/TunnelId.h"

namespace {

/// Bob Jenkins' one-at-a-time hash over the bytes of a number, lowest first.
std::uint32_t oneAtATime(std::uint64_t value) {
  std::uint32_t hash = 0;
  for (int i = 0; i < 8; ++i) {
    hash += static_cast<std::uint8_t>(value >> (8 * i));
    hash += hash << 10;
    hash ^= hash >> 6;
  }
  hash += hash << 3;
  hash ^= hash >> 11;
  return hash + (hash << 15);
}

} // namespace

std::uint32_t Vanta::Fib::FecId::hash() const { return oneAtATime(value_); }

namespace Tunnel::TunnelTable {

std::uint32_t TunnelId::hash() const { return oneAtATime(value_); }

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
