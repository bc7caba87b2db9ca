#include "Listing.h"

#include <stdexcept>

namespace bench {

namespace {

constexpr bool detail = false;
constexpr bool longerPrefixes = false;
constexpr bool originalMask = false;
constexpr bool byInterface = false;
constexpr bool degradeNhgModel = false;
constexpr int fd = 1;
constexpr double noTimingLines = 0.0;

} // namespace

Lumo::Ptr<Rova::RouteSorter> makeSorter(const state::DeviceState& device, Kesh::Prefix, bool host) {
  const state::VrfState& vrf = device.vrfs.front();
  return Rova::routeSorterFactory(
      vrf.routingConfig, vrf.routingStatus, device.forwardingStatus, device.forwarding6Status,
      device.tunnelFib, device.arpVanta, device.vrfIdMap, device.allIntfConfig, device.ipStatus,
      device.routingHardwareStatus, device.nhEntryStatus, vrf.kernelUnprogrammedRoute,
      device.evpnVxlanTunnelTable, device.tunnelTableDir, Kesh::Prefix::nullPrefix(), {}, "",
      detail, longerPrefixes, vrf.name, vrf.id, host, fd, noTimingLines, originalMask,
      device.srTePolicyStatus, device.policyForwardingStatus, degradeNhgModel,
      device.unprogrammedRouteStatus);
}

Lumo::Ptr<Rova::Route6Sorter> makeSorter(const state::DeviceState& device, Kesh::Ip6Prefix,
                                         bool host) {
  const state::VrfState& vrf = device.vrfs.front();
  return Rova::route6SorterFactory(
      vrf.routing6Config, vrf.routing6Status, device.forwardingStatus, device.forwarding6Status,
      device.tunnelFib, device.arpVanta, device.vrfIdMap, device.allIntfConfig, device.ip6Status,
      device.routing6HardwareStatus, device.nhEntryStatus, vrf.kernelUnprogrammedRoute,
      device.evpnVxlanTunnelTable, device.tunnelTableDir, Kesh::Ip6Prefix::nullPrefix(), {}, "",
      detail, longerPrefixes, vrf.name, vrf.id, host, fd, noTimingLines, originalMask, byInterface,
      device.srTePolicyStatus, device.policyForwardingStatus, degradeNhgModel,
      device.unprogrammedRoute6Status);
}

template <class Sorter>
void print(Sorter& sorter, int to, Form form) {
  if (!sorter.printRoutes(static_cast<std::uint32_t>(to), static_cast<std::uint32_t>(form))) {
    throw std::runtime_error("the listing was interrupted");
  }
}

template void print(Rova::RouteSorter&, int, Form);
template void print(Rova::Route6Sorter&, int, Form);

} // namespace bench
