#include "lumo/OneAtATime.h"
#include "state/FecId.h"
#include "state/TunnelId.h"

std::uint32_t Vanta::Fib::FecId::hash() const { return Lumo::OneAtATime().add(value_).end(); }

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
