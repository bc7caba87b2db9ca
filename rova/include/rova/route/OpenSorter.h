// Opening a sorter over a device in a few words:
//
//   const auto sorter = Rova::openSorter<Rova::Ip4Family>(device, device.vrfs.front(), {});
//   sorter->printRoutes(1, 1);
#pragma once

#include "rova/route/Sorter.h"

namespace Rova {

/// What a listing shows of a VRF: its whole routing table, unless a part of the query says
/// otherwise. The names are those of the sorter's attributes.
template <class Family>
struct SorterQuery {
  typename Family::Prefix prefix = Family::Prefix::nullPrefix();
  bool originalMask = true;
  Lumo::Ptr<const Interface::IntfStatus> intfStatus = {};
  bool intf = false; ///< of IPv6 alone, which asks it beside `intfStatus`
  Lumo::String protocol = {};
  bool detail = false;
  bool longerPrefixes = false;
  bool host = false;
  int fd = 1;
  double quantify = 0.0;
  bool degradeNhgModel = false;
};

/// A loaded sorter over the VRF of the device. Raises what loading raises.
template <class Family>
Lumo::Ptr<Sorter<Family>> openSorter(const state::DeviceState& device, const state::VrfState& vrf,
                                     const SorterQuery<Family>& query) {
  const auto make = [&](const auto&... flag) {
    return Lumo::newEntity<Sorter<Family>>(
        vrf.*Family::routingConfig, vrf.*Family::routingStatus, device.forwardingStatus,
        device.forwarding6Status, device.tunnelFib, device.arpVanta, device.vrfIdMap,
        device.allIntfConfig, device.*Family::ipStatus, device.*Family::routingHardwareStatus,
        device.nhEntryStatus, vrf.kernelUnprogrammedRoute, device.evpnVxlanTunnelTable,
        device.tunnelTableDir, query.prefix, query.intfStatus, query.protocol, query.detail,
        query.longerPrefixes, vrf.name, vrf.id, query.host, query.fd, query.quantify,
        query.originalMask, flag..., device.srTePolicyStatus, device.policyForwardingStatus,
        query.degradeNhgModel, device.*Family::unprogrammedRouteStatus);
  };
  if constexpr (Family::hasIntfFlag) {
    return make(query.intf);
  } else {
    return make();
  }
}

} // namespace Rova
