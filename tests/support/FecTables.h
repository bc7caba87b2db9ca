// The tables behind FECs and tunnels without a listing above them.
#pragma once

#include "rova/fec/Forwarding.h"
#include "state/DeviceState.h"

namespace support {

/// What following a FEC needs of a listing, over a device's tables or over none.
class FecTables {
 public:
  FecTables() = default;
  explicit FecTables(const state::DeviceState& device)
      : forwardingStatus(device.forwardingStatus),
        forwarding6Status(device.forwarding6Status),
        tunnelFib(device.tunnelFib) {}

  Lumo::Ptr<const Vanta::Fib::ForwardingStatus> forwardingStatus;
  Lumo::Ptr<const Vanta::Fib6::ForwardingStatus> forwarding6Status;
  Lumo::Ptr<const Tunnel::TunnelFib::TunnelFib> tunnelFib;
  Lumo::HashMap2018<Vanta::Fib::FecId, Lumo::Ptr<Rova::CachedFec>> fec;
  bool hasV6Nexthop = false;

  Rova::Forwarding forwarding() {
    return {.forwardingStatus = forwardingStatus,
            .forwarding6Status = forwarding6Status,
            .tunnelFib = tunnelFib,
            .evpnVxlanTunnelTable = evpnVxlanTunnelTable_,
            .srTunnelTable = srTunnelTable_,
            .staticTunnelTable = staticTunnelTable_,
            .ldpTunnelTable = ldpTunnelTable_,
            .bgpLuTunnelTable = bgpLuTunnelTable_,
            .srTePolicyStatus = srTePolicyStatus_,
            .policyForwardingStatus = policyForwardingStatus_,
            .allIntfConfig = allIntfConfig_,
            .nexthopGroupNames = nexthopGroupNames_,
            .maxUcmpWeight = nullptr,
            .detail = false,
            .filter = {},
            .hidesConnectedNexthops = false,
            .fec = fec,
            .hasV6Nexthop = &hasV6Nexthop};
  }
  /// The captured FEC, or null.
  Lumo::Ptr<Rova::CachedFec> captured(Vanta::Fib::FecId id) const {
    const auto* const found = fec.find(id);
    return found ? *found : nullptr;
  }

 private:
  Lumo::Ptr<const Tunnel::TunnelTable::EvpnVxlanTunnelTable> evpnVxlanTunnelTable_;
  Lumo::Ptr<const Tunnel::TunnelTable::SrTunnelTable> srTunnelTable_;
  Lumo::Ptr<const Tunnel::TunnelTable::StaticTunnelTable> staticTunnelTable_;
  Lumo::Ptr<const Tunnel::TunnelTable::LdpTunnelTable> ldpTunnelTable_;
  Lumo::Ptr<const Tunnel::TunnelTable::BgpLuTunnelTable> bgpLuTunnelTable_;
  Lumo::Ptr<const SrTePolicy::PolicyStatus> srTePolicyStatus_;
  Lumo::Ptr<const Vanta::Fib::ForwardingStatus> policyForwardingStatus_;
  Lumo::Ptr<const Interface::AllIntfConfigDir> allIntfConfig_;
  Lumo::HashMap2018<Routing::NexthopGroup::NexthopGroupId, Lumo::String> nexthopGroupNames_;
};

} // namespace support
