// What following a FEC needs of a listing: the tables, the query's part in it, and the place of the
// captured FECs. Nothing here owns anything; an object of a listing makes one when it is asked.
#pragma once

#include "rova/fec/CachedFec.h"

namespace Rova {

/// A query's limit to an interface.
struct InterfaceFilter {
  bool isSet = false;
  const Interface::IntfStatus* interface = nullptr;

  /// Whether a via on `intfId` is left out. With a filter and no interface, every via is.
  bool leavesOut(const Kesh::IntfId& intfId) const {
    return isSet && (!interface || !(intfId == interface->intfId));
  }
};

struct Forwarding {
  const Lumo::Ptr<const Vanta::Fib::ForwardingStatus>& forwardingStatus;
  const Lumo::Ptr<const Vanta::Fib6::ForwardingStatus>& forwarding6Status;
  const Lumo::Ptr<const Tunnel::TunnelFib::TunnelFib>& tunnelFib;
  const Lumo::Ptr<const Tunnel::TunnelTable::EvpnVxlanTunnelTable>& evpnVxlanTunnelTable;
  const Lumo::Ptr<const Tunnel::TunnelTable::SrTunnelTable>& srTunnelTable;
  const Lumo::Ptr<const Tunnel::TunnelTable::StaticTunnelTable>& staticTunnelTable;
  const Lumo::Ptr<const Tunnel::TunnelTable::LdpTunnelTable>& ldpTunnelTable;
  const Lumo::Ptr<const Tunnel::TunnelTable::BgpLuTunnelTable>& bgpLuTunnelTable;
  const Lumo::Ptr<const SrTePolicy::PolicyStatus>& srTePolicyStatus;
  const Lumo::Ptr<const Vanta::Fib::ForwardingStatus>& policyForwardingStatus;
  const Lumo::Ptr<const Interface::AllIntfConfigDir>& allIntfConfig;
  const Lumo::HashMap2018<Routing::NexthopGroup::NexthopGroupId, Lumo::String>& nexthopGroupNames;

  const std::uint32_t* maxUcmpWeight; ///< the hardware's limit to a sum of weights; null: none
  bool detail;
  InterfaceFilter filter;
  /// Whether rows leave out the next hop of a directly connected via.
  bool hidesConnectedNexthops;

  Lumo::HashMap2018<Vanta::Fib::FecId, Lumo::Ptr<CachedFec>>& fec;
  bool* hasV6Nexthop; ///< set when a FEC of the IPv6 table is captured; null where nobody asks
};

/// The description of an interface in a detail listing; empty otherwise.
Lumo::String interfaceDescriptionOf(const Forwarding& forwarding, const Kesh::IntfId& intfId);

} // namespace Rova
