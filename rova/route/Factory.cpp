#include "rova/route/Sorter.h"

#include <utility>

namespace Rova {

Lumo::Ptr<RouteSorter> routeSorterFactory(
    const Lumo::Ptr<const Routing::ConfigGen>& routingConfig,
    const Lumo::Ptr<const Vanta::Fib::RouteStatus>& routingStatus,
    const Lumo::Ptr<const Vanta::Fib::ForwardingStatus>& forwardingStatus,
    const Lumo::Ptr<const Vanta::Fib6::ForwardingStatus>& forwarding6Status,
    const Lumo::Ptr<const Tunnel::TunnelFib::TunnelFib>& tunnelFib,
    const Lumo::Ptr<const Arp::Table::Status>& arpVanta,
    const Lumo::Ptr<const Vrf::VrfIdMap::Status>& vrfIdMap,
    const Lumo::Ptr<const Interface::AllIntfConfigDir>& allIntfConfig,
    const Lumo::Ptr<const Ip::Status>& ipStatus,
    const Lumo::Ptr<const Routing::Hardware::Status>& routingHardwareStatus,
    const Lumo::Ptr<const NexthopGroup::EntryStatus>& nhEntryStatus,
    const Lumo::Ptr<const Vanta::KernelUnprogrammedRoute::UnprogrammedRoute>&
        kernelUnprogrammedRoute,
    const Lumo::Ptr<const Tunnel::TunnelTable::EvpnVxlanTunnelTable>& evpnVxlanTunnelTable,
    const Lumo::Ptr<const Lumo::Dir>& tunnelTableDir, const Kesh::Prefix& prefix,
    const Lumo::Ptr<const Interface::IntfStatus>& intfStatus, Lumo::String protocol, bool detail,
    bool longerPrefixes, L3::VrfName vrfName, Vrf::VrfIdMap::VrfId vrfId, bool host, int fd,
    const double& quantify, bool originalMask,
    const Lumo::Ptr<const SrTePolicy::PolicyStatus>& srTePolicyStatus,
    const Lumo::Ptr<const Vanta::Fib::ForwardingStatus>& policyForwardingStatus,
    bool degradeNhgModel,
    const Lumo::Ptr<const Vanta::Fib::UnprogrammedRouteStatus>& unprogrammedRouteStatus) {
  return Lumo::newEntity<RouteSorter>(
      routingConfig, routingStatus, forwardingStatus, forwarding6Status, tunnelFib, arpVanta,
      vrfIdMap, allIntfConfig, ipStatus, routingHardwareStatus, nhEntryStatus,
      kernelUnprogrammedRoute, evpnVxlanTunnelTable, tunnelTableDir, prefix, intfStatus,
      std::move(protocol), detail, longerPrefixes, std::move(vrfName), vrfId, host, fd, quantify,
      originalMask, srTePolicyStatus, policyForwardingStatus, degradeNhgModel,
      unprogrammedRouteStatus);
}

Lumo::Ptr<Route6Sorter> route6SorterFactory(
    const Lumo::Ptr<const Routing::ConfigGen>& routingConfig,
    const Lumo::Ptr<const Vanta::Fib6::RouteStatus>& routingStatus,
    const Lumo::Ptr<const Vanta::Fib::ForwardingStatus>& forwardingStatus,
    const Lumo::Ptr<const Vanta::Fib6::ForwardingStatus>& forwarding6Status,
    const Lumo::Ptr<const Tunnel::TunnelFib::TunnelFib>& tunnelFib,
    const Lumo::Ptr<const Arp::Table::Status>& arpVanta,
    const Lumo::Ptr<const Vrf::VrfIdMap::Status>& vrfIdMap,
    const Lumo::Ptr<const Interface::AllIntfConfigDir>& allIntfConfig,
    const Lumo::Ptr<const Ip6::Status>& ipStatus,
    const Lumo::Ptr<const Routing6::Hardware::Status>& routingHardwareStatus,
    const Lumo::Ptr<const NexthopGroup::EntryStatus>& nhEntryStatus,
    const Lumo::Ptr<const Vanta::KernelUnprogrammedRoute::UnprogrammedRoute>&
        kernelUnprogrammedRoute,
    const Lumo::Ptr<const Tunnel::TunnelTable::EvpnVxlanTunnelTable>& evpnVxlanTunnelTable,
    const Lumo::Ptr<const Lumo::Dir>& tunnelTableDir, const Kesh::Ip6Prefix& prefix,
    const Lumo::Ptr<const Interface::IntfStatus>& intfStatus, Lumo::String protocol, bool detail,
    bool longerPrefixes, L3::VrfName vrfName, Vrf::VrfIdMap::VrfId vrfId, bool host, int fd,
    const double& quantify, bool originalMask, bool intf,
    const Lumo::Ptr<const SrTePolicy::PolicyStatus>& srTePolicyStatus,
    const Lumo::Ptr<const Vanta::Fib::ForwardingStatus>& policyForwardingStatus,
    bool degradeNhgModel,
    const Lumo::Ptr<const Vanta::Fib6::UnprogrammedRouteStatus>& unprogrammedRouteStatus) {
  return Lumo::newEntity<Route6Sorter>(
      routingConfig, routingStatus, forwardingStatus, forwarding6Status, tunnelFib, arpVanta,
      vrfIdMap, allIntfConfig, ipStatus, routingHardwareStatus, nhEntryStatus,
      kernelUnprogrammedRoute, evpnVxlanTunnelTable, tunnelTableDir, prefix, intfStatus,
      std::move(protocol), detail, longerPrefixes, std::move(vrfName), vrfId, host, fd, quantify,
      originalMask, intf, srTePolicyStatus, policyForwardingStatus, degradeNhgModel,
      unprogrammedRouteStatus);
}

} // namespace Rova
